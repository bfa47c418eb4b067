#include "syntax/rules/assistant_model.h"

#include <cstddef>
#include <unordered_map>

namespace {

constexpr std::string_view kBooleanType = "bool";  // and the list of its constants

// The members of each type met along a chain: a long one meets few types many times.
class TMemberLookup {
 public:
  explicit TMemberLookup(const TSyntaxDatabase& database) : FDatabase(database) {}

  struct TEntry {
    const TSyntaxElement* Object = nullptr;
    TMemberItems Items;
  };
  const TEntry& Of(const std::string& type) {
    const auto [entry, isNew] = FEntries.try_emplace(type);
    const TSyntaxElement* element = isNew ? FDatabase.FindElement(type) : nullptr;
    if (element != nullptr && element->Kind == TSyntaxKind::Object) {
      entry->second = {element, TMemberItems(*element)};
    }
    return entry->second;
  }

 private:
  const TSyntaxDatabase& FDatabase;
  std::unordered_map<std::string, TEntry> FEntries;
};

std::vector<TParamRow> RowsOf(const TSyntaxMember* member, const TLineAnalysis& line) {
  std::vector<TParamRow> rows;
  if (member != nullptr) {
    for (const TSyntaxParam& param : member->Params) {
      if (param.Required) {
        rows.push_back({.Text = param.Name, .Enabled = false});
      } else {
        rows.push_back({.Text = "[" + param.Name + "]"});
      }
    }
  }
  while (static_cast<int>(rows.size()) < line.ValueCount()) rows.push_back({.Text = "<?>"});
  for (int i = 0; i < line.ValueCount(); ++i) {
    rows[static_cast<std::size_t>(i)].Checked = !line.Value(i).empty();
  }
  return rows;
}

/// Whether the values that stood after the parameter in the frame still stand at the end of the
/// call.
bool EndsWithValuesAfter(const TLineAnalysis& line, const TLineAnalysis::TCallFrame& frame,
                         int parameter) {
  int last = static_cast<int>(frame.Values.size()) - 1;
  while (last > parameter && frame.Values[static_cast<std::size_t>(last)].empty()) --last;
  for (int shown = line.ValueCount() - 1; last > parameter; --last, --shown) {
    if (line.Value(shown) != frame.Values[static_cast<std::size_t>(last)]) return false;
  }
  return true;
}

}  // namespace

void TAssistantModel::AnalyseHostLine(TSyntaxView syntax, std::optional<std::string_view> line,
                                      int cursor) {
  FTypes.Restart();
  FItemsType.reset();
  FLineEdited = false;
  FAnalysis.CutHostLine(line, cursor, syntax.Names);
  WalkToPosition(syntax);
  LineRewritten();
}

void TAssistantModel::EditLine(TSyntaxView syntax, std::string_view text) {
  if (text == FAnalysis.Expression()) return;
  const bool wasFunction = FAnalysis.FunctionMode();
  const int wasPosition = FAnalysis.Position();
  FLineEdited = true;
  const std::string before = FAnalysis.Expression();
  const auto lengthBefore = static_cast<std::size_t>(FAnalysis.FirstObjectLength());
  FAnalysis.SetExpression(std::string(text), syntax.Names);
  const auto length = static_cast<std::size_t>(FAnalysis.FirstObjectLength());
  const bool sameName = before.substr(0, lengthBefore) == text.substr(0, length);
  const bool sameRest = before.substr(lengthBefore) == text.substr(length);
  if (text.empty() || !(sameName || sameRest)) FFirstReplaced = true;
  ShowEditedLine(syntax, wasFunction, wasPosition);
}

void TAssistantModel::ShowEditedLine(TSyntaxView syntax, bool wasFunction, int wasPosition) {
  // The shown type belongs to the object at the old position, and to an object only.
  const bool typeIsStale = (wasFunction && !FAnalysis.FunctionMode()) ||
                           FAnalysis.Position() != wasPosition || FAnalysis.SegmentCount() == 0;
  if (typeIsStale) {
    ShowPosition(syntax);
  } else {
    ApplyType(syntax);
    if (!FType.empty() && !FAnalysis.MemberName().empty())
      FTypes.Record(FAnalysis.Position(), FType);
  }
  ShowMember(syntax);
}

void TAssistantModel::LeaveLine(TSyntaxView syntax) {
  if (!std::exchange(FLineEdited, false)) return;
  if (FAnalysis.Position() > 0 || FAnalysis.ObjectText() != FTypes.FirstObject()) {
    WalkToPosition(syntax);
  }
}

void TAssistantModel::Step(TSyntaxView syntax, int position) {
  const int before = FAnalysis.Position();
  FAnalysis.SelectSegment(position);
  // At its ends the chain stays as it is, and so does the selected parameter.
  if (FAnalysis.Position() == before) return;
  const bool toNext = FAnalysis.Position() == before + 1;
  if (toNext && !FReturnType.empty()) FTypes.Record(FAnalysis.Position(), FReturnType);
  ShowPosition(syntax);
}

// The types of the objects before the position give its own; their members take the database's
// spelling on the way.
void TAssistantModel::WalkToPosition(TSyntaxView syntax) {
  TMemberLookup members(syntax.Database);
  for (int position = 0; position < FAnalysis.Position(); ++position) {
    const std::string_view object = FAnalysis.ObjectTextAt(position);
    if (position == 0) NoteFirstObject(syntax, object);
    const std::string type = FTypes.TypeAt(position, object, syntax.Names);
    if (type.empty()) continue;
    const auto& [element, items] = members.Of(type);
    const std::string_view written = FAnalysis.MemberNameAt(position);
    const int item = items.Find(written);
    if (item < 0) continue;
    if (written != items.Name(item) && FAnalysis.RespellMemberAt(position, items.Name(item)))
      LineRewritten();
    const TSyntaxMember& member = *TSyntaxDatabase::FindMember(*element, items.Name(item));
    if (!member.ValueType().empty()) FTypes.Record(position + 1, member.ValueType());
  }
  ShowPosition(syntax);
}

void TAssistantModel::ShowPosition(TSyntaxView syntax) {
  const bool function = FAnalysis.FunctionMode();
  const std::string_view object = FAnalysis.ObjectText();
  if (FAnalysis.Position() == 0) NoteFirstObject(syntax, object);
  FType = function ? std::string() : FTypes.TypeAt(FAnalysis.Position(), object, syntax.Names);
  ApplyType(syntax);
}

void TAssistantModel::NoteFirstObject(TSyntaxView syntax, std::string_view object) {
  FTypes.NoteFirstObject(object, !FFirstReplaced, FAnalysis.FunctionMode(), syntax.Names);
  FFirstReplaced = false;
}

void TAssistantModel::ChooseType(TSyntaxView syntax, std::string_view type) {
  if (FAnalysis.FunctionMode()) return;
  const int index = syntax.Names.Types.IndexOf(type);
  FType = index < 0 ? std::string_view() : syntax.Names.Types.At(index);
  if (!FType.empty()) FTypes.Pick(FAnalysis.Position(), FType);
  ApplyType(syntax);
}

void TAssistantModel::ApplyType(TSyntaxView syntax) {
  FillMembers(syntax);
  SelectWrittenMember(syntax);
}

void TAssistantModel::FillMembers(TSyntaxView syntax) {
  ClearMember();
  FSelectedItem = -1;
  FTypeHelp = {};
  if (FAnalysis.FunctionMode()) {
    FTypeHelp.Own = TAssistantText::VisualBasicFunction;
    OfferMembers(syntax, nullptr);
    return;
  }
  const TSyntaxElement* element = FType.empty() ? nullptr : syntax.Database.FindElement(FType);
  if (element != nullptr && element->Kind == TSyntaxKind::Object) {
    FTypeHelp.Text = element->Comment;
    OfferMembers(syntax, element);
    return;
  }
  if (FType.empty()) FTypeHelp.Own = TAssistantText::ChooseType;
  if (element != nullptr) FTypeHelp.Text = element->Text.value_or(std::string());
  OfferNoMembers();
}

// Without an object the functions are offered.
void TAssistantModel::OfferMembers(TSyntaxView syntax, const TSyntaxElement* object) {
  FMemberBoxEnabled = true;
  FMemberHelp.Own = TAssistantText::ChooseMember;
  if (FItemsType == FType) return;
  FItems = object == nullptr ? TMemberItems(syntax.Database) : TMemberItems(*object);
  FItemsType = FType;
  FChanges |= MemberItemsChanged;
}

void TAssistantModel::OfferNoMembers() {
  FMemberBoxEnabled = false;
  if (FItems.Count() > 0) FChanges |= MemberItemsChanged;
  FItems = {};
  FItemsType.reset();
}

void TAssistantModel::SelectWrittenMember(TSyntaxView syntax) {
  const int item = FItems.Find(FAnalysis.MemberName());
  if (item < 0) return;
  FSelectedItem = item;
  if (FAnalysis.MemberName() != FItems.Name(item)) {
    FAnalysis.ReplaceMember(FItems.Name(item), syntax.Names);
    LineRewritten();
  }
  ShowMember(syntax);
}

void TAssistantModel::ChooseMember(TSyntaxView syntax, int item) {
  if (item < 0 || item >= FItems.Count()) return;
  const bool wasFunction = FAnalysis.FunctionMode();
  FAnalysis.ReplaceMember(FItems.Name(item), syntax.Names);
  FFirstReplaced = FFirstReplaced || wasFunction;
  FSelectedItem = item;
  LineRewritten();
  if (wasFunction && !FAnalysis.FunctionMode()) ShowPosition(syntax);
  ShowMember(syntax);
}

void TAssistantModel::DeleteMember(TSyntaxView syntax) {
  if (!DeleteEnabled()) return;
  const int wasPosition = FAnalysis.Position();
  FAnalysis.DeleteMember(syntax.Names);
  LineRewritten();
  ShowEditedLine(syntax, false, wasPosition);
}

const TSyntaxMember* TAssistantModel::WrittenMember(TSyntaxView syntax) const {
  if (FAnalysis.MemberName().empty()) return nullptr;
  if (FAnalysis.FunctionMode()) return syntax.Database.FindFunction(FAnalysis.MemberName());
  const TSyntaxElement* element = FType.empty() ? nullptr : syntax.Database.FindElement(FType);
  return element == nullptr ? nullptr
                            : TSyntaxDatabase::FindMember(*element, FAnalysis.MemberName());
}

void TAssistantModel::ShowMember(TSyntaxView syntax) {
  ClearParam();
  const TSyntaxMember* member = WrittenMember(syntax);
  FReturnsValue = member != nullptr && member->Return.has_value();
  FReturnType = member == nullptr ? std::string() : member->ValueType();
  if (member != nullptr) {
    FMemberHelp = {TAssistantText::None, member->Comment, std::nullopt};
    if (member->Return) FMemberHelp.Returned = member->Return->Help;
  }
  SetParamRows(RowsOf(member, FAnalysis));
}

void TAssistantModel::ClearMember() {
  FReturnType.clear();
  FReturnsValue = false;
  FMemberHelp = {};
  SetParamRows({});
  ClearParam();
}

void TAssistantModel::ClearParam() {
  FSelectedParam = -1;
  FPanel = {};
  ShowValue({});
}

void TAssistantModel::SelectParam(TSyntaxView syntax, int index) {
  ClearParam();
  UpdateParamRows(syntax);
  if (index < 0 || index >= static_cast<int>(FParamRows.size())) return;
  FSelectedParam = index;
  ShowValue(FAnalysis.Value(index));
  const TSyntaxMember* member = WrittenMember(syntax);
  const auto place = static_cast<std::size_t>(index);
  if (member == nullptr || place >= member->Params.size()) return;
  const TSyntaxParam& param = member->Params[place];
  FPanel = {param.Required ? TParamKind::Required : TParamKind::Optional, param.Type, param.List,
            param.Default, param.Help};
  if (param.List.empty() && param.Type == kBooleanType) FPanel.List = kBooleanType;
}

void TAssistantModel::SetValue(TSyntaxView syntax, std::string_view text) {
  if (FSelectedParam < 0 || text == FValue) return;
  if (!FCallFrame) FCallFrame = FAnalysis.CallFrame();
  FAnalysis.SetParam(*FCallFrame, FSelectedParam, text, syntax.Names);
  FChanges |= LineChanged;
  FValue = text;
  if (EndsWithValuesAfter(FAnalysis, *FCallFrame, FSelectedParam)) return UpdateParamRows(syntax);
  // A value that is half typed hides those after it: their rows stay as they were.
  FParamRows[static_cast<std::size_t>(FSelectedParam)].Checked = !text.empty();
  FChanges |= ParamRowsChanged;
}

void TAssistantModel::UpdateParamRows(TSyntaxView syntax) {
  std::vector<TParamRow> rows = RowsOf(WrittenMember(syntax), FAnalysis);
  // The row whose value was emptied stays as long as it is selected.
  const auto selected = static_cast<std::size_t>(FSelectedParam + 1);
  while (rows.size() < selected) {
    rows.push_back(FParamRows[rows.size()]);
    rows.back().Checked = false;
  }
  SetParamRows(std::move(rows));
}

void TAssistantModel::ToggleParamCheck(TSyntaxView syntax, int index) {
  FChanges |= ParamRowsChanged;
  if (index < 0 || index >= static_cast<int>(FParamRows.size())) return;
  // As the user saw it.
  const TParamRow row = FParamRows[static_cast<std::size_t>(index)];
  if (index != FSelectedParam) SelectParam(syntax, index);
  if (!row.Enabled || !row.Checked) return;
  SetValue(syntax, {});
  FChanges |= ValueChanged;
}

void TAssistantModel::ClickUseReturn(TSyntaxView syntax) {
  // A greyed box goes to checked when clicked, as an empty one does.
  const bool wanted = UseReturnBox().State != TCheckState::Checked && FReturnsValue;
  if (wanted == FAnalysis.Parenthesised()) return;
  FAnalysis.SetUseReturn(wanted, syntax.Names);
  LineRewritten();
}

TUseReturnBox TAssistantModel::UseReturnBox() const {
  if (!FAnalysis.Parenthesised()) return {TCheckState::Unchecked, FReturnsValue};
  return {FReturnsValue ? TCheckState::Checked : TCheckState::Greyed, true};
}

bool TAssistantModel::DeleteEnabled() const {
  return !FAnalysis.FunctionMode() && !FAnalysis.MemberText().empty();
}

std::string TAssistantModel::Result() const {
  return FAnalysis.Prefix() + FAnalysis.Expression() + FAnalysis.Suffix();
}

int TAssistantModel::ResultCursor() const {
  return static_cast<int>(FAnalysis.Prefix().size() + FAnalysis.Expression().size());
}

void TAssistantModel::LineRewritten() {
  FCallFrame.reset();
  FChanges |= LineChanged;
}

void TAssistantModel::SetParamRows(std::vector<TParamRow> rows) {
  if (rows == FParamRows) return;
  FParamRows = std::move(rows);
  FChanges |= ParamRowsChanged;
}

void TAssistantModel::ShowValue(std::string_view value) {
  FCallFrame.reset();
  if (value == FValue) return;
  FValue = value;
  FChanges |= ValueChanged;
}
