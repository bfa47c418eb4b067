// --target=NAME says which of the targets runs.

#include "fuzz.h"

static void (*run)(TInput) = nullptr;

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv) {
  for (int i = 1; i < *argc; ++i)
    if (const std::string_view argument = (*argv)[i]; argument.starts_with("--target="))
      run = targets.at(std::string(argument.substr(9)));
  Check(run != nullptr);
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  run(TInput({reinterpret_cast<const char*>(data), size}));
  return 0;
}
