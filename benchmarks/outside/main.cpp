#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <map>

#include "bench.h"

namespace {

std::map<std::string, void (*)()>& Groups() {
  static std::map<std::string, void (*)()> groups;
  return groups;
}

double Now() {
  LARGE_INTEGER count;
  LARGE_INTEGER frequency;
  QueryPerformanceCounter(&count);
  QueryPerformanceFrequency(&frequency);
  return static_cast<double>(count.QuadPart) / static_cast<double>(frequency.QuadPart);
}

}  // namespace

TBenchGroup::TBenchGroup(const char* name, void (*run)()) { Groups()[name] = run; }

double LeastSeconds(int rounds, const std::function<void()>& body) {
  double least = 1e9;
  for (int i = 0; i < rounds; ++i) {
    const double start = Now();
    body();
    least = std::min(least, Now() - start);
  }
  return least;
}

void PrintRow(const std::string& name, int rounds, double value, const char* unit) {
  std::printf("\"%s\",%d,%.3f,%.3f,%s\n", name.c_str(), rounds, value, value, unit);
  std::fflush(stdout);
}

void Fail(const std::string& what) {
  std::fprintf(stderr, "%s\n", what.c_str());
  std::exit(1);
}

std::string ProgramFolder() {
  char path[MAX_PATH];
  GetModuleFileNameA(nullptr, path, MAX_PATH);
  const std::string full = path;
  return full.substr(0, full.rfind('\\') + 1);
}

int main(int argc, char** argv) {
  for (const auto& [name, run] : Groups()) {
    if (argc < 2 || name.find(argv[1]) != std::string::npos) run();
  }
}
