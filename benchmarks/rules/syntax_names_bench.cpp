#include <benchmark/benchmark.h>

#include <algorithm>
#include <array>
#include <clocale>
#include <cstring>
#include <random>
#include <unordered_set>

#include "syntax/rules/syntax_names.h"
#include "text/collation.h"

namespace {

/// Names like those of a script language: a few common beginnings, a few letters more.
std::vector<std::string> Names(std::size_t count, unsigned seed) {
  static constexpr const char* starts[] = {"vb",   "Get",    "Set",  "Is",
                                           "Date", "Compte", ".Add", "Msg"};
  std::mt19937 random(seed);
  std::uniform_int_distribution<int> letter('a', 'z'), length(3, 12);
  std::vector<std::string> names;
  while (names.size() < count) {
    std::string name = starts[random() % std::size(starts)];
    for (int i = length(random); i > 0; --i) name += static_cast<char>(letter(random));
    names.push_back(name);
  }
  return names;
}

/// What an editor asks about: the names as users type them, or words that are no names.
std::vector<std::string> Words(const std::vector<std::string>& names, bool hits) {
  std::vector<std::string> words = hits ? names : Names(names.size(), 2);
  if (!hits)
    for (std::string& word : words) word.back() = '1';
  for (std::size_t i = 0; i < words.size(); i += 2) words[i] = UpperText(words[i]);
  std::shuffle(words.begin(), words.end(), std::mt19937(3));
  return words;
}

class TOurNames {
 public:
  explicit TOurNames(const std::vector<std::string>& names) {
    for (const std::string& name : names) FNames.Add(name);
  }
  bool Contains(const std::string& word) const { return FNames.Contains(word); }

 private:
  TNameSet FNames;
};

/// A sorted list searched by halves with the locale's comparison.
class TSortedNames {
 public:
  explicit TSortedNames(const std::vector<std::string>& names) {
    std::setlocale(LC_COLLATE, "");
    for (const std::string& name : names) FNames.push_back(UpperText(name));
    std::sort(FNames.begin(), FNames.end(), Before);
  }
  bool Contains(const std::string& word) const {
    return std::binary_search(FNames.begin(), FNames.end(), UpperText(word), Before);
  }

 private:
  static bool Before(const std::string& a, const std::string& b) {
    return std::strcoll(a.c_str(), b.c_str()) < 0;
  }
  std::vector<std::string> FNames;
};

/// The standard hash set, with upper-cased keys.
class TStandardNames {
 public:
  explicit TStandardNames(const std::vector<std::string>& names) {
    for (const std::string& name : names) FNames.insert(UpperText(name));
  }
  bool Contains(const std::string& word) const { return FNames.contains(UpperText(word)); }

 private:
  std::unordered_set<std::string> FNames;
};

/// A word list with an index of first letters, as editors' keyword lists are.
class TFirstLetterNames {
 public:
  explicit TFirstLetterNames(const std::vector<std::string>& names) {
    for (const std::string& name : names) FNames.push_back(UpperText(name));
    std::sort(FNames.begin(), FNames.end());
    FStart.fill(FNames.size());
    for (std::size_t i = FNames.size(); i-- > 0;) FStart[Letter(FNames[i])] = i;
  }
  bool Contains(const std::string& word) const {
    const std::size_t letter = UpperByte(word[0]);
    for (std::size_t i = FStart[letter]; i < FNames.size() && Letter(FNames[i]) == letter; ++i)
      if (SameText(FNames[i], word)) return true;
    return false;
  }

 private:
  static std::size_t Letter(const std::string& name) { return static_cast<unsigned char>(name[0]); }
  std::vector<std::string> FNames;
  std::array<std::size_t, 256> FStart;
};

template <class TNames>
void LookUp(benchmark::State& state) {
  const std::vector<std::string> all = Names(static_cast<std::size_t>(state.range(0)), 1);
  const bool hits = state.range(1) != 0;
  const TNames names(all);
  const std::vector<std::string> words = Words(all, hits);
  for (const std::string& word : words)
    if (names.Contains(word) != hits) return state.SkipWithError("wrong answer");
  std::size_t i = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(names.Contains(words[i]));
    if (++i == words.size()) i = 0;
  }
}

void Sizes(benchmark::internal::Benchmark* bench) {
  bench->ArgNames({"names", "hit"})->ArgsProduct({{100, 1'000, 10'000}, {0, 1}});
}

BENCHMARK(LookUp<TOurNames>)->Name("NameLookUp/ours")->Apply(Sizes);
BENCHMARK(LookUp<TSortedNames>)->Name("NameLookUp/sorted_by_locale")->Apply(Sizes);
BENCHMARK(LookUp<TStandardNames>)->Name("NameLookUp/unordered_set")->Apply(Sizes);
BENCHMARK(LookUp<TFirstLetterNames>)->Name("NameLookUp/first_letter_list")->Apply(Sizes);

}  // namespace
