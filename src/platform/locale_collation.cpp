#include "platform/locale_collation.h"

#include <windows.h>

#include <algorithm>
#include <cstdint>
#include <string>

#include "text/collation.h"

namespace {

bool SingleByteCodePage() {
  CPINFO info{};
  return GetCPInfo(CP_ACP, &info) && info.MaxCharSize == 1;
}

/// The part of a text's sort key that outweighs all others: which letters, whatever their accents
/// and case.
std::string LetterKey(const std::string& text) {
  constexpr char EndOfLevel = 1;
  const int length = static_cast<int>(text.size());
  const int size =
      LCMapStringA(LOCALE_USER_DEFAULT, LCMAP_SORTKEY, text.data(), length, nullptr, 0);
  std::string key(static_cast<std::size_t>(std::max(size, 0)), '\0');
  LCMapStringA(LOCALE_USER_DEFAULT, LCMAP_SORTKEY, text.data(), length, key.data(), size);
  return key.substr(0, key.find(EndOfLevel));
}

/// Decides most comparisons by a table: asking the system takes a microsecond, some twenty times
/// for each line that a long sorted list is given.
class TLetterOrder {
 public:
  TLetterOrder();
  /// Negative or positive as the locale orders the texts; 0 when only the system can tell.
  int Compare(std::string_view a, std::string_view b) const;

 private:
  std::array<std::uint16_t, 256> FWeights{};  ///< 0: not one plain letter, digit or sign
};

TLetterOrder::TLetterOrder() {
  if (!SingleByteCodePage()) return;
  std::array<std::string, 256> keys;
  for (std::size_t byte = 1; byte < 256; ++byte) keys[byte] = LetterKey({static_cast<char>(byte)});
  // Some languages sort two letters as one. There the table would be wrong, and stays empty.
  for (std::size_t first = 1; first < 256; ++first) {
    std::string pairs;
    std::string expected;
    for (std::size_t second = 1; second < 256; ++second) {
      pairs.append({static_cast<char>(first), static_cast<char>(second)});
      expected += keys[first] + keys[second];
    }
    if (LetterKey(pairs) != expected) return;
  }
  for (std::size_t byte = 1; byte < 256; ++byte) {
    const std::string& key = keys[byte];
    if (key.size() == 2)
      FWeights[byte] = static_cast<std::uint16_t>(static_cast<unsigned char>(key[0]) << 8 |
                                                  static_cast<unsigned char>(key[1]));
  }
}

int TLetterOrder::Compare(std::string_view a, std::string_view b) const {
  const auto weight = [this](char c) { return FWeights[static_cast<unsigned char>(c)]; };
  const std::size_t common = std::min(a.size(), b.size());
  for (std::size_t i = 0; i < common; ++i) {
    if (a[i] == b[i]) continue;
    const std::uint16_t weightA = weight(a[i]);
    const std::uint16_t weightB = weight(b[i]);
    if (weightA == 0 || weightB == 0) return 0;
    if (weightA != weightB) return weightA < weightB ? -1 : 1;
  }
  if (a.size() > common && weight(a[common]) != 0) return 1;
  if (b.size() > common && weight(b[common]) != 0) return -1;
  return 0;
}

int LocaleOrder(std::string_view a, std::string_view b) {
  static const TLetterOrder letters;
  if (const int order = letters.Compare(a, b)) return order;
  return CompareStringA(LOCALE_USER_DEFAULT, 0, a.data(), static_cast<int>(a.size()), b.data(),
                        static_cast<int>(b.size())) -
         CSTR_EQUAL;
}

}  // namespace

void UseLocaleCollation() {
  TCollation collation{};
  const bool singleByte = SingleByteCodePage();
  for (std::size_t byte = 0; byte < 256; ++byte) {
    char upper = static_cast<char>(byte);
    if (byte < 0x80 || singleByte)
      LCMapStringA(LOCALE_USER_DEFAULT, LCMAP_UPPERCASE, &upper, 1, &upper, 1);
    collation.Upper[byte] = static_cast<unsigned char>(upper);
  }
  collation.LocaleOrder = LocaleOrder;
  SetUserCollation(collation);
}
