#include "text/collation.h"

#include <algorithm>
#include <cstdint>

namespace {

constexpr TCollation Windows1252() {
  TCollation rules{};
  for (unsigned i = 0; i < 256; ++i) {
    const bool asciiLetter = i >= 'a' && i <= 'z';
    // 0xF7 is the division sign, whose neighbour 32 below is the multiplication sign.
    const bool accented = i >= 0xE0 && i <= 0xFE && i != 0xF7;
    const bool highLetter = i == 0x9A || i == 0x9C || i == 0x9E;
    unsigned upper = i;
    if (asciiLetter || accented) upper = i - 0x20;
    if (highLetter) upper = i - 0x10;
    if (i == 0xFF) upper = 0x9F;
    rules.Upper[i] = static_cast<unsigned char>(upper);
  }
  return rules;
}

constinit TCollation userCollation = Windows1252();

/// A short text's upper case without an allocation: sorting asks for two at each comparison.
class TUpperCopy {
 public:
  explicit TUpperCopy(std::string_view text) : FLength(text.size()) {
    if (FLength > FShort.size()) FLong.resize(FLength);
    char* to = FLength > FShort.size() ? FLong.data() : FShort.data();
    for (char c : text) *to++ = static_cast<char>(UpperByte(c));
  }
  std::string_view View() const {
    return FLong.empty() ? std::string_view(FShort.data(), FLength) : std::string_view(FLong);
  }

 private:
  std::size_t FLength;
  std::array<char, 256> FShort;
  std::string FLong;
};

int UpperByteOrder(std::string_view a, std::string_view b) {
  const auto& upper = userCollation.Upper;
  const std::size_t common = std::min(a.size(), b.size());
  for (std::size_t i = 0; i < common; ++i) {
    const int difference =
        upper[static_cast<unsigned char>(a[i])] - upper[static_cast<unsigned char>(b[i])];
    if (difference != 0) return difference;
  }
  return a.size() == b.size() ? 0 : a.size() < b.size() ? -1 : 1;
}

}  // namespace

const TCollation& UserCollation() { return userCollation; }

void SetUserCollation(const TCollation& collation) { userCollation = collation; }

std::string UpperText(std::string_view text) {
  std::string result(text);
  for (char& c : result) c = static_cast<char>(UpperByte(c));
  return result;
}

bool SameText(std::string_view a, std::string_view b) {
  return a.size() == b.size() && UpperByteOrder(a, b) == 0;
}

int CompareText(std::string_view a, std::string_view b, bool caseSensitive) {
  // The bytes first: they are cheap, and equal texts then never reach the locale.
  const int bytes = caseSensitive ? a.compare(b) : UpperByteOrder(a, b);
  if (bytes == 0 || userCollation.LocaleOrder == nullptr) return bytes;
  const int order = caseSensitive
                        ? userCollation.LocaleOrder(a, b)
                        : userCollation.LocaleOrder(TUpperCopy(a).View(), TUpperCopy(b).View());
  return order != 0 ? order : bytes;
}

std::size_t HashText(std::string_view text, bool caseSensitive) {
  std::uint32_t hash = 0x811C9DC5u;
  constexpr std::uint32_t prime = 0x01000193u;
  if (caseSensitive) {
    for (char c : text) hash = (hash ^ static_cast<unsigned char>(c)) * prime;
  } else {
    const auto& upper = userCollation.Upper;
    for (char c : text) hash = (hash ^ upper[static_cast<unsigned char>(c)]) * prime;
  }
  // Tables take the low bits, which the last multiplication alone leaves too regular.
  hash ^= hash >> 16;
  hash *= 0x85EBCA6Bu;
  hash ^= hash >> 13;
  hash *= 0xC2B2AE35u;
  hash ^= hash >> 16;
  return hash;
}
