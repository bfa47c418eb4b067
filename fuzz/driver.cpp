// Runs a fuzz target for a while without a fuzzing engine: random and mutated inputs from a fixed
// seed, so that a failure comes back.

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

/// Inputs worth starting from, known to the target.
extern const std::vector<std::string>& FuzzSeeds();

namespace {

using TInput = std::vector<std::uint8_t>;

TInput RandomInput(std::mt19937& random) {
  TInput input(random() % 96);
  for (std::uint8_t& byte : input) byte = static_cast<std::uint8_t>(random());
  return input;
}

void Mutate(TInput& input, std::mt19937& random) {
  for (auto count = 1 + random() % 6; count > 0; --count) {
    const auto place = static_cast<std::ptrdiff_t>(random() % (input.size() + 1));
    const auto at = input.begin() + place;
    switch (random() % 4) {
      case 0:
        input.insert(at, static_cast<std::uint8_t>(random()));
        break;
      case 1:
        if (at != input.end()) input.erase(at);
        break;
      case 2:
        if (at != input.end()) *at = static_cast<std::uint8_t>(random());
        break;
      default: {
        const TInput copy(at, input.end());
        if (input.size() < 4096) input.insert(at, copy.begin(), copy.end());
        break;
      }
    }
  }
}

}  // namespace

int main(int argc, char** argv) {
  const int seconds = argc > 1 ? std::atoi(argv[1]) : 60;
  const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(seconds);
  std::mt19937 random(1102);
  const std::vector<std::string>& seeds = FuzzSeeds();
  unsigned long count = 0;
  do {
    TInput input;
    if (!seeds.empty() && random() % 4 != 0) {
      const std::string& seed = seeds[random() % seeds.size()];
      input.assign(seed.begin(), seed.end());
      Mutate(input, random);
    } else {
      input = RandomInput(random);
    }
    LLVMFuzzerTestOneInput(input.data(), input.size());
    ++count;
  } while (std::chrono::steady_clock::now() < end);
  std::printf("%lu inputs, no fault\n", count);
  return 0;
}
