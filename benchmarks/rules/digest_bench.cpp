#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <random>
#include <string>

#include "text/digest.h"

namespace {

constexpr std::size_t TextSize = 100 * 1000 * 1000;

const std::string& LargeText() {
  static const std::string text = [] {
    std::string bytes(TextSize, '\0');
    std::mt19937 random(3);
    for (char& c : bytes) c = static_cast<char>(1 + random() % 255);
    return bytes;
  }();
  return text;
}

void CountBytes(benchmark::State& state) {
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * TextSize));
}

void OurDigest(benchmark::State& state) {
  const std::string& text = LargeText();
  for (auto _ : state) benchmark::DoNotOptimize(Md5(text));
  CountBytes(state);
}

/// The machine's own tool on the same bytes. It also starts and reads its file, from the cache.
void DigestOfTheTool(benchmark::State& state) {
  char file[] = "/tmp/digest_bench_XXXXXX";
  const int descriptor = mkstemp(file);
  std::FILE* out = descriptor < 0 ? nullptr : fdopen(descriptor, "wb");
  if (out == nullptr || std::fwrite(LargeText().data(), 1, TextSize, out) != TextSize ||
      std::fclose(out) != 0) {
    state.SkipWithError("no temporary file");
    return;
  }
  const std::string command = std::string("md5sum < ") + file;
  char answer[33] = {};
  for (auto _ : state) {
    std::FILE* tool = popen(command.c_str(), "r");
    const bool read = tool != nullptr && std::fread(answer, 1, 32, tool) == 32;
    if (tool != nullptr) pclose(tool);
    if (!read) {
      state.SkipWithError("the tool does not answer");
      break;
    }
  }
  std::remove(file);
  if (Md5Text(LargeText()) != answer) state.SkipWithError("the two digests differ");
  CountBytes(state);
}

BENCHMARK(OurDigest)->Name("DigestOf100MB/ours")->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(DigestOfTheTool)
    ->Name("DigestOf100MB/md5sum")
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);

}  // namespace
