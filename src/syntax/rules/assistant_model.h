#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "syntax/rules/assistant_texts.h"
#include "syntax/rules/chain_types.h"
#include "syntax/rules/line_analysis.h"
#include "syntax/rules/member_items.h"
#include "syntax/rules/syntax_database.h"
#include "syntax/rules/syntax_names.h"

/// What the assistant reads at one call. Nothing of it is kept after the call, so the document may
/// be read again between two; the names are those of the same document.
struct TSyntaxView {
  const TSyntaxDatabase& Database;
  const TSyntaxNames& Names;
};

/// A help text: one of our own, or the database's, and what is said of the returned value.
struct TAssistantHelp {
  TAssistantText Own = TAssistantText::None;
  std::string Text;
  std::optional<std::string> Returned;
};

enum class TParamKind { Required, Optional, Absent };  ///< in the order of the radio group's items

struct TParamRow {
  std::string Text;
  bool Enabled = true;
  bool Checked = false;
  bool operator==(const TParamRow&) const = default;
};

/// The parameter panel; all empty when no parameter is selected.
struct TParamPanel {
  TParamKind Kind = TParamKind::Absent;
  std::string Type;
  std::string List;  ///< of constants offered as values
  std::string Default;
  std::string Help;
};

enum class TCheckState { Unchecked, Checked, Greyed };

struct TUseReturnBox {
  TCheckState State = TCheckState::Unchecked;
  bool Enabled = false;
};

/// What the object assistant shows and how each action of its user changes that.
///
/// After each action the dialog copies the state into its controls; TakeChanges() says which of the
/// costly or delicate ones must be written at all. A disabled member box takes the inactive colour.
/// All texts are in the host's ANSI code page, indexes from 0 and -1 for none. An action that runs
/// out of memory throws std::bad_alloc and may have happened in part: the line is whole, and
/// analysing one starts afresh. Not thread-safe.
class TAssistantModel {
 public:
  enum TChange : unsigned {
    LineChanged = 1,         ///< the expression, otherwise than by the user's typing
    MemberItemsChanged = 2,  ///< items of the member box
    ParamRowsChanged = 4,    ///< rows or check marks, which a click may have moved by itself
    ValueChanged = 8,        ///< the value box, otherwise than by the user's typing
  };
  /// What changed since the last time it was asked, as a set of TChange.
  unsigned TakeChanges() { return std::exchange(FChanges, 0U); }

  // Actions.

  /// The script's variables, as comma text of name=type entries.
  void SetDeclared(std::string_view commaText) { FTypes.SetDeclared(commaText); }
  /// Starts afresh on a host line, absent or not, around the cursor (a byte index).
  void AnalyseHostLine(TSyntaxView syntax, std::optional<std::string_view> line, int cursor);
  /// The line box holds another text; nothing happens when it is the one already known.
  void EditLine(TSyntaxView syntax, std::string_view text);
  /// The line box lost the focus: what the user edited counts from now on.
  void LeaveLine(TSyntaxView syntax);
  /// Moves to a position of the chain; it may end before (see Analysis().Position()).
  void Step(TSyntaxView syntax, int position);
  void ChooseType(TSyntaxView syntax, std::string_view type);
  void ChooseMember(TSyntaxView syntax, int item);
  /// Shows a parameter in the panel; -1 shows none.
  void SelectParam(TSyntaxView syntax, int index);
  /// The value box holds another text; nothing happens when it is the one already known.
  void SetValue(TSyntaxView syntax, std::string_view text);
  /// The user clicked a parameter's check mark, which selects it and can only take a value away.
  void ToggleParamCheck(TSyntaxView syntax, int index);
  void ClickUseReturn(TSyntaxView syntax);
  void DeleteMember(TSyntaxView syntax);
  /// Declares the undeclared variable that the user gave a type: all declared variables as comma
  /// text, or nothing when none is new.
  std::optional<std::string> RecordUndeclaredType(TSyntaxView syntax) {
    return FTypes.DeclareFirstObject(syntax.Names);
  }

  // State.

  /// Expression, object and member as written, position, and what the line box shows selected.
  const TLineAnalysis& Analysis() const { return FAnalysis; }
  /// The host's line with the expression rewritten.
  std::string Result() const;
  /// The index in the result just after the expression.
  int ResultCursor() const;

  bool TypeBoxEnabled() const { return !FAnalysis.FunctionMode(); }
  /// One of the type names, or empty.
  const std::string& SelectedType() const { return FType; }
  const TAssistantHelp& TypeHelp() const { return FTypeHelp; }

  bool MemberBoxEnabled() const { return FMemberBoxEnabled; }
  const TMemberItems& MemberItems() const { return FItems; }
  int SelectedItem() const { return FSelectedItem; }
  bool DeleteEnabled() const;
  const std::string& ReturnType() const { return FReturnType; }
  const TAssistantHelp& MemberHelp() const { return FMemberHelp; }
  TUseReturnBox UseReturnBox() const;

  const std::vector<TParamRow>& ParamRows() const { return FParamRows; }
  /// While it is -1 the panel, the value box and its buttons are disabled.
  int SelectedParam() const { return FSelectedParam; }
  const TParamPanel& ParamPanel() const { return FPanel; }
  const std::string& Value() const { return FValue; }

 private:
  void LineRewritten();
  void ShowEditedLine(TSyntaxView syntax, bool wasFunction, int wasPosition);
  void WalkToPosition(TSyntaxView syntax);
  void NoteFirstObject(TSyntaxView syntax, std::string_view object);
  void ShowPosition(TSyntaxView syntax);
  void ApplyType(TSyntaxView syntax);
  void FillMembers(TSyntaxView syntax);
  void OfferMembers(TSyntaxView syntax, const TSyntaxElement* object);
  void OfferNoMembers();
  void SelectWrittenMember(TSyntaxView syntax);
  void ShowMember(TSyntaxView syntax);
  void ClearMember();
  void ClearParam();
  /// They show what became of the values.
  void UpdateParamRows(TSyntaxView syntax);
  void SetParamRows(std::vector<TParamRow> rows);
  void ShowValue(std::string_view value);
  const TSyntaxMember* WrittenMember(TSyntaxView syntax) const;

  TLineAnalysis FAnalysis;
  TChainTypes FTypes;
  bool FLineEdited = false;
  bool FFirstReplaced = false;  ///< more than the first object's name was edited with it
  unsigned FChanges = 0;

  std::string FType;
  TAssistantHelp FTypeHelp;
  std::optional<std::string> FItemsType;  ///< whose members FItems has; empty: the functions
  TMemberItems FItems;
  bool FMemberBoxEnabled = false;
  int FSelectedItem = -1;
  std::string FReturnType;
  bool FReturnsValue = false;
  TAssistantHelp FMemberHelp;

  std::vector<TParamRow> FParamRows;
  int FSelectedParam = -1;
  TParamPanel FPanel;
  std::string FValue;
  std::optional<TLineAnalysis::TCallFrame> FCallFrame;  ///< while the value is being typed
};
