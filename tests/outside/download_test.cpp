#include <winsock2.h>

#include <fstream>
#include <thread>

#include "outside/download_test.h"

#include <commctrl.h>

namespace {
constexpr int Received = ZEF_DOWNLOAD_RECEIVED;
constexpr int Failed = ZEF_DOWNLOAD_FAILED;

/// Far less than any server here is silent, and than any time-out.
constexpr ULONGLONG SoonMs = 5000;

ULONGLONG Duration(const std::function<void()>& call) {
  const ULONGLONG start = GetTickCount64();
  call();
  return GetTickCount64() - start;
}

/// A port that answers no connection: its queue is full.
class TFullPort {
 public:
  TFullPort() {
    FListening = socket(AF_INET, SOCK_STREAM, IPPROTO_TCP);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    auto* const any = reinterpret_cast<sockaddr*>(&address);
    int size = sizeof address;
    bind(FListening, any, size);
    listen(FListening, 0);
    getsockname(FListening, any, &size);
    Address = "http://127.0.0.1:" + std::to_string(ntohs(address.sin_port)) + "/";
    for (SOCKET& waiting : FWaiting) {
      waiting = socket(AF_INET, SOCK_STREAM, IPPROTO_TCP);
      u_long nonBlocking = 1;
      ioctlsocket(waiting, static_cast<long>(FIONBIO), &nonBlocking);
      connect(waiting, any, size);
    }
    Sleep(200);  // until the queue has taken what it takes
  }
  ~TFullPort() {
    for (const SOCKET waiting : FWaiting) closesocket(waiting);
    closesocket(FListening);
  }
  std::string Address;

 private:
  SOCKET FListening;
  SOCKET FWaiting[8];
};

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

/// What addresses, heads and statuses mean has tests of its own; here are the system's client, the
/// files, the windows and the threads.
class Download : public TDownloadTest {};

TEST_F(Download, EndsAsTheServerBehaves) {
  const std::string nobody = TLoopbackServer([](TConnection&) {}).Address("/");
  const struct {
    std::string Address;
    int Status;
    std::string Content;  ///< of the file afterwards
  } cases[] = {
      {At("/exact"), Received, Whole},
      {" \t" + At("/a b?c#d") + " \r\n", Received, Whole},
      {At("/kept"), Received, Whole},
      {At("/kept"), Received, Whole},
      {At("/no-length"), Received, Whole},
      {At("/chunked"), Received, Whole},
      {At("/extra"), Received, "0123456789"},
      {At("/moved"), Received, Whole},
      {Server.Address("/moved", "localhost"), Received, Whole},
      {At("/short"), Failed, "old"},
      {At("/circle"), Failed, "old"},
      {At("/to-file"), Failed, "old"},
      {At("/garbage"), Failed, "old"},
      {At("/404"), Failed, "old"},
      {At("/reset"), Failed, "old"},
      {At("/reset-header"), Failed, "old"},
      {At("/header-1mb"), Failed, "old"},
      {nobody, ZEF_DOWNLOAD_NO_CONNECTION, "old"},
      {"http://no-such-host.invalid/", ZEF_DOWNLOAD_UNKNOWN_HOST, "old"},
      {"", Failed, "old"},
  };
  const TDownload download(*Library);
  for (const int command : {ZEF_DOWNLOAD_START, ZEF_DOWNLOAD_FETCH}) {
    for (const auto& each : cases) {
      SCOPED_TRACE(each.Address + " by command " + std::to_string(command));
      const std::string file = Write("file.bin", "old");
      download.Do(ZEF_DOWNLOAD_SET_ADDRESS, each.Address.c_str());
      download.Do(ZEF_DOWNLOAD_SET_FILE, file.c_str());
      EXPECT_EQ(download.Do(command), 1);
      download.Do(ZEF_DOWNLOAD_WAIT);
      EXPECT_EQ(download.Status(), each.Status);
      EXPECT_EQ(Read(file), each.Content);
      EXPECT_EQ(Files(), "file.bin ");
    }
  }
  EXPECT_EQ(download.StatusAfter(At("/too-much"), nullptr), Failed);
}

TEST_F(Download, GivesUpAfterTenSilentSecondsNotAfterTenSlowOnes) {
  const TDownload silent(*Library), stalled(*Library), slow(*Library);
  const ULONGLONG start = GetTickCount64();
  silent.Start(At("/silent"), File("silent").c_str());
  stalled.Start(At("/stall"), File("stalled").c_str());
  slow.Start(At("/byte-a-second"), File("slow").c_str());
  for (const TDownload* each : {&silent, &stalled, &slow}) {
    each->Do(ZEF_DOWNLOAD_WAIT);
    EXPECT_EQ(each->Status(), each == &slow ? Received : Failed);
    EXPECT_GE(GetTickCount64() - start, 9900u);
    EXPECT_LE(GetTickCount64() - start, 25000u);
  }
  EXPECT_EQ(Files(), "slow ");
}

TEST_F(Download, GoesToTheFilesOrTheMemoryAsked) {
  const auto before = std::filesystem::current_path();
  // Both files are new, or neither is: one is held by another program, or to stay as it is.
  for (const char* trouble : {"", "held", "read-only"}) {
    SCOPED_TRACE(trouble);
    Write("Default.htm", "old");
    const std::string head = Write("Head.txt", "old");
    const std::ifstream reader(*trouble == 'h' ? File("Default.htm") : "");
    if (*trouble == 'r') SetFileAttributesA(head.c_str(), FILE_ATTRIBUTE_READONLY);
    std::filesystem::current_path(File(""));
    const TDownload unnamed(*Library);
    unnamed.Do(ZEF_DOWNLOAD_SET_ADDRESS, At("/exact").c_str());
    unnamed.Do(ZEF_DOWNLOAD_START);
    // Where it goes was settled when it began.
    std::filesystem::current_path(before);
    unnamed.Do(ZEF_DOWNLOAD_WAIT);
    EXPECT_EQ(unnamed.Status(), *trouble ? Failed : Received);
    SetFileAttributesA(head.c_str(), FILE_ATTRIBUTE_NORMAL);
    EXPECT_EQ(Read(File("Default.htm")), *trouble ? "old" : Whole);
    EXPECT_EQ(Read(head)->substr(0, 15), *trouble ? "old" : "HTTP/1.1 200 OK");
  }
  const TDownload kept(*Library);
  for (const std::string& name : {File(""), File("no/such"), File("Default.ht?"), std::string()})
    EXPECT_EQ(kept.StatusAfter(At("/exact"), name.c_str()), Failed) << name;
  EXPECT_EQ(kept.StatusAfter(At("/exact"), nullptr), Received);
  for (int size : {50, 36, 10, 0}) {
    const auto room = static_cast<std::size_t>(size);
    EXPECT_EQ(kept.Body(size), (std::string(Whole) + std::string(room, '?')).substr(0, room));
    EXPECT_EQ(size, std::min(static_cast<int>(room), 36));
  }
  int size = 7;
  EXPECT_EQ(kept.Do(ZEF_DOWNLOAD_COPY_BODY, nullptr, &size), 1);
  EXPECT_EQ(size, 7);
  EXPECT_EQ(kept.StatusAfter(At("/short"), nullptr), Failed);
  EXPECT_EQ(kept.Body(size), "???????");
  EXPECT_EQ(size, 0);
  EXPECT_EQ(Files(), "Default.htm Head.txt ");
}

TEST_F(Download, ClearsAwayOnlyWhatItLeft) {
  const std::string key = "." + std::string(32, 'a') + ".part";
  const std::string left = Write("file.bin" + key, "half a file");
  Write("file.bin.mes-notes.part", "not ours");
  Write("other.bin" + key, "of another download");
  EXPECT_EQ(TDownload(*Library).StatusAfter(At("/exact"), File("file.bin").c_str()), Received);
  EXPECT_EQ(Read(left), std::nullopt);
  EXPECT_TRUE(std::filesystem::remove(File("file.bin.mes-notes.part")));
  EXPECT_TRUE(std::filesystem::remove(File("other.bin" + key)));
}

TEST_F(Download, FailsOnAFullDisk) {
  const char* disk = std::getenv("ZEF_FULL_DISK");
  if (!disk) GTEST_SKIP() << "no small file system here";
  const std::string file = std::string(disk) + "\\file.bin";
  const TDownload download(*Library);
  EXPECT_EQ(download.StatusAfter(At("/exact"), file.c_str()), Received);
  EXPECT_EQ(download.StatusAfter(At("/stream"), file.c_str()), Failed);
  EXPECT_EQ(Read(file), Whole);
  EXPECT_TRUE(std::filesystem::remove(file));
  EXPECT_TRUE(std::filesystem::is_empty(disk));
}

TEST_F(Download, TakesItsCommandsAndDiesByEitherFunctionOrWithItsOwner) {
  ZefDialog owner = nullptr;
  Library->VCLInvokeNonModalDialog(MainWindow, nullptr, &owner);
  const TDownload owned(*Library, owner), freed(*Library, owner), other(*Library);
  int value = 5;
  for (int number = -128; number < 128; ++number) {
    if (number >= 1 && number <= 11) continue;
    EXPECT_EQ(other.Do(number, nullptr, &value), 0) << number;
  }
  EXPECT_EQ(value, 5);
  EXPECT_EQ(other.Do(ZEF_DOWNLOAD_GET_STATUS), 0) << "nowhere to put it";
  EXPECT_EQ(other.Status(), ZEF_DOWNLOAD_NONE);
  EXPECT_EQ(other.Do(ZEF_DOWNLOAD_WAIT), 1) << "nothing runs";
  for (const TDownload* each : {&owned, &freed, &other}) each->Start(At("/stall"), nullptr);
  EXPECT_LT(Duration([&] { EXPECT_EQ(Library->VCLFreeNonModalDialog(freed.Handle), 0); }), SoonMs);
  EXPECT_LT(Duration([&] { Library->VCLFreeNonModalDialog(owner); }), SoonMs);
  for (const TDownload* each : {&owned, &freed, &other})
    EXPECT_EQ(each->Do(ZEF_DOWNLOAD_GET_STATUS, nullptr, &value), each == &other ? 1 : 0);
}

TEST_F(Download, StopsSoonInEveryState) {
  const TFullPort full;
  const struct {
    std::string Address;
    DWORD Age;  ///< of the fetch, in ms, when it is stopped
  } states[] = {
      {At("/silent"), 0},
      {At("/silent"), 300},
      {At("/header-stall"), 300},
      {At("/to-silence"), 300},
      {At("/stall"), 300},
      {At("/chunk-stall"), 300},
      {At("/chunk-half"), 300},
      {At("/endless"), 300},
      {At("/byte-a-second"), 1500},
      {full.Address, 500},
      {"http://no-such-host.invalid/", 0},
  };
  for (const auto& state : states) {
    SCOPED_TRACE(state.Address + " after " + std::to_string(state.Age) + " ms");
    const std::string file = Write("file.bin", "old");
    const TDownload download(*Library);
    download.Start(state.Address, file.c_str());
    Sleep(state.Age);  // with this thread deaf to all messages
    EXPECT_LT(Duration([&] { download.Do(ZEF_DOWNLOAD_ABORT); }), SoonMs);
    EXPECT_EQ(download.Status(), ZEF_DOWNLOAD_NONE);
    EXPECT_EQ(Read(file), "old");
    // It can fetch again, and then be destroyed.
    EXPECT_EQ(download.StatusAfter(At("/exact"), file.c_str()), Received);
    download.Start(state.Address, File("next.bin").c_str());
    Sleep(state.Age);
    EXPECT_LT(Duration([&] { download.Do(ZEF_DOWNLOAD_DESTROY); }), SoonMs);
    EXPECT_EQ(Files(), "file.bin ");
  }
}

TEST_F(Download, RunsOnWhileTheHostDoesOtherThings) {
  const TDownload download(*Library);
  download.Start(At("/stream"), nullptr);
  // Ignored, all of them, until the fetch is over.
  download.Start(At("/404"), nullptr);
  download.Do(ZEF_DOWNLOAD_FETCH);
  int size = 4;
  EXPECT_EQ(download.Body(size), "????");
  EXPECT_EQ(download.Status(), ZEF_DOWNLOAD_RUNNING);
  // The program's end is for the host's own loop to see.
  PostQuitMessage(7);
  download.Do(ZEF_DOWNLOAD_WAIT);
  MSG message{};
  EXPECT_TRUE(PeekMessageW(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE));
  EXPECT_EQ(message.wParam, 7u);
  EXPECT_EQ(download.Status(), Received);
  EXPECT_EQ(Server.Requests(), std::vector<std::string>{"/stream"});
}

TEST_F(Download, MovesItsBarOncePerPercentAndPaintsButTakesNoInput) {
  for (const bool polled : {false, true}) {
    const TDownload download(*Library);
    download.Do(ZEF_DOWNLOAD_SHOW);
    TBarCount count;
    TUser user(GetCurrentProcessId());
    TFormDriver form(user, user.FindForm("TDlgDwnld"));
    SetWindowSubclass(form.Control("ProgressBar"), TBarCount::Proc, 1,
                      reinterpret_cast<DWORD_PTR>(&count));
    download.Start(At("/stream"), File("file.bin").c_str());
    EXPECT_EQ(form.Text("LabelStatus"), "Téléchargement en cours...");
    // The bar moves also while this thread asks, and serves no message.
    while (polled && download.Status() == ZEF_DOWNLOAD_RUNNING) Sleep(20);
    std::atomic<bool> ended = false;
    bool painted = polled;
    PostMessageW(MainWindow, WM_CLOSE, 0, 0);
    std::thread other([&] {
      InvalidateRect(MainWindow, nullptr, TRUE);
      while (!painted && !ended) {
        Sleep(10);
        painted = !GetUpdateRect(MainWindow, nullptr, FALSE) && !ended;
      }
    });
    download.Do(ZEF_DOWNLOAD_WAIT);
    ended = true;
    other.join();
    EXPECT_TRUE(painted);
    MSG message;
    EXPECT_TRUE(PeekMessageW(&message, MainWindow, WM_CLOSE, WM_CLOSE, PM_REMOVE));
    EXPECT_EQ(download.Status(), Received);
    EXPECT_GE(count.Last, 90);
    EXPECT_GT(count.Moves, 10);
    EXPECT_LE(count.Moves, 101);
    EXPECT_FALSE(count.Backwards);
    // From a server that tells no length: the bar stays.
    EXPECT_EQ(download.StatusAfter(At("/no-length"), File("file.bin").c_str()), Received);
    EXPECT_EQ(Ask(form.Control("ProgressBar"), PBM_GETPOS), count.Last);
  }
}
