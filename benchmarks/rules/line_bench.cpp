#include <benchmark/benchmark.h>

#include <string>

#include "syntax/rules/assistant_model.h"
#include "syntax/rules/line_cut.h"

namespace {

// A type whose members give the type again, so that a chain of any length is typed to its end.
struct TChainSyntax {
  const TSyntaxDatabase Database = TSyntaxDatabase(Elements());
  TSyntaxNames Names;

  TChainSyntax() {
    Names.BuildWords(Database);
    Names.BuildTypes(Database);
  }
  TSyntaxView View() const { return {Database, Names}; }

  static std::vector<TSyntaxElement> Elements() {
    std::vector<TSyntaxElement> elements(2);
    TSyntaxElement& start = elements[0];
    start.Kind = TSyntaxKind::Const;
    start.Name = "App";
    start.Type = "Link";
    TSyntaxElement& link = elements[1];
    link.Kind = TSyntaxKind::Object;
    link.Name = "Link";
    for (const char* name : {"First", "Item", "Next", "Last"}) {
      TSyntaxMember& member = link.Members.emplace_back();
      member.Kind = TSyntaxKind::Method;
      member.Name = name;
      member.Return = TSyntaxReturn{"Link", {}};
    }
    return elements;
  }
};

const TChainSyntax& Syntax() {
  static const TChainSyntax syntax;
  return syntax;
}

std::string Repeated(std::string text, const char* unit, std::int64_t size) {
  while (static_cast<std::int64_t>(text.size()) < size) text += unit;
  return text;
}

std::string Chain(std::int64_t size) { return Repeated("App", ".item(1)", size); }
std::string Statement(std::int64_t size) { return Repeated("App.Item 1", ", f(2)", size); }

void Report(benchmark::State& state, const std::string& line) {
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * line.size()));
}

// The second argument is the cursor's place in the line in hundredths. One before a "(" would name
// the argument behind it, so the cursor goes after the nearest dot.
int Cursor(const benchmark::State& state, const std::string& line) {
  const auto place = line.size() * static_cast<std::size_t>(state.range(1)) / 100;
  if (place == line.size()) return static_cast<int>(place);
  return static_cast<int>(place == 0 ? 0 : line.rfind('.', place) + 1);
}

void CutChain(benchmark::State& state) {
  const std::string line = Chain(state.range(0));
  const int cursor = Cursor(state, line);
  for (auto _ : state) benchmark::DoNotOptimize(CutLine(line, cursor));
  Report(state, line);
}

void AnalyseChain(benchmark::State& state) {
  const std::string line = Chain(state.range(0));
  const int cursor = Cursor(state, line);
  TAssistantModel model;
  for (auto _ : state) model.AnalyseHostLine(Syntax().View(), line, cursor);
  state.counters["position"] = model.Analysis().Position();
  Report(state, line);
}

void AnalyseStatement(benchmark::State& state) {
  const std::string line = Statement(state.range(0));
  const int cursor = state.range(1) == 0 ? 0 : 5;
  TAssistantModel model;
  for (auto _ : state) model.AnalyseHostLine(Syntax().View(), line, cursor);
  state.counters["values"] = model.Analysis().ValueCount();
  Report(state, line);
}

// From the first object to the last one by one, as the arrow beside the line box goes.
void StepThroughChain(benchmark::State& state) {
  const std::string line = Chain(state.range(0));
  TAssistantModel model;
  model.AnalyseHostLine(Syntax().View(), line, 0);
  const int last = model.Analysis().SegmentCount() - 1;
  for (auto _ : state) {
    for (int position = 0; position <= last; ++position) model.Step(Syntax().View(), position);
  }
  state.counters["steps"] = last + 1;
  Report(state, line);
}

void TypeAValue(benchmark::State& state) {
  const std::string line = Statement(state.range(0));
  TAssistantModel model;
  model.AnalyseHostLine(Syntax().View(), line, 5);
  model.SelectParam(Syntax().View(), 0);
  bool longer = false;
  for (auto _ : state) {
    model.SetValue(Syntax().View(), longer ? "\"ab\"" : "\"a\"");
    longer = !longer;
  }
  Report(state, line);
}

constexpr int kSizes[] = {80, 4 << 10, 64 << 10, 1 << 20};

void SizesAndPlaces(benchmark::internal::Benchmark* bench) {
  for (int size : kSizes) {
    for (int place : {0, 50, 100}) bench->Args({size, place});
  }
}

void Sizes(benchmark::internal::Benchmark* bench) {
  for (int size : kSizes) bench->Args({size, 0});
}

BENCHMARK(CutChain)->Apply(SizesAndPlaces);
BENCHMARK(AnalyseChain)->Apply(SizesAndPlaces);
BENCHMARK(AnalyseStatement)->Apply(Sizes);
BENCHMARK(StepThroughChain)->Apply(Sizes);
BENCHMARK(TypeAValue)->Apply(Sizes);

}  // namespace
