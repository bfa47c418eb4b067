#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

/// How texts of the host's ANSI code page are made of characters and compare: one set of rules for
/// every list and look-up.
///
/// Two texts are the same ignoring case when their upper-cased bytes are the same. The order is the
/// user's locale's order of the upper-cased texts, and byte order where that finds no difference,
/// so that "equal in order" and "same text" never disagree.

/// One character's bytes in upper case, at most four, perhaps more or fewer than it has itself.
struct TUpperCharacter {
  std::array<char, 4> Bytes{};
  unsigned char Length = 0;
  unsigned char Taken = 0;  ///< its own bytes, at least one
};

struct TCollation {
  /// Upper case of each byte that is a character. Where characters may have several bytes, only
  /// those of ASCII are asked for.
  std::array<unsigned char, 256> Upper{};
  /// Where characters may have several bytes: the one that begins the text, which is not empty and
  /// does not begin with ASCII. Bytes that are no character stand for themselves. Must not throw.
  TUpperCharacter (*UpperCharacter)(std::string_view text) noexcept = nullptr;
  /// The bytes that begin a character of two, whose second may well be a byte of ASCII.
  std::array<bool, 256> LeadBytes{};
  /// The locale's order of two texts (negative, 0, positive), or null for plain byte order.
  int (*LocaleOrder)(std::string_view a, std::string_view b) = nullptr;
};

/// The rules in force. Windows-1252 upper case and byte order until SetUserCollation is called.
const TCollation& UserCollation();

/// Takes the user's rules; called once as the library loads, before any list is made.
void SetUserCollation(const TCollation& collation);

/// As many bytes as the text, those of two-byte characters made neutral: whoever looks for a sign
/// or a backslash in it finds no half of a character.
std::string MaskDoubleBytes(std::string_view text);

/// May have another length than the text where characters have several bytes.
std::string UpperText(std::string_view text);

/// Same text ignoring letter case. Allocates nothing.
bool SameText(std::string_view a, std::string_view b) noexcept;

/// Byte order of the upper-cased texts (negative, 0, positive). Allocates nothing.
int CompareUpperBytes(std::string_view a, std::string_view b) noexcept;

/// Total order (negative, 0, positive); 0 exactly when the texts are the same under the case rule.
int CompareText(std::string_view a, std::string_view b, bool caseSensitive);

/// Equal for texts that are the same under the case rule. Allocates nothing.
std::size_t HashText(std::string_view text, bool caseSensitive) noexcept;
