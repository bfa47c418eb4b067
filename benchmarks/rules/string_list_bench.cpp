#include <benchmark/benchmark.h>
#include <malloc.h>

#include <algorithm>
#include <cstdint>
#include <ctime>
#include <map>
#include <random>
#include <set>
#include <string>
#include <unordered_set>
#include <utility>
#include <vector>

#include "text/collation.h"
#include "text/string_list.h"

namespace {

constexpr std::int64_t SmallestList = 1000;

/// Shuffled, with the texts laid out in the new order: the time measured is then the list's alone,
/// not that of fetching the caller's texts from all over the memory.
std::vector<std::string> Shuffled(std::vector<std::string> lines, unsigned seed) {
  std::shuffle(lines.begin(), lines.end(), std::mt19937(seed));
  return std::vector<std::string>(lines.begin(), lines.end());
}

/// Distinct name=value lines in an order that is neither sorted nor reversed.
std::vector<std::string> ShuffledLines(std::size_t count) {
  std::vector<std::string> lines;
  lines.reserve(count);
  for (std::size_t i = 0; i < count; ++i)
    lines.push_back("variable" + std::to_string(i) + "=Cpt " + std::to_string(i % 97));
  return Shuffled(std::move(lines), 1);
}

std::size_t HeapInUse() {
  const auto info = mallinfo2();
  return info.uordblks + info.hblkhd;
}

void CountBytes(benchmark::State& state, const std::vector<std::string>& lines, std::size_t bytes) {
  std::size_t characters = 0;
  for (const auto& line : lines) characters += line.size();
  const auto count = static_cast<double>(lines.size());
  state.counters["bytes_a_line"] = static_cast<double>(bytes) / count;
  state.counters["of_it_text"] = static_cast<double>(characters) / count;
}

/// Processor time: what else the machine does must not look like the list's own slowness.
double ProcessorSeconds() {
  timespec now;
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) + 1e-9 * static_cast<double>(now.tv_nsec);
}

/// Times one pass over all lines at a time and sets it against the smallest list's time a line:
/// 1 is linear.
class TPerLine {
 public:
  TPerLine(benchmark::State& state, const char* job) : FState(state), FJob(job) {}
  ~TPerLine() {
    const auto lines = FState.range(0);
    FState.SetItemsProcessed(static_cast<std::int64_t>(FState.iterations()) * lines);
    const double perLine =
        FSeconds / static_cast<double>(FState.iterations()) / static_cast<double>(lines);
    // The smallest list's row runs first, and more than once: its last measure counts.
    static std::map<std::string, double> smallest;
    double& base = smallest[FJob + (FState.range(1) != 0 ? " sorted" : "")];
    if (lines == SmallestList) base = perLine;
    FState.counters["vs_1000_lines"] = perLine / base;
    FState.counters["ns_a_line"] = perLine * 1e9;
  }
  template <class TBody>
  void Time(TBody body) {
    const double start = ProcessorSeconds();
    body();
    const double seconds = ProcessorSeconds() - start;
    FSeconds += seconds;
    FState.SetIterationTime(seconds);
  }

 private:
  benchmark::State& FState;
  const std::string FJob;
  double FSeconds = 0;
};

TStringList Filled(const benchmark::State& state, const std::vector<std::string>& lines) {
  TStringList list({.Sorted = state.range(1) != 0});
  for (const auto& line : lines) list.Add(line);
  return list;
}

void AddDistinctLines(benchmark::State& state) {
  const auto lines = ShuffledLines(static_cast<std::size_t>(state.range(0)));
  {
    const std::size_t before = HeapInUse();
    const TStringList list = Filled(state, lines);
    CountBytes(state, lines, HeapInUse() - before);
  }
  TPerLine timer(state, "add");
  for (auto _ : state) {
    TStringList list({.Sorted = state.range(1) != 0});
    timer.Time([&] {
      for (const auto& line : lines) benchmark::DoNotOptimize(list.Add(line));
    });
  }
}

/// What the standard containers take for half the job: a set finds duplicates, but knows no index.
void AddDistinctToSet(benchmark::State& state) {
  const auto lines = ShuffledLines(static_cast<std::size_t>(state.range(0)));
  struct THash {
    std::size_t operator()(const std::string& text) const { return HashText(text, false); }
  };
  struct TSame {
    bool operator()(const std::string& a, const std::string& b) const { return SameText(a, b); }
  };
  struct TLess {
    bool operator()(const std::string& a, const std::string& b) const {
      return CompareText(a, b, false) < 0;
    }
  };
  TPerLine timer(state, "set");
  const auto run = [&](auto set) {
    const std::size_t before = HeapInUse();
    timer.Time([&] {
      for (const auto& line : lines) set.insert(line);
    });
    CountBytes(state, lines, HeapInUse() - before);
  };
  for (auto _ : state) {
    if (state.range(1) != 0) {
      run(std::set<std::string, TLess>());
    } else {
      run(std::unordered_set<std::string, THash, TSame>());
    }
  }
}

enum class TAsked { InOrderOfArrival, AtRandom };

/// At random every look-up of a long list waits for the memory, not for the list's own work.
template <TAsked Asked>
void AddDuplicateLines(benchmark::State& state) {
  auto lines = ShuffledLines(static_cast<std::size_t>(state.range(0)));
  TStringList list = Filled(state, lines);
  if (Asked == TAsked::AtRandom) lines = Shuffled(std::move(lines), 2);
  TPerLine timer(state, Asked == TAsked::AtRandom ? "duplicate at random" : "duplicate");
  for (auto _ : state) {
    timer.Time([&] {
      for (const auto& line : lines) benchmark::DoNotOptimize(list.Add(line));
    });
  }
}

template <TAsked Asked>
void ReadByName(benchmark::State& state) {
  auto lines = ShuffledLines(static_cast<std::size_t>(state.range(0)));
  const TStringList list = Filled(state, lines);
  if (Asked == TAsked::AtRandom) lines = Shuffled(std::move(lines), 2);
  for (auto& line : lines) line.resize(line.find('='));
  TPerLine timer(state, Asked == TAsked::AtRandom ? "name at random" : "name");
  for (auto _ : state) {
    timer.Time([&] {
      for (const auto& name : lines) benchmark::DoNotOptimize(list.Value(name));
    });
  }
}

void ReadByIndex(benchmark::State& state) {
  const TStringList list = Filled(state, ShuffledLines(static_cast<std::size_t>(state.range(0))));
  TPerLine timer(state, "index");
  for (auto _ : state) {
    timer.Time([&] {
      for (int i = 0; i < list.Count(); ++i) benchmark::DoNotOptimize(list.At(i));
    });
  }
}

void DeleteFirstLines(benchmark::State& state) {
  const auto lines = ShuffledLines(static_cast<std::size_t>(state.range(0)));
  TPerLine timer(state, "delete");
  for (auto _ : state) {
    TStringList list = Filled(state, lines);
    timer.Time([&] {
      while (list.Count() > 0) list.Delete(0);
    });
  }
}

void ParseCommaText(benchmark::State& state) {
  TStringList unsorted({});
  for (const auto& line : ShuffledLines(static_cast<std::size_t>(state.range(0))))
    unsorted.Add(line);
  const std::string text = unsorted.CommaText();
  TPerLine timer(state, "parse");
  for (auto _ : state) {
    TStringList list({.Sorted = state.range(1) != 0});
    timer.Time([&] { list.SetCommaText(text); });
  }
}

void WriteCommaText(benchmark::State& state) {
  const TStringList list = Filled(state, ShuffledLines(static_cast<std::size_t>(state.range(0))));
  TPerLine timer(state, "write");
  for (auto _ : state) {
    timer.Time([&] { benchmark::DoNotOptimize(list.CommaText()); });
  }
}

void Sizes(benchmark::internal::Benchmark* bench) {
  bench->ArgNames({"lines", "sorted"})
      ->ArgsProduct({{SmallestList, 30000, 1000000}, {0, 1}})
      ->UseManualTime()
      ->Unit(benchmark::kMillisecond);
}

BENCHMARK(AddDistinctLines)->Name("AddDistinctLines/ours")->Apply(Sizes);
BENCHMARK(AddDistinctToSet)->Name("AddDistinctLines/standard set")->Apply(Sizes);
BENCHMARK(AddDuplicateLines<TAsked::InOrderOfArrival>)->Name("AddDuplicateLines")->Apply(Sizes);
BENCHMARK(AddDuplicateLines<TAsked::AtRandom>)->Name("AddDuplicatesAtRandom")->Apply(Sizes);
BENCHMARK(ReadByName<TAsked::InOrderOfArrival>)->Name("ReadByName")->Apply(Sizes);
BENCHMARK(ReadByName<TAsked::AtRandom>)->Name("ReadByNameAtRandom")->Apply(Sizes);
BENCHMARK(ReadByIndex)->Apply(Sizes);
BENCHMARK(DeleteFirstLines)->Apply(Sizes);
BENCHMARK(ParseCommaText)->Apply(Sizes);
BENCHMARK(WriteCommaText)->Apply(Sizes);

}  // namespace
