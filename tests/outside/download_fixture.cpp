#include <fstream>

#include "outside/download_test.h"

void TDownloadTest::SetUp() {
  TOutsideTest::SetUp();
  FFolder = std::filesystem::path(BesideProgram("downloads"));
  std::filesystem::remove_all(FFolder);
  std::filesystem::create_directory(FFolder);
}

void TDownloadTest::TearDown() {
  TOutsideTest::TearDown();
  EXPECT_EQ(Files().find(".part"), std::string::npos) << Files();
  std::filesystem::remove_all(FFolder);
}

std::string TDownloadTest::Write(const std::string& name, std::string_view content) const {
  std::ofstream(FFolder / name, std::ios::binary)
      .write(content.data(), static_cast<std::streamsize>(content.size()));
  return File(name);
}

std::optional<std::string> TDownloadTest::Read(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file) return std::nullopt;
  return std::string(std::istreambuf_iterator<char>(file), {});
}

std::string TDownloadTest::Files() const {
  std::string all;
  const ULONGLONG deadline = GetTickCount64() + 5000;
  do {
    if (!all.empty()) Sleep(10);
    std::set<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(FFolder)) {
      names.insert(entry.path().filename().string());
    }
    all.clear();
    for (const auto& name : names) all += name + " ";
  } while (all.find(".part") != std::string::npos && GetTickCount64() < deadline);
  return all;
}

ULONGLONG Duration(const std::function<void()>& call) {
  const ULONGLONG start = GetTickCount64();
  call();
  return GetTickCount64() - start;
}
