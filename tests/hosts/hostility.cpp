#include "hosts/hostility.h"

#include <windows.h>

#include <float.h>
#include <objbase.h>

#include <cstdio>
#include <map>
#include <sstream>
#include <string>
#include <string_view>

namespace {

bool LoadSharedRuntime() { return LoadLibraryW(L"libgcc_s_dw2-1.dll") != nullptr; }

bool EnterMultithreadedApartment() { return CoInitializeEx(nullptr, COINIT_MULTITHREADED) == S_OK; }

bool UnmaskFloatingPoint() {
  constexpr unsigned unmasked = _EM_INVALID | _EM_ZERODIVIDE | _EM_OVERFLOW;
  return (_controlfp(~unmasked & _MCW_EM, unmasked) & unmasked) == 0;
}

const std::map<std::string_view, bool (*)()> Hostilities{
    {"runtime", LoadSharedRuntime},
    {"mta", EnterMultithreadedApartment},
    {"fpu", UnmaskFloatingPoint},
    {"932", [] { return GetACP() == 932; }},
    {"utf8", [] { return GetACP() == CP_UTF8; }},
};

}  // namespace

bool BecomeHost(int argc, char** argv) {
  constexpr std::string_view option = "--host=";
  for (int i = 1; i < argc; ++i) {
    if (!std::string_view(argv[i]).starts_with(option)) continue;
    std::istringstream words(argv[i] + option.size());
    for (std::string word; std::getline(words, word, ',');) {
      const auto found = Hostilities.find(word);
      if (found != Hostilities.end() && found->second()) continue;
      std::printf("no such host: %s\n", word.c_str());
      return false;
    }
  }
  return true;
}
