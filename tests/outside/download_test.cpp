#include <loopback_server.h>

#include <fstream>
#include <map>
#include <set>
#include <thread>

#include "outside/directories_fixture.h"
#include "user/say.h"

#include <commctrl.h>

namespace {
constexpr int Received = ZEF_DOWNLOAD_RECEIVED;
constexpr int Failed = ZEF_DOWNLOAD_FAILED;
/// Less than what a download takes that is left to itself: ten seconds of silence at least.
constexpr ULONGLONG SoonMs = 9000;

const std::string Whole = "0123456789abcdefghijklmnopqrstuvwxyz";
constexpr char Ok[] = "HTTP/1.1 200 OK\r\nConnection: close\r\n";
const std::string Chunks = Ok + ("Transfer-Encoding: chunked\r\n\r\na\r\n" + Whole.substr(0, 10));

std::string Declared(std::size_t length) { return Say(Ok, "Content-Length: ", length, "\r\n\r\n"); }

std::string Redirected(const char* location) {
  return Say("HTTP/1.1 302 It\r\nConnection: close\r\nLocation: ", location, "\r\n\r\n");
}

std::string Lines(int count) {
  return count ? "X: " + std::string(1000, 'h') + "\r\n" + Lines(count - 1) : "";
}

/// What a server sends, how it then goes on, and what that makes of a download.
enum class TThen { Close, Stall, Reset };
const struct TAnswer {
  const char* Path;
  std::string Bytes;
  int Status = Received;
  TThen Then = TThen::Close;
} Answers[] = {
    {"/exact", Declared(Whole.size()) + Whole},
    {"/kept", "HTTP/1.1 200 OK\r\nContent-Length: 36\r\n\r\n" + Whole},
    {"/no-length", Ok + ("\r\n" + Whole)},
    {"/chunked", Chunks + "\r\n1a;x=y\r\n" + Whole.substr(10) + "\r\n0\r\n\r\n"},
    {"/moved", Redirected("exact")},
    {"/a%20b?c", Redirected("/exact")},
    {"/extra", Declared(36) + Whole + "more"},
    {"/short", Declared(100) + Whole, Failed},
    {"/circle", Redirected("circle"), Failed},
    {"/404", "HTTP/1.1 404 No\r\nContent-Length: 36\r\n\r\n" + Whole, Failed},
    {"/header-1mb", Ok + Lines(1000) + "\r\n" + Whole, Failed},
    {"/reset", Declared(100) + Whole, Failed, TThen::Reset},
    {"/reset-header", Ok, Failed, TThen::Reset},
    {"/silent", "", Failed, TThen::Stall},
    {"/header-stall", Ok, Failed, TThen::Stall},
    {"/stall", Declared(100) + Whole, Failed, TThen::Stall},
    {"/chunk-half", Chunks.substr(0, Chunks.size() - 5), Failed, TThen::Stall},
};

/// What is sent piece by piece.
const struct {
  const char* Path;
  std::size_t Count, Size;
  unsigned PauseMs;
} Streams[] = {{"/byte-a-second", 12, 1, 1000}, {"/stream", 2000, 1000, 1}};

void Serve(TConnection& connection) {
  for (const auto& [path, count, size, pauseMs] : Streams) {
    if (connection.Path() != path) continue;
    connection.Send(Declared(count * size));
    const std::string piece(size, 'x');
    for (std::size_t i = 0; i < count && connection.Send(piece); ++i) connection.Stall(pauseMs);
  }
  for (const TAnswer& answer : Answers) {
    if (connection.Path() != answer.Path) continue;
    connection.Send(answer.Bytes);
    if (answer.Then != TThen::Close) connection.Stall(answer.Then == TThen::Stall ? 60000 : 200);
    if (answer.Then == TThen::Reset) connection.Reset();
  }
}

/// A download window as a host drives it.
struct TDownload {
  explicit TDownload(const TLibrary& library, ZefDialog owner = nullptr) : Library(library) {
    EXPECT_EQ(Library.VCLNewURL(owner, nullptr, &Handle), 1);
  }
  ~TDownload() { Do(ZEF_DOWNLOAD_DESTROY); }

  int Do(int command, const char* text = nullptr, int* value = nullptr) const {
    return Library.VCLCmdURL(Handle, static_cast<signed char>(command), text, value);
  }
  int Status() const {
    int status = 99;
    Do(ZEF_DOWNLOAD_GET_STATUS, nullptr, &status);
    return status;
  }
  /// In the background, or else the call returns at the end; without a file, into memory.
  void Start(const std::string& address, const char* file, int command = ZEF_DOWNLOAD_START) const {
    Do(ZEF_DOWNLOAD_SET_ADDRESS, address.c_str());
    Do(ZEF_DOWNLOAD_SET_FILE, file);
    EXPECT_EQ(Do(command), 1);
  }
  int StatusAfter(const std::string& address, const char* file,
                  int command = ZEF_DOWNLOAD_START) const {
    Start(address, file, command);
    Do(ZEF_DOWNLOAD_WAIT);
    return Status();
  }

  const TLibrary& Library;
  ZefDialog Handle = nullptr;
};

ULONGLONG Duration(const std::function<void()>& call) {
  const ULONGLONG start = GetTickCount64();
  call();
  return GetTickCount64() - start;
}
}  // namespace

/// What addresses, heads and statuses mean has tests of its own; here are the system's client, the
/// files, the windows and the threads. No rubbish may be left in the folder.
class Download : public TDirectoriesTest {
 protected:
  std::string Write(const std::string& name, const std::string& content = "old") const {
    std::ofstream(Path(name), std::ios::binary) << content;
    return Path(name);
  }
  /// The files in the folder and what is in them, once those that were given up are gone.
  std::map<std::string, std::string> Files() const {
    std::map<std::string, std::string> files;
    bool partial = true;
    for (int round = 0; partial && round < 3000; ++round) {
      if (round) Sleep(10);
      partial = false;
      files.clear();
      for (const auto& entry : std::filesystem::directory_iterator(Path("."))) {
        std::ifstream file(entry.path(), std::ios::binary);
        std::string& content = files[entry.path().filename().string()];
        content.assign(std::istreambuf_iterator<char>(file), {});
        partial |= entry.path().extension() == ".part";
      }
    }
    return files;
  }
  using TFiles = std::map<std::string, std::string>;

  const TLoopbackServer Server{Serve};
};

TEST_F(Download, EndsAsTheServerBehaves) {
  const TDownload download(*Library);
  const auto check = [&](const std::string& address, int status) {
    for (const int command : {ZEF_DOWNLOAD_START, ZEF_DOWNLOAD_FETCH}) {
      SCOPED_TRACE(Say(address, " by command ", command));
      EXPECT_EQ(download.StatusAfter(address, Write("a").c_str(), command), status);
      EXPECT_EQ(Files(), (TFiles{{"a", status == Received ? Whole : "old"}}));
    }
  };
  for (const TAnswer& answer : Answers)
    if (answer.Then != TThen::Stall) check(Server.Address(answer.Path), answer.Status);
  check(" \t" + Server.Address("/a b?c#d") + " \r\n", Received);
  const std::string nobody = TLoopbackServer(Serve).Address("/");
  check(nobody, ZEF_DOWNLOAD_NO_CONNECTION);
  check("http://no-such-host.invalid/", ZEF_DOWNLOAD_UNKNOWN_HOST);
}

TEST_F(Download, GivesUpAfterTenSilentSecondsNotAfterTenSlowOnes) {
  const TDownload silent(*Library), stalled(*Library), slow(*Library);
  const ULONGLONG start = GetTickCount64();
  silent.Start(Server.Address("/silent"), Path("silent").c_str());
  stalled.Start(Server.Address("/stall"), Path("stalled").c_str());
  slow.Start(Server.Address("/byte-a-second"), Path("slow").c_str());
  for (const TDownload* each : {&silent, &stalled, &slow}) {
    each->Do(ZEF_DOWNLOAD_WAIT);
    EXPECT_EQ(each->Status(), each == &slow ? Received : Failed);
    EXPECT_GE(GetTickCount64() - start, 9900u);
    EXPECT_LE(GetTickCount64() - start, 50000u);  // the server goes after a minute
  }
  EXPECT_EQ(Files(), (TFiles{{"slow", std::string(12, 'x')}}));
}

TEST_F(Download, GoesToTheFilesOrTheMemoryAsked) {
  // Both files are new, or neither is: one is held by another program, or to stay as it is.
  for (const std::string trouble : {"", "held", "read-only"}) {
    SCOPED_TRACE(trouble);
    const std::string body = Write("Default.htm"), head = Write("Head.txt");
    std::ifstream reader(trouble == "held" ? body : "");
    if (trouble == "read-only") SetFileAttributesA(head.c_str(), FILE_ATTRIBUTE_READONLY);
    Enter(Path("."));
    const TDownload unnamed(*Library);
    unnamed.Do(ZEF_DOWNLOAD_SET_ADDRESS, Server.Address("/exact").c_str());
    unnamed.Do(ZEF_DOWNLOAD_START);
    Enter("C:\\");  // where it goes was settled when it began
    unnamed.Do(ZEF_DOWNLOAD_WAIT);
    EXPECT_EQ(unnamed.Status(), trouble.empty() ? Received : Failed);
    SetFileAttributesA(head.c_str(), FILE_ATTRIBUTE_NORMAL);
    EXPECT_EQ(Files()["Default.htm"], trouble.empty() ? Whole : "old");
    EXPECT_EQ(Files()["Head.txt"].substr(0, 15), trouble.empty() ? "HTTP/1.1 200 OK" : "old");
  }
  const TDownload kept(*Library);
  for (const std::string& file : {Path("."), Path("no/such"), Path("Default.ht?"), std::string()})
    EXPECT_EQ(kept.StatusAfter(Server.Address("/exact"), file.c_str()), Failed) << file;
  EXPECT_EQ(kept.StatusAfter(Server.Address("/exact"), nullptr), Received);
  for (const int room : {50, 36, 10, 0}) {
    std::string body(50, '?');
    int size = room;
    kept.Do(ZEF_DOWNLOAD_COPY_BODY, body.data(), &size);
    EXPECT_EQ(size, std::min(room, 36));
    const std::string copied = Whole.substr(0, static_cast<unsigned>(room));
    EXPECT_EQ(body, copied + std::string(50 - copied.size(), '?'));
  }
}

TEST_F(Download, DiesByEitherFunctionOrWithItsOwner) {
  ZefDialog owner = nullptr;
  Library->VCLInvokeNonModalDialog(MainWindow, nullptr, &owner);
  const TDownload owned(*Library, owner), freed(*Library, owner), other(*Library);
  int value = 5;
  for (int number = -128; number < 128; ++number)
    EXPECT_TRUE((number >= 1 && number <= 11) || !other.Do(number, nullptr, &value)) << number;
  EXPECT_EQ(value, 5);
  for (const TDownload* each : {&owned, &freed, &other})
    each->Start(Server.Address("/stall"), nullptr);
  EXPECT_LT(Duration([&] { Library->VCLFreeNonModalDialog(freed.Handle); }), SoonMs);
  EXPECT_LT(Duration([&] { Library->VCLFreeNonModalDialog(owner); }), SoonMs);
  for (const TDownload* each : {&owned, &freed, &other})
    EXPECT_EQ(each->Do(ZEF_DOWNLOAD_GET_STATUS, nullptr, &value), each == &other ? 1 : 0);
}

TEST_F(Download, StopsSoonInEveryState) {
  const std::pair<std::string, DWORD> states[] = {
      {Server.Address("/silent"), 0},         {Server.Address("/silent"), 300},
      {Server.Address("/header-stall"), 300}, {Server.Address("/stall"), 300},
      {Server.Address("/chunk-half"), 300},   {Server.Address("/byte-a-second"), 1500},
      {"http://no-such-host.invalid/", 0},
  };
  for (const auto& [address, age] : states) {
    SCOPED_TRACE(Say(address, " after ", age, " ms"));
    const std::string file = Write("file.bin");
    const TDownload download(*Library);
    download.Start(address, file.c_str());
    Sleep(age);  // with this thread deaf to all messages
    EXPECT_LT(Duration([&] { download.Do(ZEF_DOWNLOAD_ABORT); }), SoonMs);
    EXPECT_EQ(download.Status(), ZEF_DOWNLOAD_NONE);
    EXPECT_EQ(Files(), (TFiles{{"file.bin", "old"}}));
    // It can fetch again, and then be destroyed.
    EXPECT_EQ(download.StatusAfter(Server.Address("/exact"), file.c_str()), Received);
    download.Start(address, Path("next.bin").c_str());
    Sleep(age);
    EXPECT_LT(Duration([&] { download.Do(ZEF_DOWNLOAD_DESTROY); }), SoonMs);
    EXPECT_EQ(Files(), (TFiles{{"file.bin", Whole}}));
  }
}

TEST_F(Download, MovesItsBarWhileTheHostWaitsOrAsks) {
  for (const bool polled : {false, true}) {
    const TDownload download(*Library);
    download.Do(ZEF_DOWNLOAD_SHOW);
    TUser user(GetCurrentProcessId());
    TFormDriver form(user, user.FindForm("TDlgDwnld"));
    const HWND bar = form.Control("ProgressBar");
    download.Start(Server.Address("/stream"), nullptr);
    download.Start(Server.Address("/404"), nullptr);  // ignored until the first one is over
    EXPECT_EQ(form.Text("LabelStatus"), "Téléchargement en cours...");
    // The bar moves also while this thread asks, and serves no message.
    while (polled && download.Status() == ZEF_DOWNLOAD_RUNNING) Sleep(20);
    // While it waits, windows are painted; input and the program's end are for the host's own loop.
    std::atomic<bool> ended = false;
    bool painted = polled;
    std::set<LRESULT> places;
    PostMessageW(MainWindow, WM_CLOSE, 0, 0);
    if (polled) PostQuitMessage(7);
    std::thread other([&] {
      InvalidateRect(MainWindow, nullptr, TRUE);
      for (; !ended; Sleep(10)) {
        painted |= !GetUpdateRect(MainWindow, nullptr, FALSE);
        places.insert(Ask(bar, PBM_GETPOS));
      }
    });
    download.Do(ZEF_DOWNLOAD_WAIT);
    ended = true;
    other.join();
    EXPECT_TRUE(painted);
    MSG message{};
    EXPECT_TRUE(PeekMessageW(&message, MainWindow, WM_CLOSE, WM_CLOSE, PM_REMOVE));
    EXPECT_EQ(PeekMessageW(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE) != FALSE, polled);
    EXPECT_EQ(download.Status(), Received);
    EXPECT_TRUE(polled || places.size() > 3);
    const LRESULT last = Ask(bar, PBM_GETPOS);
    EXPECT_GE(last, 90);
    // From a server that tells no length: the bar stays.
    EXPECT_EQ(download.StatusAfter(Server.Address("/no-length"), nullptr), Received);
    EXPECT_EQ(Ask(bar, PBM_GETPOS), last);
  }
  EXPECT_EQ(Server.Requests()[1], "/no-length");
}
