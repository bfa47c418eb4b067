#pragma once

#include <array>
#include <string_view>

/// What the scans of a script line share: sets of delimiters kept as data, and the tracking of
/// quotes, parentheses and brackets.

/// A set of single bytes, asked for in constant time.
class TByteSet {
 public:
  explicit constexpr TByteSet(std::string_view bytes) {
    for (char byte : bytes) FMember[static_cast<unsigned char>(byte)] = true;
  }
  constexpr bool Has(char byte) const { return FMember[static_cast<unsigned char>(byte)]; }

 private:
  std::array<bool, 256> FMember{};
};

constexpr char kBlank = ' ';
constexpr char kQuote = '"';
constexpr char kCommentMark = '\'';

/// Where an expression begins when scanning back from the cursor.
constexpr TByteSet kStartStops("-+, ><=*&|([");
/// Where an expression ends when scanning forward.
constexpr TByteSet kEndStops(")]-+,><=*&|");
/// Show that a first word cannot be a function.
constexpr TByteSet kFunctionStops(".-+,><=*&|)[]\"");
/// End the first word of an expression.
constexpr TByteSet kFunctionWordEnd(" (");
/// End the name of a member; a blank and "(" also begin its parameters.
constexpr TByteSet kMemberStops(".)-+, ><=*&|");
/// End an object that has no member.
constexpr TByteSet kObjectStops(")-+, ><=*&|");

/// Tracks what encloses the next character. Quotes, parentheses and brackets do not see each other:
/// whichever opened first hides the others until it closes, so a quote between parentheses does not
/// protect a parenthesis. Every scan must share this view, or they would disagree on one line.
template <char OpenParen, char CloseParen, char OpenBracket, char CloseBracket>
class TNestingOf {
 public:
  bool Idle() const { return !FInQuote && FParens == 0 && FBrackets == 0; }

  /// Takes the next character; true when it is enclosed, or opens or closes an enclosure.
  bool Take(char c) {
    if (FInQuote) {
      FInQuote = c != kQuote;
    } else if (FParens > 0) {
      FParens += (c == OpenParen) - (c == CloseParen);
    } else if (FBrackets > 0) {
      FBrackets += (c == OpenBracket) - (c == CloseBracket);
    } else if (c == OpenParen) {
      FParens = 1;
    } else if (c == OpenBracket) {
      FBrackets = 1;
    } else if (c == kQuote) {
      FInQuote = true;
    } else {
      return false;
    }
    return true;
  }

 private:
  bool FInQuote = false;
  int FParens = 0;
  int FBrackets = 0;
};

using TNesting = TNestingOf<'(', ')', '[', ']'>;
using TBackwardNesting = TNestingOf<')', '(', ']', '['>;
