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
    EXPECT_EQ(FLibrary.VCLNewURL(owner, nullptr, &Handle), 1);
  }
  TDownload(const TDownload&) = delete;
  TDownload& operator=(const TDownload&) = delete;
  ~TDownload() { Do(ZEF_DOWNLOAD_DESTROY); }

  int Do(int command, const char* text = nullptr, int* value = nullptr) const {
    return FLibrary.VCLCmdURL(Handle, static_cast<signed char>(command), const_cast<char*>(text),
                              value);
  }
  int Status() const {
    int status = 99;
    Do(ZEF_DOWNLOAD_GET_STATUS, nullptr, &status);
    return status;
  }
  /// In the background; a null file keeps the document in memory.
  void Start(const std::string& address, const char* file) const {
    Do(ZEF_DOWNLOAD_SET_ADDRESS, address.c_str());
    Do(ZEF_DOWNLOAD_SET_FILE, file);
    Do(ZEF_DOWNLOAD_START);
  }
  int StatusAfter(const std::string& address, const char* file) const {
    Start(address, file);
    Do(ZEF_DOWNLOAD_WAIT);
    return Status();
  }
  /// The start of the body kept in memory; the size as the library leaves it.
  std::string Body(int& size) const {
    std::string body(static_cast<std::size_t>(size), '?');
    EXPECT_EQ(Do(ZEF_DOWNLOAD_COPY_BODY, body.data(), &size), 1);
    return body;
  }

  ZefDialog Handle = nullptr;

 private:
  const TLibrary& FLibrary;
};

/// A server that does, good and bad, what the path says, and a folder for downloads, empty at
/// first, in which no rubbish may be left.
class TDownloadTest : public TOutsideTest {
 protected:
  static constexpr char Whole[] = "0123456789abcdefghijklmnopqrstuvwxyz";

  void SetUp() override;
  void TearDown() override;

  std::string At(std::string_view path) const { return Server.Address(path); }
  std::string File(const std::string& name) const { return (FFolder / name).string(); }
  std::string Write(const std::string& name, std::string_view content) const;
  /// Nothing when there is no such file.
  static std::optional<std::string> Read(const std::string& path);
  /// Names of all files in the folder, in their order, once those that were given up are gone.
  std::string Files() const;

  const TLoopbackServer Server{Serve};

 private:
  static void Serve(TConnection& connection);

  std::filesystem::path FFolder;
};
