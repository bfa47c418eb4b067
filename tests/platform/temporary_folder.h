#pragma once

#include <windows.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

/// A folder of its own that goes with the object.
class TTemporaryFolder {
 public:
  TTemporaryFolder() {
    static int number = 0;
    FPath = std::filesystem::temp_directory_path() /
            ("zefext_" + std::to_string(GetCurrentProcessId()) + "_" + std::to_string(++number));
    std::filesystem::create_directories(FPath);
  }
  ~TTemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(FPath, ignored);
  }
  TTemporaryFolder(const TTemporaryFolder&) = delete;
  TTemporaryFolder& operator=(const TTemporaryFolder&) = delete;

  const std::filesystem::path& Path() const { return FPath; }
  std::string File(std::string_view name) const { return (FPath / name).string(); }
  /// Writes a file and gives its path.
  std::string Write(std::string_view name, std::string_view bytes) const {
    const std::string path = File(name);
    std::ofstream file(path, std::ios::binary);
    file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    return path;
  }

 private:
  std::filesystem::path FPath;
};
