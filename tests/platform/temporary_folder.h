#pragma once

#include <windows.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

inline void WriteBytes(const std::filesystem::path& path, std::string_view bytes) {
  std::ofstream file(path, std::ios::binary);
  file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

/// A folder of its own that goes with the object.
struct TTemporaryFolder {
  TTemporaryFolder() {
    static int number = 0;
    Path = std::filesystem::temp_directory_path() /
           ("zefext_" + std::to_string(GetCurrentProcessId()) + "_" + std::to_string(++number));
    std::filesystem::create_directories(Path);
  }
  ~TTemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(Path, ignored);
  }
  TTemporaryFolder(const TTemporaryFolder&) = delete;
  TTemporaryFolder& operator=(const TTemporaryFolder&) = delete;

  std::string File(std::string_view name) const { return (Path / name).string(); }
  /// Writes a file and gives its path.
  std::string Write(std::string_view name, std::string_view bytes) const {
    WriteBytes(Path / name, bytes);
    return File(name);
  }

  std::filesystem::path Path;
};
