// String lists through the exports, in the order of the user's locale as the system compares it:
// nanoseconds a line.

#include <algorithm>
#include <random>
#include <vector>

#include "bench.h"
#include "zefext.h"

namespace {

constexpr int kSizes[] = {1000, 30000, 1000000};

/// Distinct name=value lines in an order that is neither sorted nor reversed.
std::vector<std::string> ShuffledLines(int count) {
  std::vector<std::string> lines;
  for (int i = 0; i < count; ++i)
    lines.push_back("Op\xE9ration " + std::to_string(i) + "=Cpt " + std::to_string(i % 97));
  std::shuffle(lines.begin(), lines.end(), std::mt19937(1));
  return lines;
}

void Measure(HMODULE library) {
#define ZEF_IMPORT(name) const auto name = LibraryFunction<decltype(&::name)>(library, #name)
  ZEF_IMPORT(VCLAnsiStringCreate);
  ZEF_IMPORT(VCLAnsiStringFree);
  ZEF_IMPORT(VCLStringListCreate);
  ZEF_IMPORT(VCLStringListFree);
  ZEF_IMPORT(VCLStringListAdd);
  ZEF_IMPORT(VCLStringListCount);
  ZEF_IMPORT(VCLStringListGetCommaText);
  ZEF_IMPORT(VCLStringListSetCommaText);
#undef ZEF_IMPORT
  for (const int count : kSizes) {
    const std::vector<std::string> lines = ShuffledLines(count);
    for (const bool sorted : {false, true}) {
      const auto row = [&](const char* job, double seconds) {
        PrintRow(
            std::string(job) + "/" + (sorted ? "sorted" : "unsorted") + "/" + std::to_string(count),
            1, seconds * 1e9 / count, "ns");
      };
      ZefStringList list = nullptr;
      ZefStringList copy = nullptr;
      ZefString text = nullptr;
      VCLStringListCreate(&list, 0, 0, sorted);
      VCLStringListCreate(&copy, 0, 0, sorted);
      VCLAnsiStringCreate(&text);
      const auto addAll = [&] {
        for (const std::string& line : lines) VCLStringListAdd(list, line.c_str());
      };
      row("ExportedAdd", LeastSeconds(1, addAll));
      row("ExportedAddDuplicate", LeastSeconds(1, addAll));
      row("ExportedWriteCommaText",
          LeastSeconds(1, [&] { VCLStringListGetCommaText(list, text); }));
      row("ExportedParseCommaText",
          LeastSeconds(1, [&] { VCLStringListSetCommaText(copy, text); }));
      if (VCLStringListCount(copy) != count) Fail("lines are lost");
      VCLAnsiStringFree(text);
      VCLStringListFree(copy);
      VCLStringListFree(list);
    }
  }
}

const TBenchGroup group("string_list", [] {
  const HMODULE library = LoadLibraryA((ProgramFolder() + "zefext.dll").c_str());
  if (!library) Fail("no zefext.dll");
  Measure(library);
  FreeLibrary(library);
});

}  // namespace
