#include "outside/download_test.h"

#include <commctrl.h>

#include <fstream>

#include "outside/download_server.h"

namespace {
constexpr int Received = 1;
constexpr int None = -1;
constexpr int NoConnection = -2;
constexpr int Failed = -3;
constexpr int UnknownHost = -4;
}  // namespace

class Download : public TDownloadTest {};

TEST_F(Download, EndsAsTheServerBehaves) {
  const TWebServer server;
  const std::string whole = TWebServer::Body;
  const std::string old = "old";
  const std::string nobody = [] {
    const TLoopbackServer gone([](TConnection&) {});
    return gone.Address("/");
  }();
  const struct {
    std::string Address;
    int Status;
    std::string Content;  ///< of the file afterwards
  } cases[] = {
      {server.Address("/exact"), Received, whole},
      {server.Address("/exact?a=b c#part"), Failed, old},  // the server knows no such path
      {server.Address("/no-length"), Received, whole},
      {server.Address("/chunked"), Received, whole},
      {server.Address("/short"), Failed, old},
      {server.Address("/extra"), Received, whole.substr(0, 10)},
      {server.Address("/204"), Received, ""},
      {server.Address("/301"), Received, whole},
      {server.Address("/302"), Received, whole},
      {server.Address("/other-host"), Received, whole},
      {server.Address("/circle"), Failed, old},
      {server.Address("/404"), Failed, old},
      {server.Address("/500"), Failed, old},
      {server.Address("/garbage"), Failed, old},
      {server.Address("/reset"), Failed, old},
      {server.Address("/header-1mb"), Failed, old},
      {nobody, NoConnection, old},
      {"http://no-such-host.invalid/", UnknownHost, old},
      {"", Failed, old},
      {"exact", Failed, old},
      {"http://", Failed, old},
      {"ftp://127.0.0.1/exact", Failed, old},
  };
  for (const bool inCallersThread : {false, true}) {
    const TDownload download(*Library);
    for (const auto& each : cases) {
      SCOPED_TRACE(each.Address + (inCallersThread ? " now" : " in the background"));
      const std::string file = Write("file.bin", old);
      download.SetUp(each.Address, file.c_str());
      EXPECT_EQ(download.Do(inCallersThread ? TDownload::Fetch : TDownload::Start), 1);
      download.Do(TDownload::Wait);
      EXPECT_EQ(download.StatusNow(), each.Status);
      EXPECT_EQ(Read(file), each.Content);
      EXPECT_EQ(Files(), "file.bin ");
    }
  }
  EXPECT_EQ(server.Requests().front(), "/exact");
}

TEST_F(Download, GivesUpAfterTenSilentSecondsNotAfterTenSlowOnes) {
  const TWebServer server;
  const struct {
    const char* Path;
    int Status;
  } cases[] = {{"/silent", Failed}, {"/stall", Failed}, {"/byte-a-second", Received}};
  // All at once, to save the tests' time.
  std::vector<TDownload> downloads;
  const ULONGLONG start = GetTickCount64();
  for (const auto& each : cases) {
    downloads.emplace_back(*Library);
    const std::string file = File(each.Path + 1);
    downloads.back().SetUp(server.Address(each.Path), file.c_str());
    downloads.back().Do(TDownload::Start);
  }
  for (std::size_t i = 0; i < downloads.size(); ++i) {
    SCOPED_TRACE(cases[i].Path);
    downloads[i].Do(TDownload::Wait);
    EXPECT_GE(GetTickCount64() - start, 9900u);
    EXPECT_LE(GetTickCount64() - start, 16000u);
    EXPECT_EQ(downloads[i].StatusNow(), cases[i].Status);
  }
  EXPECT_EQ(Files(), "byte-a-second ");
}

TEST_F(Download, GoesToTheFilesOrTheMemoryAsked) {
  const TWebServer server;
  const std::string whole = TWebServer::Body;
  const auto before = std::filesystem::current_path();
  std::filesystem::current_path(File(""));
  {
    const TDownload unnamed(*Library);
    unnamed.Do(TDownload::Address, server.Address("/exact").c_str());
    unnamed.Do(TDownload::Start);
    // Where it goes was settled when it began.
    std::filesystem::current_path(before);
    unnamed.Do(TDownload::Wait);
    EXPECT_EQ(unnamed.StatusNow(), Received);
    EXPECT_EQ(Files(), "Default.htm Head.txt ");
    EXPECT_EQ(Read(File("Default.htm")), whole);
    EXPECT_TRUE(Read(File("Head.txt"))->starts_with("HTTP/1.1 200 OK\r\n"));

    EXPECT_EQ(unnamed.StatusAfter(server.Address("/exact"), ""), Failed);
    EXPECT_EQ(unnamed.StatusAfter(server.Address("/exact"), File("no/such").c_str()), Failed);
    EXPECT_EQ(unnamed.StatusAfter(server.Address("/exact"), File("").c_str()), Failed);
  }
  const TDownload kept(*Library);
  EXPECT_EQ(kept.StatusAfter(server.Address("/exact"), nullptr), Received);
  const struct {
    int Size, Left;
    std::string Body;
  } copies[] = {{50, 36, whole + std::string(14, '?')},
                {36, 36, whole},
                {10, 10, whole.substr(0, 10)},
                {0, 0, ""}};
  for (const auto& each : copies) {
    int size = each.Size;
    EXPECT_EQ(kept.Body(size), each.Body);
    EXPECT_EQ(size, each.Left);
  }
  int size = 7;
  EXPECT_EQ(kept.Do(TDownload::CopyBody, nullptr, &size), 1);
  EXPECT_EQ(size, 7);
  EXPECT_EQ(kept.Do(TDownload::CopyBody, "x"), 1);
  EXPECT_EQ(kept.StatusAfter(server.Address("/short"), nullptr), Failed);
  EXPECT_EQ(kept.Body(size), "???????");
  EXPECT_EQ(size, 0);
  EXPECT_EQ(Files(), "Default.htm Head.txt ");
}

TEST_F(Download, ClearsAwayWhatKilledProgramsLeft) {
  const TWebServer server;
  Write("file.bin.99999-1.part", "half a file");
  Write("other.bin.99999-1.part", "not ours");
  {
    std::ofstream busy(Write("file.bin.99998-1.part", "still written"), std::ios::app);
    const TDownload download(*Library);
    EXPECT_EQ(download.StatusAfter(server.Address("/exact"), File("file.bin").c_str()), Received);
    EXPECT_EQ(Read(File("file.bin.99999-1.part")), std::nullopt);
  }
  EXPECT_TRUE(std::filesystem::remove(File("other.bin.99999-1.part")));
  std::filesystem::remove(File("file.bin.99998-1.part"));
  EXPECT_EQ(Files(), "file.bin ");
}

TEST_F(Download, FailsOnAFullDisk) {
  const char* disk = std::getenv("ZEF_FULL_DISK");
  if (!disk) GTEST_SKIP() << "no small file system here";
  const TWebServer server;
  const std::string file = std::string(disk) + "\\file.bin";
  const TDownload download(*Library);
  EXPECT_EQ(download.StatusAfter(server.Address("/exact"), file.c_str()), Received);
  EXPECT_EQ(download.StatusAfter(server.Address("/stream"), file.c_str()), Failed);
  EXPECT_EQ(Read(file), TWebServer::Body);
  EXPECT_TRUE(std::filesystem::remove(file));
  EXPECT_TRUE(std::filesystem::is_empty(disk));
}

TEST_F(Download, RefusesWhatIsNoCommandOfItsOwn) {
  const TDownload download(*Library);
  ZefDialog base = nullptr;
  Library->VCLInvokeNonModalDialog(MainWindow, nullptr, &base);
  int stranger = 0;
  int value = 5;
  const auto command = [&](void* handle, int number, int* out) {
    return Library->VCLCmdURL(static_cast<ZefDialog>(handle), static_cast<signed char>(number),
                              nullptr, out);
  };
  for (int number = -128; number < 128; ++number) {
    for (void* handle : {static_cast<void*>(nullptr), static_cast<void*>(base),
                         static_cast<void*>(&stranger), reinterpret_cast<void*>(0x1234)}) {
      EXPECT_EQ(command(handle, number, &value), 0);
    }
    if (number < 1 || number > 11) {
      EXPECT_EQ(command(download.Handle(), number, &value), 0);
    }
  }
  EXPECT_EQ(value, 5);
  EXPECT_EQ(download.Do(TDownload::Result), 0);
  EXPECT_EQ(download.Do(TDownload::Status), 0);
  EXPECT_EQ(download.StatusNow(), None);
  EXPECT_EQ(download.Do(TDownload::Result, nullptr, &value), 1);
  EXPECT_EQ(value, 0);
  // Nothing runs: nothing to wait for or to abort.
  EXPECT_EQ(download.Do(TDownload::Wait), 1);
  EXPECT_EQ(download.Do(TDownload::Abort), 1);
  Library->VCLFreeNonModalDialog(base);
}

TEST_F(Download, DiesByEitherFunctionOrWithItsOwner) {
  const TWebServer server;
  const auto command = [&](ZefDialog handle, int number) {
    int value;
    return Library->VCLCmdURL(handle, static_cast<signed char>(number), static_cast<char*>(nullptr),
                              &value);
  };
  const auto alive = [&](ZefDialog handle) { return command(handle, TDownload::Status); };
  const auto started = [&](ZefDialog owner) {
    TDownload download(*Library, owner);
    download.SetUp(server.Address("/stall"), File("file.bin").c_str());
    download.Do(TDownload::Start);
    const ZefDialog handle = download.Handle();
    download.Forget();
    return handle;
  };
  ZefDialog owner = nullptr;
  Library->VCLInvokeNonModalDialog(MainWindow, nullptr, &owner);
  const ZefDialog owned = started(owner);
  const ZefDialog freed = started(owner);
  const ZefDialog destroyed = started(reinterpret_cast<ZefDialog>(&owner));
  EXPECT_LT(Duration([&] { EXPECT_EQ(Library->VCLFreeNonModalDialog(freed), 0); }), 1000u);
  EXPECT_LT(Duration([&] { EXPECT_EQ(command(destroyed, TDownload::Destroy), 1); }), 1000u);
  EXPECT_EQ(alive(freed), 0);
  EXPECT_EQ(alive(destroyed), 0);
  EXPECT_EQ(alive(owned), 1);
  Library->VCLFreeNonModalDialog(owner);
  EXPECT_EQ(alive(owned), 0);
}

TEST_F(Download, ShowsItsWindow) {
  const TWebServer server;
  const TDownload download(*Library);
  download.SetUp(server.Address("/stream"), File("file.bin").c_str());
  download.Do(TDownload::Show);
  download.Do(TDownload::Start);
  WhileIdle([&](TScriptedUser& user) {
    TFormDriver form = user.WaitForForm("TDlgDwnld");
    EXPECT_EQ(form.Caption(), "Téléchargement...");
    EXPECT_EQ(form.Text("LabelStatus"), "Téléchargement en cours...");
    for (const char* button : {"ButtonOK", "ButtonCancel", "ButtonHelp"}) {
      EXPECT_FALSE(form.Visible(button)) << button;
    }
    const HWND bar = form.Control("ProgressBar");
    user.WaitUntil("half a bar", [&] { return Ask(bar, PBM_GETPOS) >= 50; });
    user.WaitUntil("a full bar", [&] { return Ask(bar, PBM_GETPOS) == 100; });
    form.CloseBox();
    form.WaitGone();
  });
  EXPECT_EQ(download.StatusNow(), Received);
  // The same window fetches again, from a server that tells no length: the bar stays.
  EXPECT_EQ(download.StatusAfter(server.Address("/no-length"), File("file.bin").c_str()), Received);
  download.Do(TDownload::Show);
  WhileIdle([&](TScriptedUser& user) {
    TFormDriver form = user.WaitForForm("TDlgDwnld");
    EXPECT_EQ(Ask(form.Control("ProgressBar"), PBM_GETPOS), 100);
  });
}
