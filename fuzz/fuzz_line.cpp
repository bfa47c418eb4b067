// A line, a cursor and a row of user actions: whatever they are, the assistant keeps the host's
// text around the expression, stays inside its own texts, and its shortcuts agree with a fresh
// start.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "../tests/rules/sample_syntax.h"
#include "syntax/rules/assistant_model.h"
#include "syntax/rules/line_cut.h"

namespace {

void Check(bool holds) {
  if (!holds) std::abort();
}

const TSampleSyntax& Sample() {
  static const TSampleSyntax syntax;
  return syntax;
}

class TInputReader {
 public:
  TInputReader(const std::uint8_t* data, std::size_t size)
      : FText(reinterpret_cast<const char*>(data), size) {}

  bool Empty() const { return FText.empty(); }
  int Byte() {
    if (FText.empty()) return 0;
    const auto byte = static_cast<unsigned char>(FText.front());
    FText.remove_prefix(1);
    return byte;
  }
  std::string Line(char end) {
    const std::size_t length = std::min(FText.find(end), FText.size());
    std::string line(FText.substr(0, length));
    FText.remove_prefix(std::min(length + 1, FText.size()));
    return line;
  }

 private:
  std::string_view FText;
};

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
}

void CheckModel(const TAssistantModel& model) {
  CheckAnalysis(model.Analysis());
  Check(model.SelectedItem() < model.MemberItems().Count());
  Check(model.SelectedParam() < static_cast<int>(model.ParamRows().size()));
  Check(model.MemberBoxEnabled() || model.MemberItems().Count() == 0);
  Check(model.SelectedType().empty() || Sample().Names.Types.IndexOf(model.SelectedType()) >= 0);
}

void Act(TAssistantModel& model, TInputReader& input) {
  const TSyntaxView syntax = Sample().View();
  switch (input.Byte() % 11) {
    case 0:
      return model.EditLine(syntax, input.Line('\n'));
    case 1:
      return model.LeaveLine(syntax);
    case 2:
      return model.Step(syntax, model.Analysis().Position() + 1);
    case 3:
      return model.Step(syntax, model.Analysis().Position() - 1);
    case 4:
      return model.ChooseType(syntax, input.Line(','));
    case 5:
      return model.ChooseMember(syntax, input.Byte());
    case 6:
      return model.SelectParam(syntax, input.Byte() % 8 - 1);
    case 7:
      return model.SetValue(syntax, input.Line(';'));
    case 8:
      return model.ToggleParamCheck(syntax, input.Byte() % 8);
    case 9:
      return model.ClickUseReturn(syntax);
    default:
      return model.DeleteMember(syntax);
  }
}

}  // namespace

const std::vector<std::string>& FuzzSeeds() {
  static const std::vector<std::string> seeds = {
      "\x0fIf x > 0 Then app.Comptes.Item(1).Add 1, , \"s\" ' c\n\x06\x01\x07\"z\";\x09\x02",
      "\x14y = app.comptes.item(2).ECRITURES.Item(\"a, b\").x & z\n\x02\x03\x03\x03\x02\x05\x01",
      "\x05x = MsgBox(\"a\", 1)\n\x06\x01\x07g(1, 2);\x09\x09\x05\x01",
      "\x03v.Solde()\n\x04"
      "Compte,\x05\x01\x06\x01\x07[a;\x0a\x01\x0bw.Nom 1\n\x01",
  };
  return seeds;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  TInputReader input(data, size);
  const int cursor = input.Byte() - 4;
  const std::string line = input.Line('\n');
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
  return 0;
}
