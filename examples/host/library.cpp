#include "library.h"

#include <type_traits>

#include "ansi.h"

// What is bound is what the contract declares.
#define ZEF_SAME(result, name, parameters) \
  static_assert(std::is_same_v<decltype(ZefExt::name), decltype(&::name)>);
ZEFEXT_FUNCTIONS(ZEF_SAME)
#undef ZEF_SAME

namespace {

std::wstring Quoted(const std::string& text) { return L"\"" + ToWide(text) + L"\""; }

std::wstring Number(const void* handle) {
  return std::to_wstring(reinterpret_cast<std::uintptr_t>(handle));
}

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

std::string TLibrary::Load(const std::wstring& file, HWND mainWindow, const std::string& helpFile) {
  const HMODULE module = LoadLibraryW(file.c_str());
  if (!module) return "zefext.dll";
  if (const char* missing = ZefExtBind(&FZef, module)) {
    FZef = {};
    FreeLibrary(module);
    return missing;
  }
  Version();
  FZef.VCLSetMainWindowHandle(mainWindow);
  FLog.Add(L"VCLSetMainWindowHandle(" + Number(mainWindow) + L")");
  FZef.VCLSetMainHelpFile(helpFile.c_str());
  FLog.Add(L"VCLSetMainHelpFile(" + Quoted(helpFile) + L")");
  return {};
}

void TLibrary::Unload() {
  if (!Loaded()) return;
  FLog.Add(L"VCLFree()");
  ZefExtUnload(&FZef);
}

unsigned long TLibrary::Version() {
  if (!Loaded()) return 0;
  const unsigned long version = FZef.VCLGetVersion();
  FLog.Add(L"VCLGetVersion() = " + std::to_wstring(version));
  return version;
}

bool TLibrary::IsMethod(const std::string& word) {
  if (!Loaded()) return false;
  const int answer = FZef.VCLSyntaxIsMethod(word.c_str());
  FLog.Add(L"VCLSyntaxIsMethod(" + Quoted(word) + L") = " + std::to_wstring(answer),
           TCallLog::TDetail::Colouring);
  return answer != 0;
}

bool TLibrary::IsConstant(const std::string& word) {
  if (!Loaded()) return false;
  const int answer = FZef.VCLSyntaxIsConstant(word.c_str());
  FLog.Add(L"VCLSyntaxIsConstant(" + Quoted(word) + L") = " + std::to_wstring(answer),
           TCallLog::TDetail::Colouring);
  return answer != 0;
}

std::string TLibrary::SyntaxHelpBox(const std::string& line, int& cursor,
                                    const std::string& types) {
  if (!Loaded()) return line;
  const TRunning running(FRunning);
  const int before = cursor;
  const char* result = nullptr;
  FZef.VCLSyntaxHelpBox(line.c_str(), &cursor, &result, types.c_str());
  const std::string rewritten = result ? Copied(result) : line;
  FLog.Add(L"VCLSyntaxHelpBox(" + Quoted(line) + L", " + std::to_wstring(before) + L", " +
           Quoted(types) + L") = " + Quoted(rewritten) + L", " + std::to_wstring(cursor));
  return rewritten;
}

std::string TLibrary::SyntaxConstHelpBox(const std::string& text) {
  if (!Loaded()) return text;
  const TRunning running(FRunning);
  const char* result = nullptr;
  FZef.VCLSyntaxConstHelpBox(text.c_str(), &result);
  const std::string value = result ? Copied(result) : text;
  FLog.Add(L"VCLSyntaxConstHelpBox(" + Quoted(text) + L") = " + Quoted(value));
  return value;
}

std::string TLibrary::SyntaxTypesBox(const std::string& types) {
  if (!Loaded()) return types;
  const TRunning running(FRunning);
  const char* result = nullptr;
  FZef.VCLSyntaxTypesBox(types.c_str(), &result);
  const std::string edited = result ? Copied(result) : types;
  FLog.Add(L"VCLSyntaxTypesBox(" + Quoted(types) + L") = " + Quoted(edited));
  return edited;
}

std::optional<std::string> TLibrary::SyntaxNewTypes() {
  if (!Loaded()) return std::nullopt;
  const char* result = nullptr;
  const bool changed = FZef.VCLSyntaxGetNewTypes(&result) != 0;
  const std::string types = Copied(result);
  FLog.Add(L"VCLSyntaxGetNewTypes() = " + std::to_wstring(changed) + L", " + Quoted(types));
  if (!changed) return std::nullopt;
  return types;
}

bool TLibrary::InvokeModalDialog() {
  if (!Loaded()) return false;
  const TRunning running(FRunning);
  // The library defines the low byte only.
  const int result = FZef.VCLInvokeModalDialog(nullptr) & 0xFF;
  FLog.Add(L"VCLInvokeModalDialog(null) = " + std::to_wstring(result));
  return result != 0;
}

ZefDialog TLibrary::OpenDialog(HWND parent) {
  if (!Loaded()) return nullptr;
  ZefDialog dialog = nullptr;
  FZef.VCLInvokeNonModalDialog(parent, nullptr, &dialog);
  FLog.Add(L"VCLInvokeNonModalDialog(" + Number(parent) + L", null) = " + Number(dialog));
  return dialog;
}

void TLibrary::FreeDialog(ZefDialog dialog) {
  if (!Loaded()) return;
  const int result = FZef.VCLFreeNonModalDialog(dialog) & 0xFF;
  FLog.Add(L"VCLFreeNonModalDialog(" + Number(dialog) + L") = " + std::to_wstring(result));
}

HWND TLibrary::CreateView(HWND parent, ZefDialog& view) {
  view = nullptr;
  if (!Loaded()) return nullptr;
  const HWND window = FZef.CreateExampleView(parent, nullptr, &view);
  FLog.Add(L"CreateExampleView(" + Number(parent) + L", null) = " + Number(window) + L", " +
           Number(view));
  return window;
}

void TLibrary::GiveToView(ZefDialog view, IExClass1* services) {
  if (!Loaded()) return;
  FZef.VCLExDlgDlwdGive(services, view);
  FLog.Add(L"VCLExDlgDlwdGive(" + Number(services) + L", " + Number(view) + L")");
}

void TLibrary::ShowView(ZefDialog view) {
  if (!Loaded()) return;
  FZef.VCLDialogShow(view);
  FLog.Add(L"VCLDialogShow(" + Number(view) + L")");
}

bool TLibrary::ViewChanged(ZefDialog view) {
  if (!Loaded()) return false;
  const int changed = FZef.VCLDialogHasChanged(view);
  FLog.Add(L"VCLDialogHasChanged(" + Number(view) + L") = " + std::to_wstring(changed));
  return changed != 0;
}

void TLibrary::ClearViewChanged(ZefDialog view) {
  if (!Loaded()) return;
  FZef.VCLDialogClearHasChanged(view);
  FLog.Add(L"VCLDialogClearHasChanged(" + Number(view) + L")");
}

void TLibrary::Prepared(const std::wstring& call) {
  FLog.Add(call, TCallLog::TDetail::Preparation);
}

ZefStringList TLibrary::NewList(const std::vector<std::string>& lines) {
  ZefStringList list = nullptr;
  FZef.VCLStringListCreate(&list, false, false, false);
  Prepared(L"VCLStringListCreate(0, 0, 0) = " + Number(list));
  for (const std::string& line : lines) {
    const int index = FZef.VCLStringListAdd(list, line.c_str());
    Prepared(L"VCLStringListAdd(" + Number(list) + L", " + Quoted(line) + L") = " +
             std::to_wstring(index));
  }
  return list;
}

void TLibrary::FreeList(ZefStringList list) {
  FZef.VCLStringListFree(list);
  Prepared(L"VCLStringListFree(" + Number(list) + L")");
}

std::optional<std::string> TLibrary::SelectTypOp(const std::vector<std::string>& types,
                                                 const std::vector<std::string>& cards,
                                                 const std::string& selection) {
  if (!Loaded()) return std::nullopt;
  const TRunning running(FRunning);
  const ZefStringList typeList = NewList(types);
  const ZefStringList cardList = NewList(cards);
  ZefString choice = nullptr;
  FZef.VCLAnsiStringCreate(&choice);
  Prepared(L"VCLAnsiStringCreate() = " + Number(choice));
  FZef.VCLAnsiStringSet(choice, selection.c_str());
  Prepared(L"VCLAnsiStringSet(" + Number(choice) + L", " + Quoted(selection) + L")");

  const bool confirmed = FZef.VCLSelectTypOp(typeList, cardList, choice) != 0;
  FLog.Add(L"VCLSelectTypOp(" + Number(typeList) + L", " + Number(cardList) + L", " +
           Number(choice) + L") = " + std::to_wstring(confirmed));

  const char* text = nullptr;
  FZef.VCLAnsiStringGet(choice, &text);
  const std::string chosen = Copied(text);
  FLog.Add(L"VCLAnsiStringGet(" + Number(choice) + L") = " + Quoted(chosen));
  FZef.VCLAnsiStringFree(choice);
  Prepared(L"VCLAnsiStringFree(" + Number(choice) + L")");
  FreeList(cardList);
  FreeList(typeList);
  if (!confirmed) return std::nullopt;
  return chosen;
}

std::string TLibrary::Setting(const std::string& name) {
  if (!Loaded()) return {};
  char value[255];
  const long error = FZef.GetRegConf(value, sizeof value, name.c_str(), true);
  FLog.Add(L"GetRegConf(" + Quoted(name) + L", 1) = " + std::to_wstring(error) +
           (error == 0 ? L", " + Quoted(value) : std::wstring()));
  return error == 0 ? value : "";
}

void TLibrary::KeepSetting(const std::string& name, const std::string& value) {
  if (!Loaded()) return;
  const long error = FZef.SetRegConf(name.c_str(), value.c_str(), true);
  FLog.Add(L"SetRegConf(" + Quoted(name) + L", " + Quoted(value) + L", 1) = " +
           std::to_wstring(error));
}

void TLibrary::ShowHint(HWND owner, const std::string& text, POINT place, int maxWidth) {
  if (!Loaded()) return;
  FZef.VCLShowHint(owner, text.c_str(), static_cast<int>(place.x), static_cast<int>(place.y),
                   maxWidth);
  FLog.Add(L"VCLShowHint(" + Number(owner) + L", " + Quoted(text) + L", " +
               std::to_wstring(place.x) + L", " + std::to_wstring(place.y) + L", " +
               std::to_wstring(maxWidth) + L")",
           TCallLog::TDetail::Colouring);
}

void TLibrary::ShowDebugText(const std::string& text) {
  if (Loaded()) FZef.VCLShowDebugText(text.c_str());
}

TLibrary::TDirectoryChoice TLibrary::SelectDirectory(bool showList) {
  if (!Loaded()) return {};
  const TRunning running(FRunning);
  unsigned char cancelled = 0;
  const bool changed =
      FZef.VCLSelectDirList("", static_cast<unsigned char>(showList), &cancelled) != 0;
  FLog.Add(L"VCLSelectDirList(\"\", " + std::to_wstring(showList) + L") = " +
           std::to_wstring(changed) + L", " + std::to_wstring(cancelled));
  return {changed, cancelled != 0};
}

int TLibrary::AskForDownload(const std::string& current, const std::string& offered,
                             const std::string& information) {
  if (!Loaded()) return 0;
  const TRunning running(FRunning);
  const int answer = FZef.VCLAskForDownload(current.c_str(), offered.c_str(), information.c_str());
  FLog.Add(L"VCLAskForDownload(" + Quoted(current) + L", " + Quoted(offered) + L", " +
           Quoted(information) + L") = " + std::to_wstring(answer));
  return answer;
}

ZefDialog TLibrary::NewUrl() {
  ZefDialog dialog = nullptr;
  if (!Loaded()) return dialog;
  const int made = FZef.VCLNewURL(nullptr, nullptr, &dialog);
  FLog.Add(L"VCLNewURL() = " + std::to_wstring(made));
  return dialog;
}

bool TLibrary::CmdUrl(ZefDialog dialog, signed char command, const std::string& text, int* value) {
  if (!Loaded()) return false;
  const int done = FZef.VCLCmdURL(dialog, command, text.empty() ? nullptr : text.c_str(), value);
  // Polled all the time, the status of a running download would bury the other calls.
  const bool polled = value && *value == 0;
  FLog.Add(L"VCLCmdURL(" + std::to_wstring(command) + L", " + Quoted(text) + L") = " +
               std::to_wstring(done) + (value ? L", " + std::to_wstring(*value) : L""),
           polled ? TCallLog::TDetail::Colouring : TCallLog::TDetail::Service);
  return done != 0;
}

std::string TLibrary::Md5(const std::string& text) {
  if (!Loaded()) return {};
  char digest[33] = "";
  FZef.MD5(digest, text.c_str());
  FLog.Add(L"MD5(" + std::to_wstring(text.size()) + L" octets) = " + ToWide(digest));
  return digest;
}
