// A line, a cursor and a row of user actions: whatever they are, the assistant keeps the host's
// text around the expression, stays inside its own texts, and its shortcuts agree with a fresh
// start.

#include <functional>

#include "../rules/sample_syntax.h"
#include "fuzz.h"
#include "syntax/rules/assistant_model.h"
#include "syntax/rules/line_cut.h"
#include "syntax/rules/line_scan.h"

namespace {

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

void CheckAnalysis(const TLineAnalysis& line) {
  const int length = static_cast<int>(line.Expression().size());
  Check(line.SegmentStart() >= 0 && line.SegmentStart() <= length);
  Check(line.ObjectEnd() >= line.SegmentStart() - 1 && line.ObjectEnd() <= line.MemberEnd());
  Check(line.MemberEnd() <= line.ParametersEnd() && line.ParametersEnd() < length);
  Check(line.Position() == 0 || line.Position() < line.SegmentCount());
  for (int i = 0, end = line.MemberEnd(); i < line.ValueCount(); ++i) {
    const TTextRange range = line.ValueRange(i);
    Check(range.Start > end && range.Length >= 0 && !line.Value(i).starts_with(kBlank));
    end = range.Start + range.Length - 1;
    Check(end <= line.ParametersEnd());
  }
  TLineAnalysis fresh;
  fresh.SetExpression(line.Expression(), kSyntax.Names);
  fresh.SelectSegment(line.Position());
  Check(fresh.Position() == line.Position() && fresh.ValueCount() == line.ValueCount());
  Check(fresh.MemberText() == line.MemberText() && fresh.ObjectText() == line.ObjectText());
  Check(ValuesOf(fresh) == ValuesOf(line));
}

void CheckModel(const TAssistantModel& model) {
  CheckAnalysis(model.Analysis());
  Check(model.SelectedItem() < model.MemberItems().Count());
  Check(model.SelectedParam() < static_cast<int>(model.ParamRows().size()));
  Check(model.SelectedType().empty() || kSyntax.Names.Types.IndexOf(model.SelectedType()) >= 0);
}

void SetValue(TAssistantModel& model, TInput& input) {
  // Selected again, the call is taken as it is now, not as it was when typing began.
  const bool again = input.Bit();
  if (again) model.SelectParam(kView, model.SelectedParam());
  const std::string value = input.Text(';');
  const auto place = static_cast<std::size_t>(model.SelectedParam());
  const bool readBack = again && model.SelectedParam() >= 0 && IsPlainCall(model.Analysis()) &&
                        IsWhole(value) && value != model.Value();
  TValues values = ValuesOf(model.Analysis());
  model.SetValue(kView, value);
  if (!readBack) return;
  values.resize(std::max(values.size(), place + 1));
  values[place] = value;
  while (!values.empty() && values.back().empty()) values.pop_back();
  Check(ValuesOf(model.Analysis()) == values);
}

void ClickUseReturn(TAssistantModel& model) {
  const bool keepsValues = IsPlainCall(model.Analysis());
  const TValues values = ValuesOf(model.Analysis());
  model.ClickUseReturn(kView);
  Check(!keepsValues || ValuesOf(model.Analysis()) == values);
}

void Act(TAssistantModel& model, TInput& input) {
  const int position = model.Analysis().Position();
  const std::function<void()> acts[] = {
      [&] { model.EditLine(kView, input.Text()); },
      [&] { model.LeaveLine(kView); },
      [&] { model.Step(kView, position + 1); },
      [&] { model.Step(kView, position - 1); },
      [&] { model.ChooseType(kView, input.Text(',')); },
      [&] { model.ChooseMember(kView, input.Byte()); },
      [&] { model.SelectParam(kView, input.Below(8) - 1); },
      [&] { SetValue(model, input); },
      [&] { model.ToggleParamCheck(kView, input.Below(8)); },
      [&] { ClickUseReturn(model); },
      [&] { model.DeleteMember(kView); },
  };
  acts[input.Below(11)]();
}

const bool wholeLine = Target("line", [](TInput input) {
  const int cursor = input.Byte() - 4;
  const std::string line = input.Text();
  const TLineCut cut = CutLine(line, cursor);
  Check(std::string(cut.Prefix).append(cut.Expression).append(cut.Suffix) == line);

  TAssistantModel model;
  model.SetDeclared("c=Compte,v=");
  model.AnalyseHostLine(kView, line, cursor);
  const std::string prefix = model.Analysis().Prefix(), suffix = model.Analysis().Suffix();
  CheckModel(model);
  while (!input.Empty()) {
    Act(model, input);
    CheckModel(model);
    Check(model.Result() == prefix + model.Analysis().Expression() + suffix);
  }
});

}  // namespace
