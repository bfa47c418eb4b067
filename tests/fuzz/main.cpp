// --target=NAME says which of the targets runs.

#include "fuzz.h"

namespace {

using TTarget = void (*)(TInput);

const struct {
  std::string_view Name;
  TTarget Run;
} kTargets[] = {
    {"constants", FuzzConstants},
    {"database", FuzzDatabase},
    {"directories", FuzzDirectories},
    {"layout", FuzzLayout},
    {"line", FuzzLine},
    {"lists", FuzzLists},
    {"web", FuzzWeb},
    {"xml", FuzzXml},
};

TTarget target = nullptr;

}  // namespace

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv) {
  for (int i = 1; i < *argc; ++i)
    for (const auto& each : kTargets)
      if (std::string_view((*argv)[i]) == std::string("--target=").append(each.Name))
        target = each.Run;
  Check(target != nullptr);
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  target(TInput({reinterpret_cast<const char*>(data), size}));
  return 0;
}
