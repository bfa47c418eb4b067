#include <loopback_server.h>
#include <windows.h>

#include <psapi.h>
#include <winhttp.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <string>

#include "bench.h"
#include "zefext.h"

// A body over the loopback to a file: the library's own way, against a bare loop on the system's
// client and a downloader of the build machine.

namespace {

constexpr std::size_t kBlock = 1 << 20;
constexpr std::size_t kBlocks = 512;
constexpr char kArguments[] = "512MB";

/// Sends the body to whoever asks, and tells how long the asker took until it closed.
class TBodyServer {
 public:
  std::string Address() const { return FServer.Address("/body"); }
  double LastSeconds() const { return FSeconds; }
  int Served() const { return FServed; }

 private:
  void Handle(TConnection& connection) {
    const auto start = std::chrono::steady_clock::now();
    connection.Send("HTTP/1.1 200 OK\r\nConnection: close\r\nContent-Length: " +
                    std::to_string(kBlock * kBlocks) + "\r\n\r\n");
    for (std::size_t i = 0; i < kBlocks && connection.Send(FBlock); ++i) {
    }
    connection.Stall(60000);
    FSeconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    ++FServed;
  }

  const std::string FBlock = std::string(kBlock, 'x');
  std::atomic<double> FSeconds = 0;
  std::atomic<int> FServed = 0;
  TLoopbackServer FServer{[this](TConnection& connection) { Handle(connection); }};
};

void CheckAndRemove(const std::string& file) {
  std::error_code error;
  if (std::filesystem::file_size(file, error) != kBlock * kBlocks) Fail(file + " is not whole");
  std::filesystem::remove(file);
}

SIZE_T PrivateBytes() {
  PROCESS_MEMORY_COUNTERS_EX counters{};
  GetProcessMemoryInfo(GetCurrentProcess(), reinterpret_cast<PROCESS_MEMORY_COUNTERS*>(&counters),
                       sizeof counters);
  return counters.PrivateUsage;
}

void MeasureOurs(const std::string& address, const std::string& file) {
  const HMODULE library = LoadLibraryA("zefext.dll");
  const auto make = LibraryFunction<decltype(&VCLNewURL)>(library, "VCLNewURL");
  const auto command = LibraryFunction<decltype(&VCLCmdURL)>(library, "VCLCmdURL");
  ZefDialog dialog = nullptr;
  make(nullptr, nullptr, &dialog);
  command(dialog, ZEF_DOWNLOAD_SET_ADDRESS, const_cast<char*>(address.c_str()), nullptr);
  command(dialog, ZEF_DOWNLOAD_SET_FILE, const_cast<char*>(file.c_str()), nullptr);
  SIZE_T most = 0;
  const SIZE_T before = PrivateBytes();
  const double seconds = LeastSeconds(3, [&] {
    command(dialog, ZEF_DOWNLOAD_START, nullptr, nullptr);
    int status = 0;
    while (command(dialog, ZEF_DOWNLOAD_GET_STATUS, nullptr, &status) &&
           status == ZEF_DOWNLOAD_RUNNING) {
      most = std::max(most, PrivateBytes());
      Sleep(10);
    }
    if (status != ZEF_DOWNLOAD_RECEIVED) Fail("the download failed: " + std::to_string(status));
  });
  CheckAndRemove(file);
  PrintRow(std::string("Download/ours/") + kArguments, 3, seconds * 1000, "ms");
  PrintRow(std::string("DownloadMemory/ours/") + kArguments, 1,
           static_cast<double>(most - before) / 1024, "KB");
  command(dialog, ZEF_DOWNLOAD_DESTROY, nullptr, nullptr);
  FreeLibrary(library);
}

/// Reads the body in the simplest way that the system's client offers.
void FetchBare(int port, const std::string& file) {
  const HINTERNET session =
      WinHttpOpen(L"bench", WINHTTP_ACCESS_TYPE_NO_PROXY, nullptr, nullptr, 0);
  const HINTERNET connection =
      WinHttpConnect(session, L"127.0.0.1", static_cast<INTERNET_PORT>(port), 0);
  const HINTERNET request =
      WinHttpOpenRequest(connection, L"GET", L"/body", nullptr, nullptr, nullptr, 0);
  std::ofstream out(file, std::ios::binary);
  std::string buffer(128 * 1024, '\0');
  if (!WinHttpSendRequest(request, nullptr, 0, nullptr, 0, 0, 0) ||
      !WinHttpReceiveResponse(request, nullptr)) {
    Fail("the bare loop got no answer");
  }
  DWORD size = 0;
  while (WinHttpQueryDataAvailable(request, &size) && size > 0) {
    size = std::min(size, static_cast<DWORD>(buffer.size()));
    if (!WinHttpReadData(request, buffer.data(), size, &size)) break;
    out.write(buffer.data(), static_cast<std::streamsize>(size));
  }
  for (const HINTERNET handle : {request, connection, session}) WinHttpCloseHandle(handle);
}

void MeasureBare(const std::string& address, const std::string& file) {
  const int port = std::stoi(address.substr(address.rfind(':') + 1));
  const double seconds = LeastSeconds(3, [&] { FetchBare(port, file); });
  CheckAndRemove(file);
  PrintRow(std::string("Download/bare_loop/") + kArguments, 3, seconds * 1000, "ms");
}

/// A program of the machine under this Windows; timed at the server, from request to close.
void MeasureCurl(const TBodyServer& server) {
  double least = 1e9;
  for (int round = 0; round < 3; ++round) {
    const int served = server.Served();
    const std::string line =
        "start /unix /usr/bin/curl -s -o /tmp/zef_bench_body " + server.Address();
    if (std::system(line.c_str()) != 0) return;
    for (int i = 0; i < 600 && server.Served() == served; ++i) Sleep(100);
    if (server.Served() == served) return;
    least = std::min(least, server.LastSeconds());
  }
  CheckAndRemove("Z:\\tmp\\zef_bench_body");
  PrintRow(std::string("Download/curl/") + kArguments, 3, least * 1000, "ms");
}

void Run() {
  const TBodyServer server;
  const std::string file = ProgramFolder() + "bench_body.bin";
  MeasureOurs(server.Address(), file);
  MeasureBare(server.Address(), file);
  MeasureCurl(server);
}

const TBenchGroup kGroup("download", Run);

}  // namespace
