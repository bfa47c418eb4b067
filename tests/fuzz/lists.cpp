// A list and the plainest one that does the same, under any row of operations.

#include <functional>

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

void Act(TStringList& list, TPlainList& plain, TInput& input) {
  const int count = list.Count();
  const auto add = [&](const std::string& line) { Check(list.Add(line) == plain.Add(line)); };
  const std::function<void()> acts[] = {
      [&] {  // many lines at once, with names and values that meet
        const int names = 1 + input.Byte(), values = 1 + input.Below(8);
        for (int i = count > 300 ? 0 : 2 * input.Byte(); i > 0; --i)
          add("n" + std::to_string(i % names) + "=" + std::to_string(i % values));
      },
      [&] { add(input.Text(';')); },
      [&] {
        for (int times = input.Byte(), at = input.Byte(); times > 0 && at < list.Count(); --times)
          list.Delete(at), plain.Delete(at);
      },
      [&] {
        const std::string name = input.Text('='), value = input.Text(';');
        list.SetValue(name, value), plain.SetValue(name, value);
      },
      [&] {
        const std::string text = input.Text(';');
        list.SetCommaText(text);
        plain = TPlainList(list.Options());
        for (const auto& line : CommaLines(text)) plain.Add(line);
      },
      [&] {
        const std::string line(count ? list.At(input.Below(count)) : "");
        const std::string name = line.substr(0, line.find('='));
        Check(list.IndexOf(line) == plain.IndexOf(line));
        Check(list.IndexOfName(name) == plain.IndexOfName(name));
      },
  };
  acts[input.Below(6)]();
}

const bool lists = Target("lists", [](TInput input) {
  const TStringList::TOptions options{
      .Sorted = input.Bit(), .CaseSensitive = input.Bit(), .KeepDuplicates = input.Bit()};
  TStringList list(options);
  TPlainList plain(options);
  for (int steps = 0; !input.Empty() && steps < 40; ++steps) Act(list, plain, input);
  Check(LinesOf(list) == plain.Lines());
  Check(CommaLines(list.CommaText()) == plain.Lines());
});

}  // namespace
