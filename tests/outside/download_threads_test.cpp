// How download windows, their workers and the host's thread get along.

#include <winsock2.h>

#include <thread>

#include "outside/download_server.h"
#include "outside/download_test.h"
#include "outside/watchdog.h"

#include <commctrl.h>
#include <psapi.h>

namespace {

/// A port that answers no connection: its queue is full.
class TFullPort {
 public:
  TFullPort() {
    WSADATA data;
    WSAStartup(MAKEWORD(2, 2), &data);
    FListening = socket(AF_INET, SOCK_STREAM, IPPROTO_TCP);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    int size = sizeof address;
    bind(FListening, reinterpret_cast<sockaddr*>(&address), size);
    listen(FListening, 0);
    getsockname(FListening, reinterpret_cast<sockaddr*>(&address), &size);
    FPort = ntohs(address.sin_port);
    for (SOCKET& waiting : FWaiting) {
      waiting = socket(AF_INET, SOCK_STREAM, IPPROTO_TCP);
      u_long nonBlocking = 1;
      ioctlsocket(waiting, static_cast<long>(FIONBIO), &nonBlocking);
      connect(waiting, reinterpret_cast<sockaddr*>(&address), size);
    }
    Sleep(200);  // until the queue has taken what it takes
  }
  ~TFullPort() {
    for (const SOCKET waiting : FWaiting) closesocket(waiting);
    closesocket(FListening);
    WSACleanup();
  }
  std::string Address() const { return "http://127.0.0.1:" + std::to_string(FPort) + "/"; }

 private:
  SOCKET FListening;
  SOCKET FWaiting[8];
  int FPort;
};

SIZE_T PrivateBytes() {
  PROCESS_MEMORY_COUNTERS_EX counters{};
  GetProcessMemoryInfo(GetCurrentProcess(), reinterpret_cast<PROCESS_MEMORY_COUNTERS*>(&counters),
                       sizeof counters);
  return counters.PrivateUsage;
}

/// Counts what is sent to a progress bar.
struct TBarCount {
  int Moves = 0;
  int Last = 0;
  bool Backwards = false;

  static LRESULT CALLBACK Proc(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR,
                               DWORD_PTR self) {
    if (message == PBM_SETPOS) {
      auto& count = *reinterpret_cast<TBarCount*>(self);
      ++count.Moves;
      count.Backwards |= static_cast<int>(wParam) < count.Last;
      count.Last = static_cast<int>(wParam);
    }
    return DefSubclassProc(window, message, wParam, lParam);
  }
};

}  // namespace

class DownloadThreads : public TDownloadTest {};

TEST_F(DownloadThreads, StopWithinASecondInEveryState) {
  const TWebServer server;
  const TFullPort full;
  const struct {
    std::string Address;
    DWORD Age;  ///< of the fetch, in ms, when it is stopped
  } states[] = {
      {server.Address("/silent"), 0},
      {server.Address("/silent"), 300},
      {server.Address("/header-stall"), 300},
      {server.Address("/302/silent"), 300},
      {server.Address("/stall"), 300},
      {server.Address("/chunk-stall"), 300},
      {server.Address("/chunk-half"), 300},
      {server.Address("/stream"), 300},
      {server.Address("/endless"), 300},
      {server.Address("/byte-a-second"), 1500},
      {full.Address(), 500},
      {"http://no-such-host.invalid/", 0},
      {server.Address("/exact"), 300},
  };
  for (const auto& state : states) {
    SCOPED_TRACE(state.Address + " after " + std::to_string(state.Age) + " ms");
    const std::string file = Write("file.bin", "old");
    {
      const TDownload download(*Library);
      download.SetUp(state.Address, file.c_str());
      download.Do(ZEF_DOWNLOAD_START);
      Sleep(state.Age);  // with this thread deaf to all messages
      EXPECT_LT(Duration([&] { download.Do(ZEF_DOWNLOAD_ABORT); }), 1000u);
      if (!state.Address.ends_with("/exact")) {
        EXPECT_EQ(download.StatusNow(), -1);
        EXPECT_EQ(Read(file), "old");
      }
      // It can fetch again, and then be destroyed.
      EXPECT_EQ(download.StatusAfter(server.Address("/exact"), file.c_str()), 1);
      download.SetUp(state.Address, File("next.bin").c_str());
      download.Do(ZEF_DOWNLOAD_START);
      Sleep(state.Age);
      EXPECT_LT(Duration([&] { download.Do(ZEF_DOWNLOAD_DESTROY); }), 1000u);
    }
    std::filesystem::remove(File("next.bin"));
    EXPECT_EQ(Files(), "file.bin ");
  }
}

TEST_F(DownloadThreads, ReportRunningUntilTheEnd) {
  const TWebServer server;
  const TDownload download(*Library);
  download.SetUp(server.Address("/stream"), nullptr);
  download.Do(ZEF_DOWNLOAD_START);
  // Ignored, all of them, until the fetch is over.
  download.SetUp(server.Address("/404"), nullptr);
  download.Do(ZEF_DOWNLOAD_START);
  download.Do(ZEF_DOWNLOAD_FETCH);
  int size = 4;
  EXPECT_EQ(download.Body(size), "????");
  EXPECT_EQ(download.StatusNow(), ZEF_DOWNLOAD_RUNNING);
  // The program's end is for the host's own loop to see.
  PostQuitMessage(7);
  download.Do(ZEF_DOWNLOAD_WAIT);
  MSG message{};
  EXPECT_TRUE(PeekMessageW(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE));
  EXPECT_EQ(message.wParam, 7u);
  EXPECT_EQ(download.StatusNow(), ZEF_DOWNLOAD_RECEIVED);
  EXPECT_EQ(server.Requests(), std::vector<std::string>{"/stream"});
  size = 4;
  EXPECT_EQ(download.Body(size), "xxxx");
}

TEST_F(DownloadThreads, MoveTheBarOncePerPercent) {
  const TWebServer server;
  for (const bool polled : {false, true})
    for (const int command : {ZEF_DOWNLOAD_START, ZEF_DOWNLOAD_FETCH}) {
      const TDownload download(*Library);
      download.SetUp(server.Address("/stream"), nullptr);
      download.Do(ZEF_DOWNLOAD_SHOW);
      TBarCount count;
      TUser user(GetCurrentProcessId());
      const HWND bar = TFormDriver(user, user.FindForm("TDlgDwnld")).Control("ProgressBar");
      SetWindowSubclass(bar, TBarCount::Proc, 1, reinterpret_cast<DWORD_PTR>(&count));
      download.Do(command);
      // The bar moves while this thread waits, or asks and serves no message.
      while (polled && download.StatusNow() == ZEF_DOWNLOAD_RUNNING) Sleep(20);
      EXPECT_TRUE(!polled || command != ZEF_DOWNLOAD_START || count.Last >= 90);
      download.Do(ZEF_DOWNLOAD_WAIT);
      EXPECT_EQ(download.StatusNow(), 1);
      EXPECT_GE(count.Last, 90);
      EXPECT_GT(count.Moves, 10);
      EXPECT_LE(count.Moves, 100);
      EXPECT_FALSE(count.Backwards);
    }
}

TEST_F(DownloadThreads, PaintButTakeNoInputWhileTheHostWaits) {
  const TWebServer server;
  for (const int command : {ZEF_DOWNLOAD_FETCH, ZEF_DOWNLOAD_WAIT}) {
    const TDownload download(*Library);
    download.SetUp(server.Address("/stream"), nullptr);
    download.Do(ZEF_DOWNLOAD_SHOW);
    if (command == ZEF_DOWNLOAD_WAIT) download.Do(ZEF_DOWNLOAD_START);
    bool painted = false;
    std::atomic<bool> answered = false;
    std::atomic<bool> ended = false;
    PostMessageW(MainWindow, WM_CLOSE, 0, 0);
    std::thread other([&] {
      Sleep(200);
      InvalidateRect(MainWindow, nullptr, TRUE);
      for (int i = 0; i < 200 && !painted; ++i) {
        Sleep(10);
        painted = GetUpdateRect(MainWindow, nullptr, FALSE) == FALSE && !ended;
      }
      answered = SendMessageW(MainWindow, WM_GETTEXTLENGTH, 0, 0) != 0 && !ended;
    });
    download.Do(command);
    ended = true;
    other.join();
    EXPECT_TRUE(painted);
    EXPECT_TRUE(answered);
    EXPECT_EQ(download.StatusNow(), 1);
    MSG message;
    EXPECT_TRUE(PeekMessageW(&message, MainWindow, WM_CLOSE, WM_CLOSE, PM_REMOVE));
    ASSERT_TRUE(IsWindow(MainWindow));
  }
}

TEST_F(DownloadThreads, KeepTheLibraryInMemoryWhileTheyRun) {
  const TWebServer server;
  for (const bool ended : {true, false}) {
    Library.reset();
    Library.emplace();
    TDownload download(*Library);
    download.SetUp(server.Address(ended ? "/exact" : "/stream"), File("file.bin").c_str());
    download.Do(ZEF_DOWNLOAD_START);
    if (ended) download.Do(ZEF_DOWNLOAD_WAIT);
    if (ended) Sleep(1000);
    const auto command = reinterpret_cast<decltype(&::VCLCmdURL)>(
        reinterpret_cast<void*>(GetProcAddress(Library->Module, "VCLCmdURL")));
    const ZefDialog handle = download.Handle();
    download.Forget();
    Library.reset();
    if (!ended) {
      EXPECT_NE(GetModuleHandleA("zefext.dll"), nullptr);
      EXPECT_EQ(command(handle, ZEF_DOWNLOAD_DESTROY, nullptr, nullptr), 1);
    }
    const ULONGLONG deadline = GetTickCount64() + 10000;
    while (GetModuleHandleA("zefext.dll") && GetTickCount64() < deadline) Sleep(20);
    EXPECT_EQ(GetModuleHandleA("zefext.dll"), nullptr);
  }
}

TEST_F(DownloadThreads, SurviveTheEndOfTheHostsWindow) {
  const TWebServer server;
  const HWND owner = CreateWindowW(L"STATIC", L"Zefkor", WS_OVERLAPPEDWINDOW, 0, 0, 300, 200,
                                   nullptr, nullptr, nullptr, nullptr);
  Library->VCLSetMainWindowHandle(owner);
  const TDownload download(*Library);
  download.SetUp(server.Address("/stall"), File("file.bin").c_str());
  download.Do(ZEF_DOWNLOAD_START);
  EXPECT_LT(Duration([&] { DestroyWindow(owner); }), 1000u);
  EXPECT_EQ(download.StatusNow(), -1);
  EXPECT_EQ(download.StatusAfter(server.Address("/exact"), nullptr), 1);
}

class DownloadBig : public TDownloadTest {};

TEST_F(DownloadBig, GoesThroughWithoutBeingKept) {
  TWatchdog::Allow(280);
  const TWebServer server;
  const std::string file = File("big.bin");
  const TDownload download(*Library);
  download.SetUp(server.Address("/2.2GB"), file.c_str());
  const SIZE_T before = PrivateBytes();
  SIZE_T most = before;
  download.Do(ZEF_DOWNLOAD_START);
  while (download.StatusNow() == 0) {
    most = std::max(most, PrivateBytes());
    Sleep(50);
  }
  EXPECT_EQ(download.StatusNow(), 1);
  EXPECT_EQ(std::filesystem::file_size(file), 2'200'000'000u);
  EXPECT_LT(most - before, 16u << 20);
}
