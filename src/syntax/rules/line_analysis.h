#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "syntax/rules/syntax_names.h"

/// A run of bytes of the expression.
struct TTextRange {
  int Start = 0;
  int Length = 0;
};

/// One expression of a script line, of the form "object.member a, b" or "object.member(a, b)",
/// perhaps with a longer dotted chain, or a function in the object's place ("function mode").
///
/// One position of the chain is analysed at a time: its object, the object's member and the
/// member's parameters. All texts are in the host's ANSI code page; indexes are 0-based bytes, and
/// an "end" is the index of the last character, one less than the start when there is none. Views
/// stay valid until the next call that is not const. Every call costs at most in proportion to the
/// line, and moving along the chain in proportion to what is moved over. One that runs out of
/// memory throws std::bad_alloc and changes nothing.
class TLineAnalysis {
 public:
  /// The parts of a call that stay in place while one of its parameters is retyped, so that a value
  /// typed by and by may be unbalanced for a while without swallowing the parameters after it.
  struct TCallFrame {
    std::string Head;  ///< up to the end of the member's name
    std::vector<std::string> Values;
    bool Parenthesised = false;
    std::string Tail;  ///< after the member's parameters
  };

  /// Cuts the line at the cursor and analyses the position under it. An absent line has three
  /// empty parts, like an empty one.
  void CutHostLine(std::optional<std::string_view> line, int cursor, const TSyntaxNames& names);
  /// Takes an edited expression; prefix, suffix and, as far as the chain reaches, position stay.
  void SetExpression(std::string expression, const TSyntaxNames& names);
  /// Analyses a position, lowered to the last one of the chain.
  void SelectSegment(int position);

  const std::string& Prefix() const { return FPrefix; }
  const std::string& Expression() const { return FExpression; }
  const std::string& Suffix() const { return FSuffix; }
  bool FunctionMode() const { return FFunctionMode; }
  int Position() const { return FPosition; }
  /// Objects in the chain; 0 in function mode, or when the expression starts with a blank.
  int SegmentCount() const;

  int SegmentStart() const { return FSegmentStart; }
  int ObjectEnd() const { return FNames.ObjectEnd; }
  int MemberEnd() const { return FNames.MemberEnd; }
  int ParametersEnd() const { return FParametersEnd; }
  /// In function mode the function's name.
  std::string_view ObjectText() const;
  std::string_view MemberName() const;
  /// The member with its parameters as written.
  std::string_view MemberText() const;
  bool Parenthesised() const { return FParenthesised; }

  int ValueCount() const { return static_cast<int>(FValues.size()); }
  /// The parameter's trimmed text; empty when the index is out of range.
  std::string_view Value(int index) const;
  /// Where the value stands; an empty one stands before the comma that closed it.
  TTextRange ValueRange(int index) const { return FValues.at(static_cast<std::size_t>(index)); }
  /// What the line box shows selected.
  TTextRange ObjectRange() const;

  /// Puts another member (or function) in the place of the analysed one, or adds it.
  void ReplaceMember(std::string_view name, const TSyntaxNames& names);
  /// Puts the parameters between parentheses, or takes the parentheses away. Empty values at the
  /// end vanish.
  void SetUseReturn(bool use, const TSyntaxNames& names);
  TCallFrame CallFrame() const;
  /// Sets a parameter (0 and up) of the call as it was when the frame was taken. Empty places
  /// before it stay as such, empty ones at the end vanish.
  void SetParam(const TCallFrame& frame, int index, std::string_view value,
                const TSyntaxNames& names);
  /// Removes the dot, the member and its parameters.
  void DeleteMember(const TSyntaxNames& names);

  /// Of the object, or function, that the expression begins with.
  int FirstObjectLength() const;

  /// Object and member of any position without moving there; the parameters are not looked at.
  /// Not for function mode.
  std::string_view ObjectTextAt(int position) const;
  std::string_view MemberNameAt(int position) const;
  /// Gives the member at a position another spelling of the same name (letter case only). False,
  /// and nothing is done, for a spelling of another length.
  bool RespellMemberAt(int position, std::string_view name);

 private:
  struct TNames {
    int ObjectEnd = -1;
    int MemberEnd = -1;
    bool ParametersFollow = false;
  };

  void Analyse(std::string expression, int position, const TSyntaxNames& names);
  void TestFunction(const TSyntaxNames& names);
  void FindSegments();
  int StartOfSegment(int position) const;
  void AnalyseSegment(int start);
  TNames ScanNames(int start) const;
  void ScanParameters(int start);
  std::string_view Slice(int first, int last) const;
  std::string_view Rest(int end) const;
  std::string_view TextOf(const TTextRange& range) const;
  std::string_view MemberNameOf(const TNames& names) const;
  std::vector<std::string> Values() const;

  std::string FPrefix;
  std::string FExpression;
  std::string FSigns;  ///< the expression as the scans see it: no half of a character is a sign
  std::string FSuffix;
  bool FFunctionMode = false;
  int FFunctionLength = 0;
  std::vector<int> FDots;  ///< that part the chain's objects, so that no move counts them again
  bool FEndsWithObject = false;  ///< something follows the chain's last dot
  int FPosition = 0;

  int FSegmentStart = 0;
  TNames FNames;
  int FParametersEnd = -1;
  bool FParenthesised = false;
  std::vector<TTextRange> FValues;
};
