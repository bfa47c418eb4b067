#include "platform/file_stamp.h"

#include <windows.h>

#include "platform/code_page.h"
#include "platform/owned.h"

std::optional<TFileStamp> FileStamp(const std::string& path) {
  const TKernelHandle file(CreateFileW(ToWide(path).c_str(), FILE_READ_ATTRIBUTES,
                                       FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                       nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
  if (!file) return {};
  BY_HANDLE_FILE_INFORMATION info{};
  FILE_BASIC_INFO times{};
  const bool known = GetFileInformationByHandle(file.Get(), &info);
  if (!GetFileInformationByHandleEx(file.Get(), FileBasicInfo, &times, sizeof times)) times = {};
  if (!known || info.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) return {};
  const auto join = [](DWORD high, DWORD low) {
    return static_cast<std::uint64_t>(high) << 32 | low;
  };
  return TFileStamp{join(info.nFileSizeHigh, info.nFileSizeLow),
                    join(info.ftLastWriteTime.dwHighDateTime, info.ftLastWriteTime.dwLowDateTime),
                    static_cast<std::uint64_t>(times.ChangeTime.QuadPart),
                    join(info.nFileIndexHigh, info.nFileIndexLow), info.dwVolumeSerialNumber};
}
