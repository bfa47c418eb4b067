#include "platform/rules/temporary_name.h"

#include <algorithm>

#include "text/collation.h"

namespace {

constexpr std::wstring_view kDigits = L"0123456789abcdef";
constexpr std::wstring_view kPrefix = L"zef-";
constexpr std::wstring_view kSuffix = L".part";
constexpr std::wstring_view kVerbatim = L"\\\\?\\";
/// With fewer characters the system takes a path as it is, on all its versions.
constexpr std::size_t kLongPath = 260;

wchar_t Lowered(wchar_t c) { return c >= L'A' && c <= L'Z' ? static_cast<wchar_t>(c + 32) : c; }

bool SameName(std::wstring_view a, std::wstring_view b) {
  return std::ranges::equal(a, b, {}, Lowered, Lowered);
}

void AppendNumber(std::wstring& text, std::uint32_t number) {
  for (int shift = 28; shift >= 0; shift -= 4) text += kDigits[(number >> shift) & 15];
}

bool IsNumber(std::wstring_view text) {
  return std::ranges::all_of(
      text, [](wchar_t c) { return kDigits.find(Lowered(c)) != std::wstring_view::npos; });
}

}  // namespace

bool IsOneFile(std::wstring_view path) {
  if (path.starts_with(kVerbatim)) path.remove_prefix(kVerbatim.size());
  return !path.empty() && path.find_first_of(L"*?\"<>|") == std::wstring_view::npos;
}

std::wstring PathOfAnyLength(std::wstring_view path) {
  std::wstring result;
  const bool device = path.starts_with(kVerbatim) || path.starts_with(L"\\\\.\\");
  if (path.size() >= kLongPath && !device) {
    result = kVerbatim;
    if (path.starts_with(L"\\\\")) {
      result += L"UNC\\";
      path.remove_prefix(2);
    }
  }
  return result.append(path);
}

std::wstring TemporaryNameStart(std::wstring_view file) {
  // Of the file alone: what stands in for others of the folder may be about to replace them.
  std::string bytes;
  for (const wchar_t c : file) {
    bytes += static_cast<char>(Lowered(c));
    bytes += static_cast<char>(c >> 8);
  }
  std::wstring start(kPrefix);
  AppendNumber(start, static_cast<std::uint32_t>(HashText(bytes, true)));
  return start += L'-';
}

std::wstring TemporaryName(std::wstring_view file, const TNameKey& key) {
  std::wstring name = TemporaryNameStart(file);
  for (const std::uint32_t part : key) AppendNumber(name, part);
  return name.append(kSuffix);
}

bool IsTemporaryName(std::wstring_view name, std::wstring_view file) {
  const std::wstring model = TemporaryName(file, {});
  const auto start = TemporaryNameStart(file).size();
  const auto end = model.size() - kSuffix.size();
  return name.size() == model.size() && SameName(name.substr(0, start), model.substr(0, start)) &&
         IsNumber(name.substr(start, end - start)) && SameName(name.substr(end), kSuffix);
}
