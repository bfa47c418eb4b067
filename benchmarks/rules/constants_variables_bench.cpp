#include <benchmark/benchmark.h>

#include "syntax/rules/constant_value.h"
#include "syntax/rules/script_variables.h"
#include "text/collation.h"

namespace {

TSyntaxDatabase LargeCategory(std::int64_t constants) {
  TSyntaxElement list;
  list.Kind = TSyntaxKind::List;
  list.Name = "Liste";
  list.Flag = "add";
  for (std::int64_t i = 0; i < constants; ++i)
    list.Constants.push_back({true, "vbConstante" + std::to_string(i), "Aide"});
  return TSyntaxDatabase({std::move(list)});
}

/// A tick as the dialog makes it: the value is built, shown and parsed again.
void TickOurs(benchmark::State& state) {
  TConstantChoice choice;
  choice.Fill(LargeCategory(state.range(0)), "Liste");
  int constant = 0;
  for (auto _ : state) {
    choice.Tick(constant, true);
    benchmark::DoNotOptimize(choice.Parse(choice.Value()));
    choice.Tick(constant, false);
    constant = (constant + 7) % choice.Count();
  }
}

/// The same by walking over all boxes at each step.
void TickByScan(benchmark::State& state) {
  const TSyntaxDatabase database = LargeCategory(state.range(0));
  const auto& constants = database.Elements()[0].Constants;
  std::vector<bool> ticked(constants.size());
  std::size_t constant = 0;
  for (auto _ : state) {
    ticked[constant] = true;
    std::string value;
    for (std::size_t i = 0; i < ticked.size(); ++i)
      if (ticked[i]) value += (value.empty() ? "" : "+") + constants[i].Name;
    const std::string wanted = UpperText(value);
    for (std::size_t i = 0; i < ticked.size(); ++i)
      ticked[i] = UpperText(constants[i].Name) == wanted;
    benchmark::DoNotOptimize(value);
    ticked[constant] = false;
    constant = (constant + 7) % ticked.size();
  }
}

std::string LargeCommaText(std::int64_t variables) {
  std::string text;
  for (std::int64_t i = 0; i < variables; ++i)
    text += (i ? ",compte" : "compte") + std::to_string(i) + "=Cpt";
  return text;
}

void LoadVariables(benchmark::State& state) {
  const std::string text = LargeCommaText(state.range(0));
  TScriptVariables variables;
  for (auto _ : state) {
    variables.Load(text);
    benchmark::DoNotOptimize(variables.Exists("compte1"));
  }
}

void RenameVariable(benchmark::State& state) {
  TScriptVariables variables;
  variables.Load(LargeCommaText(state.range(0)));
  for (auto _ : state) {
    variables.Rename("compte7", "autre");
    variables.Rename("autre", "compte7");
  }
}

BENCHMARK(TickOurs)->Name("ConstantTick/ours")->Arg(50)->Arg(5'000);
BENCHMARK(TickByScan)->Name("ConstantTick/scan")->Arg(50)->Arg(5'000);
BENCHMARK(LoadVariables)->Name("VariablesLoad/ours")->Arg(20)->Arg(2'000);
BENCHMARK(RenameVariable)->Name("VariablesRename/ours")->Arg(20)->Arg(2'000);

}  // namespace
