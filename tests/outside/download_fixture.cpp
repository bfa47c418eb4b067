#include <fstream>
#include <map>

#include "outside/download_test.h"

namespace {
const std::string Body = "0123456789abcdefghijklmnopqrstuvwxyz";
constexpr unsigned Long = 60000;
constexpr char Ok[] = "HTTP/1.1 200 OK\r\nConnection: close\r\n";

std::string Declared(std::size_t length) {
  return Ok + ("Content-Length: " + std::to_string(length) + "\r\n\r\n");
}

std::string Lines(int count) {
  return count ? "X: " + std::string(1000, 'h') + "\r\n" + Lines(count - 1) : "";
}

const std::string Chunks = Ok + ("Transfer-Encoding: chunked\r\n\r\na\r\n" + Body.substr(0, 10));

/// What is sent, and what follows: the end of the connection, silence, or its breaking off.
enum class TThen { Close, Stall, Reset };
const std::map<std::string, std::pair<std::string, TThen>> Answers{
    {"/exact", {Declared(Body.size()) + Body, TThen::Close}},
    {"/a%20b?c", {Declared(Body.size()) + Body, TThen::Close}},
    {"/kept", {"HTTP/1.1 200 OK\r\nContent-Length: 36\r\n\r\n" + Body, TThen::Close}},
    {"/no-length", {Ok + ("\r\n" + Body), TThen::Close}},
    {"/chunked", {Chunks + "\r\n1a;x=y\r\n" + Body.substr(10) + "\r\n0\r\n\r\n", TThen::Close}},
    {"/short", {Declared(100) + Body, TThen::Close}},
    {"/extra", {Declared(10) + Body, TThen::Close}},
    {"/too-much", {Ok + ("Content-Length: 268435457\r\n\r\n" + Body), TThen::Close}},
    {"/garbage", {"This is not a web server.\r\n\r\n", TThen::Close}},
    {"/404", {"HTTP/1.1 404 No\r\nContent-Length: 36\r\n\r\n" + Body, TThen::Close}},
    {"/circle", {"HTTP/1.1 302 It\r\nConnection: close\r\nLocation: circle\r\n\r\n", TThen::Close}},
    {"/moved", {"HTTP/1.1 307 It\r\nConnection: close\r\nLocation: exact\r\n\r\n", TThen::Close}},
    {"/to-silence", {"HTTP/1.1 302 It\r\nLocation: silent\r\n\r\n", TThen::Close}},
    {"/to-file", {"HTTP/1.1 302 It\r\nLocation: file:///C:/\r\n\r\n", TThen::Close}},
    {"/header-1mb", {Ok + Lines(1000) + "\r\n" + Body, TThen::Close}},
    {"/silent", {"", TThen::Stall}},
    {"/header-stall", {Ok, TThen::Stall}},
    {"/stall", {Declared(100) + Body, TThen::Stall}},
    {"/chunk-stall", {Chunks + "\r\n", TThen::Stall}},
    {"/chunk-half", {Chunks.substr(0, Chunks.size() - 5), TThen::Stall}},
    {"/reset", {Declared(100) + Body, TThen::Reset}},
    {"/reset-header", {Ok, TThen::Reset}},
};

/// What is sent piece by piece.
const struct {
  const char* Path;
  std::size_t Count, Size;
  unsigned PauseMs;
} Streams[] = {
    {"/byte-a-second", 12, 1, 1000},
    {"/stream", 2000, 1000, 1},
    {"/endless", 1000000, 2000, 0},
};
}  // namespace

void TDownloadTest::Serve(TConnection& connection) {
  for (const auto& stream : Streams) {
    if (connection.Path() != stream.Path) continue;
    connection.Send(Declared(stream.Count * stream.Size));
    const std::string piece(stream.Size, 'x');
    for (std::size_t i = 0; i < stream.Count && connection.Send(piece); ++i)
      connection.Stall(stream.PauseMs);
    return;
  }
  const auto& [bytes, then] = Answers.at(connection.Path());
  connection.Send(bytes);
  if (then != TThen::Close) connection.Stall(then == TThen::Stall ? Long : 200);
  if (then == TThen::Reset) connection.Reset();
}

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
  std::ofstream(FFolder / name, std::ios::binary) << content;
  return File(name);
}

std::optional<std::string> TDownloadTest::Read(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file) return std::nullopt;
  return std::string(std::istreambuf_iterator<char>(file), {});
}

std::string TDownloadTest::Files() const {
  std::string all;
  const ULONGLONG deadline = GetTickCount64() + 30000;
  do {
    if (!all.empty()) Sleep(10);
    std::set<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(FFolder))
      names.insert(entry.path().filename().string());
    all.clear();
    for (const auto& name : names) all += name + " ";
  } while (all.find(".part") != std::string::npos && GetTickCount64() < deadline);
  return all;
}
