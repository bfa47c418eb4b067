#include <algorithm>

#include "frame/exported.h"
#include "frame/settings.h"
#include "text/digest.h"
#include "zefext.h"

// None of these has to do with windows: any thread may call them.

long ZEFEXT_API GetRegConf(char* buffer, unsigned long size, const char* name,
                           unsigned char currentUser) {
  return Guarded(long{ERROR_GEN_FAILURE},
                 [&] { return QuerySetting(buffer, size, name, currentUser != 0); });
}

long ZEFEXT_API SetRegConf(const char* name, const char* value, unsigned char currentUser) {
  return Guarded(long{ERROR_GEN_FAILURE},
                 [&] { return StoreSetting(name, value, currentUser != 0); });
}

void ZEFEXT_API MD5(char* digest, const char* text) {
  Guarded([&] {
    if (!digest) return;
    const std::string digits = Md5Text(OrEmpty(text));
    std::copy_n(digits.c_str(), digits.size() + 1, digest);
  });
}
