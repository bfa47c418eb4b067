#include <benchmark/benchmark.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <string>

#include "text/digest.h"

namespace {

constexpr std::size_t TextSize = 100 * 1000 * 1000;

double Seconds(std::chrono::steady_clock::time_point since) {
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - since).count();
}

/// A text against the machine's own tool on the same bytes, turn by turn, so that both meet the
/// same load. The tool also starts and reads its file, from the cache.
void DigestOfLargeText(benchmark::State& state) {
  std::string text(TextSize, '\0');
  std::mt19937 random(3);
  for (char& c : text) c = static_cast<char>(1 + random() % 255);
  char file[] = "/tmp/digest_bench_XXXXXX";
  const int descriptor = mkstemp(file);
  std::FILE* out = descriptor < 0 ? nullptr : fdopen(descriptor, "wb");
  if (out == nullptr || std::fwrite(text.data(), 1, text.size(), out) != text.size()) {
    state.SkipWithError("no temporary file");
    return;
  }
  std::fclose(out);
  const std::string command = std::string("md5sum < ") + file;
  double ours = 0;
  double theirs = 0;
  for (auto _ : state) {
    auto start = std::chrono::steady_clock::now();
    const std::string digest = Md5Text(text);
    const double seconds = Seconds(start);
    state.SetIterationTime(seconds);
    ours += seconds;

    start = std::chrono::steady_clock::now();
    std::FILE* tool = popen(command.c_str(), "r");
    char answer[33] = {};
    const bool read = tool != nullptr && std::fread(answer, 1, 32, tool) == 32;
    if (tool != nullptr) pclose(tool);
    theirs += Seconds(start);
    if (!read || digest != answer) {
      state.SkipWithError("the two digests differ");
      break;
    }
  }
  std::remove(file);
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * TextSize));
  state.counters["time_vs_md5sum"] = ours / theirs;
}

BENCHMARK(DigestOfLargeText)->UseManualTime()->Unit(benchmark::kMillisecond)->MinTime(1);

}  // namespace
