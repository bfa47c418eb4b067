// A list and the plainest one that does the same, under any row of operations.

#include "../rules/plain_list.h"
#include "fuzz.h"
#include "text/comma_text.h"

namespace {

std::vector<std::string> CommaLines(std::string_view text) {
  std::vector<std::string> lines;
  TCommaReader reader(text);
  while (const auto line = reader.Next()) lines.emplace_back(*line);
  return lines;
}

/// Many lines at once, with many names and values that meet.
void AddMany(TStringList& list, TPlainList& plain, TInput& input) {
  const int names = 1 + input.Byte(), values = 1 + input.Below(8);
  for (int i = 2 * input.Byte(); i > 0; --i) {
    const std::string line = "n" + std::to_string(i % names) + "=" + std::to_string(i % values);
    Check(list.Add(line) == plain.Add(line));
  }
}

void Act(TStringList& list, TPlainList& plain, TInput& input) {
  const int count = static_cast<int>(plain.Lines().size());
  switch (input.Below(6)) {
    case 0:
      if (count > 1000) return;
      return AddMany(list, plain, input);
    case 1: {
      const std::string line = input.Text(';');
      return Check(list.Add(line) == plain.Add(line));
    }
    case 2:
      for (int times = input.Byte(), at = input.Byte(); times > 0 && at < list.Count(); --times) {
        list.Delete(at);
        plain.Delete(at);
      }
      return;
    case 3: {
      const std::string name = input.Text('='), value = input.Text(';');
      list.SetValue(name, value);
      return plain.SetValue(name, value);
    }
    case 4: {
      const std::string text = input.Text(';');
      list.SetCommaText(text);
      plain = TPlainList(list.Options());
      for (const auto& line : CommaLines(text)) plain.Add(line);
      return;
    }
    default:
      if (count == 0) return;
      const std::string line(list.At(input.Below(count)));
      const std::string name = line.substr(0, line.find('='));
      Check(list.IndexOf(line) == plain.IndexOf(line));
      return Check(list.IndexOfName(name) == plain.IndexOfName(name));
  }
}

}  // namespace

void FuzzLists(TInput input) {
  const TStringList::TOptions options{
      .Sorted = input.Bit(), .CaseSensitive = input.Bit(), .KeepDuplicates = input.Bit()};
  TStringList list(options);
  TPlainList plain(options);
  for (int steps = 0; !input.Empty() && steps < 40; ++steps) Act(list, plain, input);
  Check(LinesOf(list) == plain.Lines());
  Check(CommaLines(list.CommaText()) == plain.Lines());
}
