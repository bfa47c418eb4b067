#include <loopback_server.h>

#include <atomic>
#include <fstream>
#include <map>
#include <thread>

#include "outside/directories_fixture.h"
#include "outside/host_objects.h"
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

std::atomic<int> Allowed = 0;  ///< bytes of the hundred that "/stream" sends

void Serve(TConnection& connection) {
  if (connection.Path() == "/byte-a-second") {
    connection.Send(Declared(12));
    for (int i = 0; i < 12 && connection.Send("x"); ++i) connection.Stall(1000);
  }
  if (connection.Path() == "/stream") {
    connection.Send(Declared(100));
    int sent = 0;
    for (int round = 0; sent < 100 && round < 30000; ++round) {
      for (; sent < Allowed; ++sent) connection.Send("x");
      connection.Stall(1);
    }
  }
  for (const TAnswer& answer : Answers) {
    if (connection.Path() != answer.Path) continue;
    connection.Send(answer.Bytes);
    if (answer.Then != TThen::Close) connection.Stall(answer.Then == TThen::Stall ? 60000 : 200);
    if (answer.Then == TThen::Reset) connection.Reset();
  }
}

int StatusAfter(const THostDownload& download, const std::string& address, const char* file,
                int command = ZEF_DOWNLOAD_START) {
  EXPECT_EQ(download.Start(address, file, command), 1);
  download.Do(ZEF_DOWNLOAD_WAIT);
  return download.Status();
}

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
  const THostDownload download(*Library);
  const auto check = [&](const std::string& address, int status) {
    for (const int command : {ZEF_DOWNLOAD_START, ZEF_DOWNLOAD_FETCH}) {
      SCOPED_TRACE(Say(address, " by command ", command));
      EXPECT_EQ(StatusAfter(download, address, Write("a").c_str(), command), status);
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
  const THostDownload silent(*Library), stalled(*Library), slow(*Library);
  const ULONGLONG start = GetTickCount64();
  silent.Start(Server.Address("/silent"), Path("silent").c_str());
  stalled.Start(Server.Address("/stall"), Path("stalled").c_str());
  slow.Start(Server.Address("/byte-a-second"), Path("slow").c_str());
  for (const THostDownload* each : {&silent, &stalled, &slow}) {
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
    const THostDownload unnamed(*Library);
    unnamed.Do(ZEF_DOWNLOAD_SET_ADDRESS, Server.Address("/exact").c_str());
    unnamed.Do(ZEF_DOWNLOAD_START);
    Enter("C:\\");  // where it goes was settled when it began
    unnamed.Do(ZEF_DOWNLOAD_WAIT);
    EXPECT_EQ(unnamed.Status(), trouble.empty() ? Received : Failed);
    SetFileAttributesA(head.c_str(), FILE_ATTRIBUTE_NORMAL);
    EXPECT_EQ(Files()["Default.htm"], trouble.empty() ? Whole : "old");
    EXPECT_EQ(Files()["Head.txt"].substr(0, 15), trouble.empty() ? "HTTP/1.1 200 OK" : "old");
  }
  const THostDownload kept(*Library);
  for (const std::string& file : {Path("."), Path("no/such"), Path("Default.ht?"), std::string()})
    EXPECT_EQ(StatusAfter(kept, Server.Address("/exact"), file.c_str()), Failed) << file;
  EXPECT_EQ(StatusAfter(kept, Server.Address("/exact"), nullptr), Received);
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
  const THostDownload owned(*Library, owner), freed(*Library, owner), other(*Library);
  int value = 5;
  for (const int unknown : {-1, 0, 12})
    EXPECT_TRUE(!other.Do(unknown, nullptr, &value) && value == 5) << unknown;
  for (const THostDownload* each : {&owned, &freed, &other})
    each->Start(Server.Address("/stall"), nullptr);
  EXPECT_LT(Duration([&] { Library->VCLFreeNonModalDialog(freed.Handle()); }), SoonMs);
  EXPECT_LT(Duration([&] { Library->VCLFreeNonModalDialog(owner); }), SoonMs);
  for (const THostDownload* each : {&owned, &freed, &other})
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
    const THostDownload download(*Library);
    download.Start(address, file.c_str());
    Sleep(age);  // with this thread deaf to all messages
    EXPECT_LT(Duration([&] { download.Do(ZEF_DOWNLOAD_ABORT); }), SoonMs);
    // Without any network a machine knows at once that there is no such host.
    const int status = download.Status();
    EXPECT_EQ(status == ZEF_DOWNLOAD_UNKNOWN_HOST ? ZEF_DOWNLOAD_NONE : status, ZEF_DOWNLOAD_NONE);
    EXPECT_EQ(Files(), (TFiles{{"file.bin", "old"}}));
    // It can fetch again, and then be destroyed.
    EXPECT_EQ(StatusAfter(download, Server.Address("/exact"), file.c_str()), Received);
    download.Start(address, Path("next.bin").c_str());
    Sleep(age);
    EXPECT_LT(Duration([&] { download.Do(ZEF_DOWNLOAD_DESTROY); }), SoonMs);
    EXPECT_EQ(Files(), (TFiles{{"file.bin", Whole}}));
  }
}

TEST_F(Download, MovesItsBarWhileTheHostAsksOrWaits) {
  const THostDownload download(*Library);
  download.Do(ZEF_DOWNLOAD_SHOW);
  const HWND window = FindWindowA("TDlgDwnld", nullptr), bar = ControlNamed(window, "ProgressBar");
  const auto place = [bar] { return Ask(bar, PBM_GETPOS); };
  Allowed = 10;
  download.Start(Server.Address("/stream"), nullptr);
  download.Start(Server.Address("/404"), nullptr);  // ignored until the first one is over
  EXPECT_EQ(TextOf(ControlNamed(window, "LabelStatus")), "Téléchargement en cours...");
  // This thread serves no message; one that ends the program waits for it to.
  PostQuitMessage(7);
  while (download.Status() == ZEF_DOWNLOAD_RUNNING && place() < Allowed) Sleep(1);
  EXPECT_EQ(place(), Allowed);
  // While it waits, windows are painted; input and the program's end are for the host's own loop.
  PostMessageW(MainWindow, WM_CLOSE, 0, 0);
  std::atomic<bool> ended = false;
  std::thread other([&] {
    InvalidateRect(MainWindow, nullptr, TRUE);
    for (Allowed = 20; Allowed < 100 && !ended; Sleep(1))
      if (place() >= Allowed && !GetUpdateRect(MainWindow, nullptr, FALSE)) Allowed += 10;
  });
  download.Do(ZEF_DOWNLOAD_WAIT);
  ended = true;
  other.join();
  EXPECT_EQ(Allowed, 100) << "seen to come";
  MSG message{};
  EXPECT_TRUE(PeekMessageW(&message, MainWindow, WM_CLOSE, WM_CLOSE, PM_REMOVE));
  EXPECT_TRUE(PeekMessageW(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE));
  EXPECT_EQ(download.Status(), Received);
  EXPECT_EQ(place(), 100);
  // From a server that tells no length: the bar stays.
  EXPECT_EQ(StatusAfter(download, Server.Address("/no-length"), nullptr), Received);
  EXPECT_EQ(place(), 100);
  EXPECT_EQ(Server.Requests()[1], "/no-length");
}
