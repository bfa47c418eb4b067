#include "library.h"

#include <cstring>

#include "ansi.h"

namespace {

std::wstring Quoted(const std::string& text) { return L"\"" + ToWide(text) + L"\""; }

/// The library owns the text and keeps it only until its next call.
std::string Copied(const char* text) { return text ? text : ""; }

class TRunning {
 public:
  explicit TRunning(int& count) : FCount(count) { ++FCount; }
  ~TRunning() { --FCount; }
  TRunning(const TRunning&) = delete;
  TRunning& operator=(const TRunning&) = delete;

 private:
  int& FCount;
};

}  // namespace

bool TLibrary::Load(const std::wstring& file, HWND mainWindow, const std::string& helpFile) {
  FModule = LoadLibraryW(file.c_str());
  if (!FModule) return false;
  for (TImport* import : FImports) {
    import->Address = reinterpret_cast<void*>(GetProcAddress(FModule, import->Name));
  }
  Version();
  if (FSetMainWindow.Address) {
    FSetMainWindow(mainWindow);
    FLog.Add(L"VCLSetMainWindowHandle(" +
             std::to_wstring(reinterpret_cast<std::uintptr_t>(mainWindow)) + L")");
  }
  if (FSetMainHelpFile.Address) {
    FSetMainHelpFile(helpFile.c_str());
    FLog.Add(L"VCLSetMainHelpFile(" + Quoted(helpFile) + L")");
  }
  return true;
}

void TLibrary::Unload() {
  if (!FModule) return;
  if (FFree.Address) {
    FFree();
    FLog.Add(L"VCLFree()");
  }
  for (TImport* import : FImports) import->Address = nullptr;
  FreeLibrary(FModule);
  FModule = nullptr;
}

bool TLibrary::Has(const char* name) const {
  for (const TImport* import : FImports) {
    if (std::strcmp(import->Name, name) == 0) return import->Address != nullptr;
  }
  return false;
}

unsigned long TLibrary::Version() {
  if (!FGetVersion.Address) return 0;
  const unsigned long version = FGetVersion();
  FLog.Add(L"VCLGetVersion() = " + std::to_wstring(version));
  return version;
}

bool TLibrary::IsMethod(const std::string& word) {
  if (!FIsMethod.Address) return false;
  const int answer = FIsMethod(word.c_str());
  FLog.Add(L"VCLSyntaxIsMethod(" + Quoted(word) + L") = " + std::to_wstring(answer),
           TCallLog::TDetail::Colouring);
  return answer != 0;
}

bool TLibrary::IsConstant(const std::string& word) {
  if (!FIsConstant.Address) return false;
  const int answer = FIsConstant(word.c_str());
  FLog.Add(L"VCLSyntaxIsConstant(" + Quoted(word) + L") = " + std::to_wstring(answer),
           TCallLog::TDetail::Colouring);
  return answer != 0;
}

std::string TLibrary::SyntaxHelpBox(const std::string& line, int& cursor,
                                    const std::string& types) {
  if (!FHelpBox.Address) return line;
  const TRunning running(FRunning);
  const int before = cursor;
  const char* result = nullptr;
  FHelpBox(line.c_str(), &cursor, &result, types.c_str());
  const std::string rewritten = Copied(result);
  FLog.Add(L"VCLSyntaxHelpBox(" + Quoted(line) + L", " + std::to_wstring(before) + L", " +
           Quoted(types) + L") = " + Quoted(rewritten) + L", " + std::to_wstring(cursor));
  return rewritten;
}

std::string TLibrary::SyntaxConstHelpBox(const std::string& text) {
  if (!FConstHelpBox.Address) return text;
  const TRunning running(FRunning);
  const char* result = nullptr;
  FConstHelpBox(text.c_str(), &result);
  const std::string value = Copied(result);
  FLog.Add(L"VCLSyntaxConstHelpBox(" + Quoted(text) + L") = " + Quoted(value));
  return value;
}

std::string TLibrary::SyntaxTypesBox(const std::string& types) {
  if (!FTypesBox.Address) return types;
  const TRunning running(FRunning);
  const char* result = nullptr;
  FTypesBox(types.c_str(), &result);
  const std::string edited = Copied(result);
  FLog.Add(L"VCLSyntaxTypesBox(" + Quoted(types) + L") = " + Quoted(edited));
  return edited;
}

std::optional<std::string> TLibrary::SyntaxNewTypes() {
  if (!FGetNewTypes.Address) return std::nullopt;
  const char* result = nullptr;
  const bool changed = FGetNewTypes(&result) != 0;
  const std::string types = Copied(result);
  FLog.Add(L"VCLSyntaxGetNewTypes() = " + std::to_wstring(changed) + L", " + Quoted(types));
  if (!changed) return std::nullopt;
  return types;
}

int TLibrary::AskForDownload(const std::string& current, const std::string& offered,
                             const std::string& information) {
  if (!FAskForDownload.Address) return 0;
  const TRunning running(FRunning);
  const int answer = FAskForDownload(current.c_str(), offered.c_str(), information.c_str());
  FLog.Add(L"VCLAskForDownload(" + Quoted(current) + L", " + Quoted(offered) + L", " +
           Quoted(information) + L") = " + std::to_wstring(answer));
  return answer;
}

ZefDialog TLibrary::NewUrl() {
  ZefDialog dialog = nullptr;
  if (!FNewUrl.Address) return dialog;
  const int made = FNewUrl(nullptr, nullptr, &dialog);
  FLog.Add(L"VCLNewURL() = " + std::to_wstring(made));
  return dialog;
}

bool TLibrary::CmdUrl(ZefDialog dialog, signed char command, const std::string& text, int* value) {
  if (!FCmdUrl.Address) return false;
  std::string argument = text;
  const int done = FCmdUrl(dialog, command, text.empty() ? nullptr : argument.data(), value);
  // Polled all the time, the status of a running download would bury the other calls.
  const bool polled = value && *value == 0;
  FLog.Add(L"VCLCmdURL(" + std::to_wstring(command) + L", " + Quoted(text) + L") = " +
               std::to_wstring(done) + (value ? L", " + std::to_wstring(*value) : L""),
           polled ? TCallLog::TDetail::Colouring : TCallLog::TDetail::Service);
  return done != 0;
}

std::string TLibrary::Md5(const std::string& text) {
  if (!FMd5.Address) return {};
  char digest[33] = "";
  FMd5(digest, text.c_str());
  FLog.Add(L"MD5(" + std::to_wstring(text.size()) + L" octets) = " + ToWide(digest));
  return digest;
}
