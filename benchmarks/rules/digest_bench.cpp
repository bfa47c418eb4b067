#include <benchmark/benchmark.h>
#include <sys/resource.h>

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

/// Processor time of this process or of the tools it waited for: what else the machine does must
/// not count.
double ProcessorSeconds(int whose) {
  rusage usage;
  getrusage(whose, &usage);
  const auto seconds = [](const timeval& time) {
    return static_cast<double>(time.tv_sec) + 1e-6 * static_cast<double>(time.tv_usec);
  };
  return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

void OurDigest(benchmark::State& state) {
  const std::string& text = LargeText();
  for (auto _ : state) {
    const double start = ProcessorSeconds(RUSAGE_SELF);
    benchmark::DoNotOptimize(Md5(text));
    state.SetIterationTime(ProcessorSeconds(RUSAGE_SELF) - start);
  }
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
    const double start = ProcessorSeconds(RUSAGE_CHILDREN);
    std::FILE* tool = popen(command.c_str(), "r");
    const bool read = tool != nullptr && std::fread(answer, 1, 32, tool) == 32;
    if (tool != nullptr) pclose(tool);
    if (!read) {
      state.SkipWithError("the tool does not answer");
      break;
    }
    state.SetIterationTime(ProcessorSeconds(RUSAGE_CHILDREN) - start);
  }
  std::remove(file);
  if (Md5Text(LargeText()) != answer) state.SkipWithError("the two digests differ");
  CountBytes(state);
}

BENCHMARK(OurDigest)->Name("DigestOf100MB/ours")->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(DigestOfTheTool)
    ->Name("DigestOf100MB/md5sum")
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

}  // namespace
