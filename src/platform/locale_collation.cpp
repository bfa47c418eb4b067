#include "platform/locale_collation.h"

#include <windows.h>

#include "text/collation.h"

namespace {

int LocaleOrder(std::string_view a, std::string_view b) {
  return CompareStringA(LOCALE_USER_DEFAULT, 0, a.data(), static_cast<int>(a.size()), b.data(),
                        static_cast<int>(b.size())) -
         CSTR_EQUAL;
}

}  // namespace

void UseLocaleCollation() {
  TCollation collation{};
  CPINFO info{};
  const bool singleByte = GetCPInfo(CP_ACP, &info) && info.MaxCharSize == 1;
  for (std::size_t byte = 0; byte < 256; ++byte) {
    char upper = static_cast<char>(byte);
    if (byte < 0x80 || singleByte)
      LCMapStringA(LOCALE_USER_DEFAULT, LCMAP_UPPERCASE, &upper, 1, &upper, 1);
    collation.Upper[byte] = static_cast<unsigned char>(upper);
  }
  collation.LocaleOrder = LocaleOrder;
  SetUserCollation(collation);
}
