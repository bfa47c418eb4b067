#pragma once

#include <loopback_server.h>

#include <filesystem>
#include <optional>
#include <string>

#include "outside/outside_test.h"

/// A download window as a host drives it.
class TDownload {
 public:
  explicit TDownload(const TLibrary& library, ZefDialog owner = nullptr) : FLibrary(library) {
    EXPECT_EQ(Library().VCLNewURL(owner, nullptr, &FHandle), 1);
  }
  TDownload(TDownload&& other) noexcept
      : FLibrary(other.FLibrary), FHandle(std::exchange(other.FHandle, nullptr)) {}
  ~TDownload() {
    if (FHandle) Do(ZEF_DOWNLOAD_DESTROY);
  }

  int Do(int command, const char* text = nullptr, int* value = nullptr) const {
    return Library().VCLCmdURL(FHandle, static_cast<signed char>(command), const_cast<char*>(text),
                               value);
  }
  int StatusNow() const {
    int status = 99;
    EXPECT_EQ(Do(ZEF_DOWNLOAD_GET_STATUS, nullptr, &status), 1);
    return status;
  }
  void SetUp(const std::string& address, const char* file) const {
    Do(ZEF_DOWNLOAD_SET_ADDRESS, address.c_str());
    Do(ZEF_DOWNLOAD_SET_FILE, file);
  }
  /// Fetches in the background and waits.
  int StatusAfter(const std::string& address, const char* file) const {
    SetUp(address, file);
    Do(ZEF_DOWNLOAD_START);
    Do(ZEF_DOWNLOAD_WAIT);
    return StatusNow();
  }
  /// The start of the body kept in memory; the size as the library leaves it.
  std::string Body(int& size) const {
    std::string body(static_cast<std::size_t>(size), '?');
    EXPECT_EQ(Do(ZEF_DOWNLOAD_COPY_BODY, body.data(), &size), 1);
    return body;
  }
  ZefDialog Handle() const { return FHandle; }
  void Forget() { FHandle = nullptr; }

 private:
  const TLibrary& Library() const { return FLibrary; }

  const TLibrary& FLibrary;
  ZefDialog FHandle = nullptr;
};

/// A folder for downloads, empty at first, in which no rubbish may be left.
class TDownloadTest : public TOutsideTest {
 protected:
  void SetUp() override;
  void TearDown() override;

  std::string File(const std::string& name) const { return (FFolder / name).string(); }
  std::string Write(const std::string& name, std::string_view content) const;
  /// Nothing when there is no such file.
  static std::optional<std::string> Read(const std::string& path);
  /// Names of all files in the folder, in their order, once those that were given up are gone.
  std::string Files() const;

 private:
  std::filesystem::path FFolder;
};

/// Milliseconds that the call takes.
ULONGLONG Duration(const std::function<void()>& call);
