#include "platform/rules/temporary_name.h"

#include <algorithm>

namespace {

constexpr wchar_t kDigits[] = L"0123456789abcdef";
constexpr std::wstring_view kSuffix = L".part";
constexpr std::size_t kKeyDigits = 32;

wchar_t Lowered(wchar_t c) { return c >= L'A' && c <= L'Z' ? static_cast<wchar_t>(c + 32) : c; }

bool SameName(std::wstring_view a, std::wstring_view b) {
  return std::ranges::equal(a, b, {}, Lowered, Lowered);
}

}  // namespace

bool IsOneFile(std::wstring_view path) {
  constexpr std::wstring_view verbatim = L"\\\\?\\";
  if (path.starts_with(verbatim)) path.remove_prefix(verbatim.size());
  return !path.empty() && path.find_first_of(L"*?\"<>|") == std::wstring_view::npos;
}

std::wstring TemporaryName(std::wstring_view file, const TNameKey& key) {
  std::wstring name(file);
  name += L'.';
  for (const std::uint32_t part : key) {
    for (int shift = 28; shift >= 0; shift -= 4) name += kDigits[(part >> shift) & 15];
  }
  return name.append(kSuffix);
}

bool IsTemporaryName(std::wstring_view name, std::wstring_view file) {
  if (name.size() != file.size() + 1 + kKeyDigits + kSuffix.size() ||
      !SameName(name.substr(0, file.size()), file)) {
    return false;
  }
  name.remove_prefix(file.size());
  const auto key = name.substr(1, kKeyDigits);
  return name.front() == L'.' && SameName(name.substr(1 + kKeyDigits), kSuffix) &&
         std::ranges::all_of(key, [](wchar_t c) {
           return std::wstring_view(kDigits).find(Lowered(c)) != std::wstring_view::npos;
         });
}
