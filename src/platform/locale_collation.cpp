#include "platform/locale_collation.h"

#include <windows.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <limits>
#include <string>

#include "text/collation.h"

namespace {

// All by way of UTF-16 and the process's code page. The system's functions for 8-bit texts take the
// locale's code page instead, which in a UTF-8 process is another one.

/// The most bytes of a character of the process's code page.
UINT MostBytes(CPINFO& info) { return GetCPInfo(CP_ACP, &info) ? info.MaxCharSize : 1; }

/// A text in UTF-16, a short one without an allocation.
class TWideCopy {
 public:
  explicit TWideCopy(std::string_view text) {
    if (text.size() > FShort.size()) FLong.resize(text.size());
    FText = text.size() > FShort.size() ? FLong.data() : FShort.data();
    // No code page has a character of more UTF-16 units than bytes.
    const int room =
        static_cast<int>(std::min<std::size_t>(text.size(), std::numeric_limits<int>::max()));
    FLength = room ? MultiByteToWideChar(CP_ACP, 0, text.data(), room, FText, room) : 0;
  }
  TWideCopy(const TWideCopy&) = delete;
  TWideCopy& operator=(const TWideCopy&) = delete;

  const wchar_t* Text() const { return FText; }
  int Length() const { return FLength; }

 private:
  std::array<wchar_t, 256> FShort;
  std::wstring FLong;
  wchar_t* FText;
  int FLength;
};

/// The part of a text's sort key that outweighs all others: which letters, whatever their accents
/// and case.
std::string LetterKey(const std::string& text) {
  constexpr char EndOfLevel = 1;
  const TWideCopy wide(text);
  const auto sortKey = [&wide](char* key, int size) {
    // The size of a key counts bytes, and its text is one of bytes too.
    return LCMapStringW(LOCALE_USER_DEFAULT, LCMAP_SORTKEY, wide.Text(), wide.Length(),
                        reinterpret_cast<wchar_t*>(key), size);
  };
  std::string key(static_cast<std::size_t>(std::max(sortKey(nullptr, 0), 0)), '\0');
  sortKey(key.data(), static_cast<int>(key.size()));
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
  CPINFO info{};
  const UINT most = MostBytes(info);
  // The second of two bytes may look like a letter: only the system can tell.
  if (most == 2) return;
  // In UTF-8 each byte of ASCII is a character, and no other byte is.
  const std::size_t end = most == 1 ? 256 : 128;
  std::array<std::string, 256> keys;
  for (std::size_t byte = 1; byte < end; ++byte) keys[byte] = LetterKey({static_cast<char>(byte)});
  // Some languages sort two letters as one. There the table would be wrong, and stays empty.
  for (std::size_t first = 1; first < end; ++first) {
    std::string pairs;
    std::string expected;
    for (std::size_t second = 1; second < end; ++second) {
      pairs.append({static_cast<char>(first), static_cast<char>(second)});
      expected += keys[first] + keys[second];
    }
    if (LetterKey(pairs) != expected) return;
  }
  for (std::size_t byte = 1; byte < end; ++byte) {
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
  const TWideCopy wideA(a);
  const TWideCopy wideB(b);
  return CompareStringW(LOCALE_USER_DEFAULT, 0, wideA.Text(), wideA.Length(), wideB.Text(),
                        wideB.Length()) -
         CSTR_EQUAL;
}

/// The bytes of the character that begins a text, one when it is none.
int CharacterLength(std::string_view text) {
  wchar_t wide[2];
  const int most = static_cast<int>(std::min<std::size_t>(text.size(), 4));
  const bool leads = UserCollation().LeadBytes[static_cast<unsigned char>(text.front())];
  for (int length = leads ? 2 : 1; length <= most; ++length)
    if (MultiByteToWideChar(CP_ACP, MB_ERR_INVALID_CHARS, text.data(), length, wide, 2) > 0)
      return length;
  return 1;
}

TUpperCharacter UpperCharacter(std::string_view text) noexcept {
  TUpperCharacter upper;
  const int taken = CharacterLength(text);
  upper.Taken = static_cast<unsigned char>(taken);
  wchar_t wide[2];
  const int units = MultiByteToWideChar(CP_ACP, 0, text.data(), taken, wide, 2);
  wchar_t mapped[2];
  wchar_t back[2];
  const int capitals =
      LCMapStringW(LOCALE_USER_DEFAULT, LCMAP_UPPERCASE, wide, units, mapped, units);
  int bytes = WideCharToMultiByte(CP_ACP, 0, mapped, capitals, upper.Bytes.data(),
                                  static_cast<int>(upper.Bytes.size()), nullptr, nullptr);
  // A capital that the code page lacks would become its likeness or "?".
  const int again = MultiByteToWideChar(CP_ACP, 0, upper.Bytes.data(), bytes, back, 2);
  if (capitals == 0 || again != capitals || !std::equal(mapped, mapped + capitals, back)) {
    bytes = taken;
    std::copy_n(text.data(), taken, upper.Bytes.data());
  }
  upper.Length = static_cast<unsigned char>(bytes);
  return upper;
}

/// Each byte's capital, where the code page has one of one byte.
std::array<unsigned char, 256> UpperBytes(std::size_t characters) {
  std::array<unsigned char, 256> upper;
  std::array<wchar_t, 256> wide, mapped, back{};
  for (std::size_t byte = 0; byte < 256; ++byte) upper[byte] = static_cast<unsigned char>(byte);
  auto* const bytes = reinterpret_cast<char*>(upper.data());
  const int count = static_cast<int>(characters);
  const auto plain = upper;
  MultiByteToWideChar(CP_ACP, 0, bytes, count, wide.data(), count);
  LCMapStringW(LOCALE_USER_DEFAULT, LCMAP_UPPERCASE, wide.data(), count, mapped.data(), count);
  WideCharToMultiByte(CP_ACP, 0, mapped.data(), count, bytes, count, nullptr, nullptr);
  MultiByteToWideChar(CP_ACP, 0, bytes, count, back.data(), count);
  for (std::size_t byte = 0; byte < characters; ++byte)
    if (back[byte] != mapped[byte]) upper[byte] = plain[byte];
  return upper;
}

}  // namespace

void UseLocaleCollation() {
  TCollation collation;
  CPINFO info{};
  const bool singleByte = MostBytes(info) == 1;
  collation.Upper = UpperBytes(singleByte ? 256 : 128);
  if (!singleByte) {
    collation.UpperCharacter = UpperCharacter;
    // Pairs of a first and a last lead byte, closed by a pair of zeros; none in UTF-8.
    for (std::size_t i = 0; i + 1 < MAX_LEADBYTES && info.LeadByte[i] != 0; i += 2)
      for (unsigned byte = info.LeadByte[i]; byte <= info.LeadByte[i + 1]; ++byte)
        collation.LeadBytes[byte] = true;
  }
  collation.LocaleOrder = LocaleOrder;
  SetUserCollation(collation);
}
