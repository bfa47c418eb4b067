#include "outside/download_test.h"

#include <commctrl.h>

#include <fstream>

#include "outside/download_server.h"

namespace {
constexpr int Received = ZEF_DOWNLOAD_RECEIVED;
constexpr int Failed = ZEF_DOWNLOAD_FAILED;
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
  std::string padded = server.Address("/exact");
  padded.insert(0, " \t").append(" \r\n");
  struct TCase {
    std::string Address;
    int Status;
    std::string Content;  ///< of the file afterwards
  };
  std::vector<TCase> cases{
      {server.Address("/exact"), Received, whole},
      {padded, Received, whole},
      {server.Address("?q=1#part"), Received, whole},
      {server.Address("/a b?c d"), Received, whole},
      {server.Address("/exact", "user:word@127.0.0.1"), Failed, old},
      {server.Address("/kept"), Received, whole},
      {server.Address("/kept"), Received, whole},
      {server.Address("/no-length"), Received, whole},
      {server.Address("/chunked"), Received, whole},
      {server.Address("/short"), Failed, old},
      {server.Address("/extra"), Received, whole.substr(0, 10)},
      {server.Address("/negative"), Failed, old},
      {server.Address("/no-number"), Failed, old},
      {server.Address("/302/307/chunked"), Received, whole},
      {server.Address("/302" + server.Address("/exact", "localhost").substr(5)), Received, whole},
      {server.Address("/circle"), Failed, old},
      {server.Address("/to-file"), Failed, old},
      {server.Address("/to-nowhere"), Failed, old},
      {server.Address("/garbage"), Failed, old},
      {server.Address("/reset"), Failed, old},
      {server.Address("/reset-header"), Failed, old},
      {server.Address("/header-1mb"), Failed, old},
      {nobody, ZEF_DOWNLOAD_NO_CONNECTION, old},
      {"http://no-such-host.invalid/", ZEF_DOWNLOAD_UNKNOWN_HOST, old},
      {"", Failed, old},
      {"ftp://127.0.0.1/exact", Failed, old},
  };
  for (const char* status : {"200", "203"}) {
    cases.push_back({server.Address(std::string("/") + status), Received, whole});
  }
  for (const char* status :
       {"201", "204", "205", "206", "300", "301", "304", "305", "404", "500"}) {
    cases.push_back({server.Address(std::string("/") + status), Failed, old});
  }
  for (const char* status : {"301", "302", "303", "307", "308"}) {
    cases.push_back({server.Address(std::string("/") + status + "/exact"), Received, whole});
  }
  const TDownload download(*Library);
  bool inCallersThread = false;
  for (const auto& each : cases) {
    SCOPED_TRACE(each.Address + (inCallersThread ? " now" : " in the background"));
    const std::string file = Write("file.bin", old);
    download.SetUp(each.Address, file.c_str());
    EXPECT_EQ(download.Do(inCallersThread ? ZEF_DOWNLOAD_FETCH : ZEF_DOWNLOAD_START), 1);
    download.Do(ZEF_DOWNLOAD_WAIT);
    EXPECT_EQ(download.StatusNow(), each.Status);
    EXPECT_EQ(Read(file), each.Content);
    EXPECT_EQ(Files(), "file.bin ");
    inCallersThread = !inCallersThread;
  }
  EXPECT_EQ(download.StatusAfter(server.Address("/too-much"), nullptr), Failed);
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
    downloads.back().Do(ZEF_DOWNLOAD_START);
  }
  for (std::size_t i = 0; i < downloads.size(); ++i) {
    SCOPED_TRACE(cases[i].Path);
    downloads[i].Do(ZEF_DOWNLOAD_WAIT);
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
    unnamed.Do(ZEF_DOWNLOAD_SET_ADDRESS, server.Address("/exact").c_str());
    unnamed.Do(ZEF_DOWNLOAD_START);
    // Where it goes was settled when it began.
    std::filesystem::current_path(before);
    unnamed.Do(ZEF_DOWNLOAD_WAIT);
    EXPECT_EQ(unnamed.StatusNow(), Received);
    EXPECT_EQ(Files(), "Default.htm Head.txt ");
    EXPECT_EQ(Read(File("Default.htm")), whole);
    EXPECT_TRUE(Read(File("Head.txt"))->starts_with("HTTP/1.1 200 OK\r\n"));

    for (const char* name : {"", "no/such", "*", "Default.ht?"}) {
      EXPECT_EQ(unnamed.StatusAfter(server.Address("/exact"), File(name).c_str()), Failed) << name;
    }
    EXPECT_EQ(unnamed.StatusAfter(server.Address("/exact"), ""), Failed);
  }
  {
    // Both files are new, or neither is: one is held by another program, or to stay as it is.
    for (const bool held : {true, false}) {
      Write("Default.htm", "old");
      Write("Head.txt", "old");
      const std::ifstream reader(held ? File("Default.htm") : "");
      const std::string file = File("Head.txt");
      if (!held) SetFileAttributesA(file.c_str(), FILE_ATTRIBUTE_READONLY);
      std::filesystem::current_path(File(""));
      const TDownload unnamed(*Library);
      unnamed.Do(ZEF_DOWNLOAD_SET_ADDRESS, server.Address("/exact").c_str());
      unnamed.Do(ZEF_DOWNLOAD_FETCH);
      std::filesystem::current_path(before);
      EXPECT_EQ(unnamed.StatusNow(), Failed);
      SetFileAttributesA(file.c_str(), FILE_ATTRIBUTE_NORMAL);
      EXPECT_EQ(Read(File("Default.htm")), "old");
      EXPECT_EQ(Read(file), "old");
    }
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
  EXPECT_EQ(kept.Do(ZEF_DOWNLOAD_COPY_BODY, nullptr, &size), 1);
  EXPECT_EQ(size, 7);
  EXPECT_EQ(kept.Do(ZEF_DOWNLOAD_COPY_BODY, "x"), 1);
  EXPECT_EQ(kept.StatusAfter(server.Address("/short"), nullptr), Failed);
  EXPECT_EQ(kept.Body(size), "???????");
  EXPECT_EQ(size, 0);
  EXPECT_EQ(Files(), "Default.htm Head.txt ");
}

TEST_F(Download, ClearsAwayOnlyWhatItLeft) {
  const TWebServer server;
  const std::string key = "." + std::string(32, 'a') + ".part";
  const char* const others[] = {"file.bin.mes-notes.part", "file.bin.1-1.part", "other-file.part"};
  for (const char* other : others) Write(other, "not ours");
  Write("file.bin" + key, "half a file");
  Write("other.bin" + key, "of another download");
  {
    const TDownload download(*Library);
    EXPECT_EQ(download.StatusAfter(server.Address("/exact"), File("*").c_str()), Failed);
    EXPECT_EQ(Read(File("file.bin" + key)), "half a file");
    EXPECT_EQ(download.StatusAfter(server.Address("/exact"), File("file.bin").c_str()), Received);
    EXPECT_EQ(Read(File("file.bin" + key)), std::nullopt);
  }
  for (const char* other : others) EXPECT_TRUE(std::filesystem::remove(File(other))) << other;
  EXPECT_TRUE(std::filesystem::remove(File("other.bin" + key)));
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
  for (int number = -128; number < 128; ++number) {
    for (void* handle :
         {static_cast<void*>(nullptr), static_cast<void*>(base), static_cast<void*>(&stranger),
          reinterpret_cast<void*>(0x1234), static_cast<void*>(download.Handle())}) {
      if (handle == download.Handle() && number >= 1 && number <= 11) continue;
      EXPECT_EQ(Library->VCLCmdURL(static_cast<ZefDialog>(handle), static_cast<signed char>(number),
                                   nullptr, &value),
                0);
    }
  }
  EXPECT_EQ(value, 5);
  EXPECT_EQ(download.Do(ZEF_DOWNLOAD_GET_RESULT), 0);
  EXPECT_EQ(download.Do(ZEF_DOWNLOAD_GET_STATUS), 0);
  EXPECT_EQ(download.StatusNow(), ZEF_DOWNLOAD_NONE);
  EXPECT_EQ(download.Do(ZEF_DOWNLOAD_GET_RESULT, nullptr, &value), 1);
  EXPECT_EQ(value, 0);
  // Nothing runs: nothing to wait for or to abort.
  EXPECT_EQ(download.Do(ZEF_DOWNLOAD_WAIT), 1);
  EXPECT_EQ(download.Do(ZEF_DOWNLOAD_ABORT), 1);
  Library->VCLFreeNonModalDialog(base);
}

TEST_F(Download, DiesByEitherFunctionOrWithItsOwner) {
  const TWebServer server;
  const auto command = [&](ZefDialog handle, int number) {
    int value;
    return Library->VCLCmdURL(handle, static_cast<signed char>(number), static_cast<char*>(nullptr),
                              &value);
  };
  const auto alive = [&](ZefDialog handle) { return command(handle, ZEF_DOWNLOAD_GET_STATUS); };
  const auto started = [&](ZefDialog owner) {
    TDownload download(*Library, owner);
    download.SetUp(server.Address("/stall"), File("file.bin").c_str());
    download.Do(ZEF_DOWNLOAD_START);
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
  EXPECT_LT(Duration([&] { EXPECT_EQ(command(destroyed, ZEF_DOWNLOAD_DESTROY), 1); }), 1000u);
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
  download.Do(ZEF_DOWNLOAD_SHOW);
  download.Do(ZEF_DOWNLOAD_START);
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
  download.Do(ZEF_DOWNLOAD_SHOW);
  WhileIdle([&](TScriptedUser& user) {
    TFormDriver form = user.WaitForForm("TDlgDwnld");
    EXPECT_EQ(Ask(form.Control("ProgressBar"), PBM_GETPOS), 100);
  });
}
