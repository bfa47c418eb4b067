// A line, a cursor and a row of user actions: whatever they are, the assistant keeps the host's
// text around the expression, stays inside its own texts, and its shortcuts agree with a fresh
// start.

#include <string>
#include <string_view>
#include <vector>

#include "../rules/sample_syntax.h"
#include "fuzz.h"
#include "syntax/rules/assistant_model.h"
#include "syntax/rules/line_cut.h"
#include "syntax/rules/line_scan.h"

namespace {

const TSampleSyntax& Sample() {
  static const TSampleSyntax syntax;
  return syntax;
}

using TValues = std::vector<std::string>;

/// The values of a call, without the empty ones at its end, which say nothing.
TValues ValuesOf(const TLineAnalysis& line) {
  TValues values;
  for (int i = 0; i < line.ValueCount(); ++i) values.emplace_back(line.Value(i));
  while (!values.empty() && values.back().empty()) values.pop_back();
  return values;
}

/// A value that ends by itself.
bool IsWhole(std::string_view value) {
  TNesting nesting;
  for (const char c : value)
    if (!nesting.Take(c) && (c == ',' || c == ')')) return false;
  return nesting.Idle() && !value.starts_with(kBlank) && !value.ends_with(kBlank);
}

/// A call whose values are read back as they are written, with parentheses and without.
bool IsPlainCall(const TLineAnalysis& line) {
  const auto frame = line.CallFrame();
  return frame.Tail.empty() && !line.MemberName().empty() && IsWhole(frame.Head) &&
         std::ranges::all_of(frame.Values, IsWhole);
}

void CheckCut(const std::string& line, int cursor) {
  const TLineCut cut = CutLine(line, cursor);
  Check(std::string(cut.Prefix).append(cut.Expression).append(cut.Suffix) == line);
  Check(cut.Position >= 0 && cut.Position <= static_cast<int>(cut.Expression.size()));
}

void CheckAnalysis(const TLineAnalysis& line) {
  const int length = static_cast<int>(line.Expression().size());
  Check(line.SegmentStart() >= 0 && line.SegmentStart() <= length);
  Check(line.ObjectEnd() >= line.SegmentStart() - 1 && line.ObjectEnd() <= line.MemberEnd());
  Check(line.MemberEnd() <= line.ParametersEnd() && line.ParametersEnd() < length);
  Check(line.Position() == 0 || line.Position() < line.SegmentCount());
  int end = line.MemberEnd();
  for (int i = 0; i < line.ValueCount(); ++i) {
    const TTextRange range = line.ValueRange(i);
    Check(range.Start > end && range.Length >= 0);
    end = range.Start + range.Length - 1;
    Check(end <= line.ParametersEnd());
    Check(line.Value(i).empty() || (line.Value(i).front() != ' '));
  }
  const TTextRange object = line.ObjectRange();
  Check(object.Start >= 0 && object.Length >= 0 && object.Start + object.Length <= length);

  TLineAnalysis fresh;
  fresh.SetExpression(line.Expression(), Sample().Names);
  fresh.SelectSegment(line.Position());
  Check(fresh.Position() == line.Position() && fresh.ValueCount() == line.ValueCount());
  Check(fresh.MemberText() == line.MemberText() && fresh.ObjectText() == line.ObjectText());
  Check(ValuesOf(fresh) == ValuesOf(line));
}

void CheckModel(const TAssistantModel& model) {
  CheckAnalysis(model.Analysis());
  Check(model.SelectedItem() < model.MemberItems().Count());
  Check(model.SelectedParam() < static_cast<int>(model.ParamRows().size()));
  Check(model.MemberBoxEnabled() || model.MemberItems().Count() == 0);
  Check(model.SelectedType().empty() || Sample().Names.Types.IndexOf(model.SelectedType()) >= 0);
}

void SetValue(TAssistantModel& model, TInput& input) {
  // Selected again, the call is taken as it is now, not as it was when typing began.
  const bool again = input.Bit();
  if (again) model.SelectParam(Sample().View(), model.SelectedParam());
  const std::string value = input.Text(';');
  const auto place = static_cast<std::size_t>(model.SelectedParam());
  const bool readBack = again && model.SelectedParam() >= 0 && IsPlainCall(model.Analysis()) &&
                        IsWhole(value) && value != model.Value();
  TValues values = ValuesOf(model.Analysis());
  model.SetValue(Sample().View(), value);
  if (!readBack) return;
  values.resize(std::max(values.size(), place + 1));
  values[place] = value;
  while (!values.empty() && values.back().empty()) values.pop_back();
  Check(ValuesOf(model.Analysis()) == values);
}

void ClickUseReturn(TAssistantModel& model) {
  const bool keepsValues = IsPlainCall(model.Analysis());
  const TValues values = ValuesOf(model.Analysis());
  model.ClickUseReturn(Sample().View());
  Check(!keepsValues || ValuesOf(model.Analysis()) == values);
}

void Act(TAssistantModel& model, TInput& input) {
  const TSyntaxView syntax = Sample().View();
  switch (input.Byte() % 11) {
    case 0:
      return model.EditLine(syntax, input.Text());
    case 1:
      return model.LeaveLine(syntax);
    case 2:
      return model.Step(syntax, model.Analysis().Position() + 1);
    case 3:
      return model.Step(syntax, model.Analysis().Position() - 1);
    case 4:
      return model.ChooseType(syntax, input.Text(','));
    case 5:
      return model.ChooseMember(syntax, input.Byte());
    case 6:
      return model.SelectParam(syntax, input.Byte() % 8 - 1);
    case 7:
      return SetValue(model, input);
    case 8:
      return model.ToggleParamCheck(syntax, input.Byte() % 8);
    case 9:
      return ClickUseReturn(model);
    default:
      return model.DeleteMember(syntax);
  }
}

}  // namespace

void FuzzLine(TInput input) {
  const int cursor = input.Byte() - 4;
  const std::string line = input.Text();
  CheckCut(line, cursor);

  TAssistantModel model;
  model.SetDeclared("c=Compte,v=");
  model.AnalyseHostLine(Sample().View(), line, cursor);
  const std::string prefix = model.Analysis().Prefix(), suffix = model.Analysis().Suffix();
  CheckModel(model);
  while (!input.Empty()) {
    Act(model, input);
    CheckModel(model);
    Check(model.Result() == prefix + model.Analysis().Expression() + suffix);
  }
  model.RecordUndeclaredType(Sample().View());
}
