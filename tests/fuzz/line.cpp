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
  for (int i = 0; i < line.ValueCount(); ++i) Check(fresh.Value(i) == line.Value(i));
}

void CheckModel(const TAssistantModel& model) {
  CheckAnalysis(model.Analysis());
  Check(model.SelectedItem() < model.MemberItems().Count());
  Check(model.SelectedParam() < static_cast<int>(model.ParamRows().size()));
  Check(model.SelectedType().empty() || kSyntax.Names.Types.IndexOf(model.SelectedType()) >= 0);
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
      [&] { model.SetValue(kView, input.Text(';')); },
      [&] { model.ToggleParamCheck(kView, input.Below(8)); },
      [&] { model.ClickUseReturn(kView); },
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
