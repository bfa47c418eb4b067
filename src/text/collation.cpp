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

/// Gives a text's upper case byte by byte, whatever its characters are made of.
class TUpperBytes {
 public:
  explicit TUpperBytes(std::string_view text) : FRest(text) {}

  bool AtEnd() const { return FRest.empty() && FGiven == FCharacter.Length; }
  /// Not at the end.
  unsigned char Next() {
    if (FGiven == FCharacter.Length) {
      const auto byte = static_cast<unsigned char>(FRest.front());
      if (byte < 0x80 || !userCollation.UpperCharacter) {
        FRest.remove_prefix(1);
        return userCollation.Upper[byte];
      }
      FCharacter = userCollation.UpperCharacter(FRest);
      FRest.remove_prefix(FCharacter.Taken);
      FGiven = 0;
    }
    return static_cast<unsigned char>(FCharacter.Bytes[FGiven++]);
  }

 private:
  std::string_view FRest;
  TUpperCharacter FCharacter;
  unsigned char FGiven = 0;
};

/// A short text's upper case without an allocation: sorting asks for two at each comparison.
class TUpperCopy {
 public:
  explicit TUpperCopy(std::string_view text) {
    for (TUpperBytes bytes(text); !bytes.AtEnd();) {
      if (FLength == FShort.size()) {
        FLong = UpperText(text);
        return;
      }
      FShort[FLength++] = static_cast<char>(bytes.Next());
    }
  }
  std::string_view View() const {
    return FLong.empty() ? std::string_view(FShort.data(), FLength) : std::string_view(FLong);
  }

 private:
  std::size_t FLength = 0;
  std::array<char, 256> FShort;
  std::string FLong;
};

}  // namespace

const TCollation& UserCollation() { return userCollation; }

void SetUserCollation(const TCollation& collation) { userCollation = collation; }

std::string MaskDoubleBytes(std::string_view text) {
  constexpr char neutral = '\x80';
  std::string mask(text);
  for (std::size_t i = 0; i + 1 < mask.size(); ++i) {
    // In every such code page the second byte stands behind the signs and digits.
    const bool pair = userCollation.LeadBytes[static_cast<unsigned char>(mask[i])] &&
                      static_cast<unsigned char>(mask[i + 1]) >= 0x40;
    if (!pair) continue;
    mask[i] = mask[i + 1] = neutral;
    ++i;
  }
  return mask;
}

std::string UpperText(std::string_view text) {
  std::string result;
  result.reserve(text.size());
  for (TUpperBytes bytes(text); !bytes.AtEnd();) result += static_cast<char>(bytes.Next());
  return result;
}

int CompareUpperBytes(std::string_view a, std::string_view b) noexcept {
  TUpperBytes left(a);
  TUpperBytes right(b);
  while (!left.AtEnd() && !right.AtEnd()) {
    if (const int difference = left.Next() - right.Next()) return difference;
  }
  return static_cast<int>(right.AtEnd()) - static_cast<int>(left.AtEnd());
}

bool SameText(std::string_view a, std::string_view b) noexcept {
  return (a.size() == b.size() || userCollation.UpperCharacter) && CompareUpperBytes(a, b) == 0;
}

int CompareText(std::string_view a, std::string_view b, bool caseSensitive) {
  // The bytes first: they are cheap, and equal texts then never reach the locale.
  const int bytes = caseSensitive ? a.compare(b) : CompareUpperBytes(a, b);
  if (bytes == 0 || userCollation.LocaleOrder == nullptr) return bytes;
  const int order = caseSensitive
                        ? userCollation.LocaleOrder(a, b)
                        : userCollation.LocaleOrder(TUpperCopy(a).View(), TUpperCopy(b).View());
  return order != 0 ? order : bytes;
}

std::size_t HashText(std::string_view text, bool caseSensitive) noexcept {
  std::uint32_t hash = 0x811C9DC5u;
  constexpr std::uint32_t prime = 0x01000193u;
  if (caseSensitive) {
    for (char c : text) hash = (hash ^ static_cast<unsigned char>(c)) * prime;
  } else {
    for (TUpperBytes bytes(text); !bytes.AtEnd();) hash = (hash ^ bytes.Next()) * prime;
  }
  // Tables take the low bits, which the last multiplication alone leaves too regular.
  hash ^= hash >> 16;
  hash *= 0x85EBCA6Bu;
  hash ^= hash >> 13;
  hash *= 0xC2B2AE35u;
  hash ^= hash >> 16;
  return hash;
}
