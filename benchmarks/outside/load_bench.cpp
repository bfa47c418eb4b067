// Size of the library, and loading it for one call, against a library that is empty.

#include <fstream>

#include "bench.h"

namespace {

constexpr int kRounds = 30;

void MeasureFile(const char* variant, const std::string& file, const char* function) {
  const std::string path = ProgramFolder() + file;
  std::ifstream stream(path, std::ios::binary | std::ios::ate);
  if (!stream) Fail("no file " + path);
  PrintRow(std::string("LibrarySize/") + variant, 1, static_cast<double>(stream.tellg()), "bytes");
  const double seconds = LeastSeconds(kRounds, [&] {
    const HMODULE library = LoadLibraryA(path.c_str());
    if (!library) Fail("cannot load " + path);
    LibraryFunction<unsigned long(WINAPI*)()>(library, function)();
    FreeLibrary(library);
  });
  PrintRow(std::string("LibraryLoad/") + variant, kRounds, seconds * 1e6, "us");
}

const TBenchGroup group("load", [] {
  MeasureFile("empty", "empty.dll", "VCLGetVersion@0");
  MeasureFile("ours", "zefext.dll", "VCLGetVersion");
});

}  // namespace
