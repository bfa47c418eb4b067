#include "hosts/hostility.h"

#include <windows.h>

#include <float.h>
#include <objbase.h>

#include <algorithm>
#include <cstdio>
#include <string_view>

namespace {

bool LoadSharedRuntime() { return LoadLibraryW(L"libgcc_s_dw2-1.dll") != nullptr; }

bool EnterMultithreadedApartment() { return CoInitializeEx(nullptr, COINIT_MULTITHREADED) == S_OK; }

bool UnmaskFloatingPoint() {
  constexpr unsigned unmasked = _EM_INVALID | _EM_ZERODIVIDE | _EM_OVERFLOW;
  return (_controlfp(~unmasked & _MCW_EM, unmasked) & unmasked) == 0;
}

const struct {
  std::string_view Word;
  bool (*Become)();
} kHostilities[] = {
    {"runtime", LoadSharedRuntime},
    {"mta", EnterMultithreadedApartment},
    {"fpu", UnmaskFloatingPoint},
};

bool Become(std::string_view word) {
  const auto found =
      std::ranges::find(kHostilities, word, [](const auto& each) { return each.Word; });
  if (found != std::end(kHostilities) && found->Become()) return true;
  std::printf("no such host: %.*s\n", static_cast<int>(word.size()), word.data());
  return false;
}

}  // namespace

bool BecomeHost(int& argc, char** argv) {
  constexpr std::string_view option = "--host=";
  char** const end = argv + argc;
  char** const found = std::find_if(
      argv, end, [&](const char* each) { return std::string_view(each).starts_with(option); });
  if (found == end) return true;
  std::string_view words(*found);
  words.remove_prefix(option.size());
  std::rotate(found, found + 1, end);
  --argc;
  while (!words.empty()) {
    const auto comma = std::min(words.find(','), words.size());
    if (!Become(words.substr(0, comma))) return false;
    words.remove_prefix(std::min(comma + 1, words.size()));
  }
  return true;
}
