#include "platform/file_stamp.h"

#include <windows.h>

#include "platform/code_page.h"

std::optional<TFileStamp> FileStamp(const std::string& path) {
  WIN32_FILE_ATTRIBUTE_DATA data;
  if (!GetFileAttributesExW(ToWide(path).c_str(), GetFileExInfoStandard, &data)) return {};
  if (data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) return {};
  const auto join = [](DWORD high, DWORD low) {
    return static_cast<std::uint64_t>(high) << 32 | low;
  };
  return TFileStamp{join(data.nFileSizeHigh, data.nFileSizeLow),
                    join(data.ftLastWriteTime.dwHighDateTime, data.ftLastWriteTime.dwLowDateTime)};
}
