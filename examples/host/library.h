#pragma once

#include <windows.h>

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "call_log.h"
#include "zefext.h"

/// zefext.dll, loaded by name so that the program also runs without it. Texts are ANSI.
class TLibrary {
 public:
  explicit TLibrary(TCallLog& log) : FLog(log) {}
  ~TLibrary() { Unload(); }
  TLibrary(const TLibrary&) = delete;
  TLibrary& operator=(const TLibrary&) = delete;

  /// Loads the library and gives it its owner window and help file. False when it is not there.
  bool Load(const std::wstring& file, HWND mainWindow, const std::string& helpFile);
  /// Call while the main window exists: the library's own windows belong to it.
  void Unload();

  bool Loaded() const { return FModule != nullptr; }
  /// Whether this zefext.dll has the export; a service that it has not does nothing.
  bool Has(const char* name) const;
  /// Whether one of its dialogs is open; the library must not be unloaded then.
  bool Busy() const { return FRunning > 0; }

  struct TDirectoryChoice {
    bool Changed = false;  ///< the current directory is another one now
    bool Cancelled = false;
  };
  /// Opens the default accounts directory, without a window when there is one, or shows the list.
  TDirectoryChoice SelectDirectory(bool showList);

  unsigned long Version();
  bool IsMethod(const std::string& word);
  bool IsConstant(const std::string& word);

  /// Returns the rewritten line, or the line itself when the user cancelled. The cursor counts
  /// bytes.
  std::string SyntaxHelpBox(const std::string& line, int& cursor, const std::string& types);
  std::string SyntaxConstHelpBox(const std::string& text);
  std::string SyntaxTypesBox(const std::string& types);
  /// The variable types as the last dialog changed them, or nothing when it did not.
  std::optional<std::string> SyntaxNewTypes();

  bool InvokeModalDialog();
  /// A dialog inside the parent; null when there is none.
  ZefDialog OpenDialog(HWND parent);
  void FreeDialog(ZefDialog dialog);
  /// A view inside the parent, still hidden, and its handle; it goes with the parent.
  HWND CreateView(HWND parent, ZefDialog& view);
  void GiveToView(ZefDialog view, IExClass1* services);
  void ShowView(ZefDialog view);
  bool ViewChanged(ZefDialog view);
  void ClearViewChanged(ZefDialog view);

  /// The type, card or cheque book that the user chose; nothing when the filter is to go.
  std::optional<std::string> SelectTypOp(const std::vector<std::string>& types,
                                         const std::vector<std::string>& cards,
                                         const std::string& selection);

  /// A setting of the current user; empty when there is none or it is longer than a line.
  std::string Setting(const std::string& name);
  void KeepSetting(const std::string& name, const std::string& value);

  void ShowHint(HWND owner, const std::string& text, POINT place, int maxWidth);
  /// Not in the log of calls, whose lines it shows.
  void ShowDebugText(const std::string& text);

  /// 1: download now; 0: not now; -1: never this version.
  int AskForDownload(const std::string& current, const std::string& offered,
                     const std::string& information);
  /// A download window, or null; the host's until the command that destroys it.
  ZefDialog NewUrl();
  /// False when the library refuses the command.
  bool CmdUrl(ZefDialog dialog, signed char command, const std::string& text = {},
              int* value = nullptr);
  std::string Md5(const std::string& text);

 private:
  struct TImport {
    const char* Name;
    void* Address = nullptr;
  };
  template <class TFunction>
  struct TFunctionImport : TImport {
    template <class... TArguments>
    auto operator()(TArguments&&... arguments) const {
      return reinterpret_cast<TFunction>(Address)(std::forward<TArguments>(arguments)...);
    }
  };

  TFunctionImport<decltype(&VCLGetVersion)> FGetVersion{{"VCLGetVersion"}};
  TFunctionImport<decltype(&VCLSetMainWindowHandle)> FSetMainWindow{{"VCLSetMainWindowHandle"}};
  TFunctionImport<decltype(&VCLSetMainHelpFile)> FSetMainHelpFile{{"VCLSetMainHelpFile"}};
  TFunctionImport<decltype(&VCLFree)> FFree{{"VCLFree"}};
  TFunctionImport<decltype(&VCLSyntaxIsMethod)> FIsMethod{{"VCLSyntaxIsMethod"}};
  TFunctionImport<decltype(&VCLSyntaxIsConstant)> FIsConstant{{"VCLSyntaxIsConstant"}};
  TFunctionImport<decltype(&VCLSyntaxHelpBox)> FHelpBox{{"VCLSyntaxHelpBox"}};
  TFunctionImport<void(ZEFEXT_API*)(const char* text, const char** result)> FConstHelpBox{
      {"VCLSyntaxConstHelpBox"}};
  TFunctionImport<void(ZEFEXT_API*)(const char* types, const char** result)> FTypesBox{
      {"VCLSyntaxTypesBox"}};
  TFunctionImport<unsigned char(ZEFEXT_API*)(const char** types)> FGetNewTypes{
      {"VCLSyntaxGetNewTypes"}};
  TFunctionImport<decltype(&VCLSelectDirList)> FSelectDirList{{"VCLSelectDirList"}};

  TFunctionImport<decltype(&VCLInvokeModalDialog)> FInvokeModal{{"VCLInvokeModalDialog"}};
  TFunctionImport<decltype(&VCLInvokeNonModalDialog)> FInvokeNonModal{{"VCLInvokeNonModalDialog"}};
  TFunctionImport<decltype(&VCLFreeNonModalDialog)> FFreeNonModal{{"VCLFreeNonModalDialog"}};
  TFunctionImport<decltype(&VCLDialogShow)> FDialogShow{{"VCLDialogShow"}};
  TFunctionImport<decltype(&VCLDialogHasChanged)> FHasChanged{{"VCLDialogHasChanged"}};
  TFunctionImport<decltype(&VCLDialogClearHasChanged)> FClearHasChanged{
      {"VCLDialogClearHasChanged"}};
  // Exported as C++ compilers decorate them; these are the names that this one gives them.
  TFunctionImport<decltype(&CreateExampleView)> FCreateView{
      {"_Z17CreateExampleViewPvPKcRP8IUnknown@12"}};
  TFunctionImport<decltype(&VCLExDlgDlwdGive)> FGiveToView{{"_Z16VCLExDlgDlwdGiveP9IExClass1Pv@8"}};
  TFunctionImport<decltype(&VCLShowHint)> FShowHint{{"VCLShowHint"}};
  TFunctionImport<decltype(&VCLShowDebugText)> FShowDebugText{{"VCLShowDebugText"}};

  TFunctionImport<decltype(&VCLAnsiStringCreate)> FStringCreate{{"VCLAnsiStringCreate"}};
  TFunctionImport<decltype(&VCLAnsiStringSet)> FStringSet{{"VCLAnsiStringSet"}};
  TFunctionImport<decltype(&VCLAnsiStringGet)> FStringGet{{"VCLAnsiStringGet"}};
  TFunctionImport<decltype(&VCLAnsiStringFree)> FStringFree{{"VCLAnsiStringFree"}};
  TFunctionImport<decltype(&VCLStringListCreate)> FListCreate{{"VCLStringListCreate"}};
  TFunctionImport<decltype(&VCLStringListAdd)> FListAdd{{"VCLStringListAdd"}};
  TFunctionImport<decltype(&VCLStringListFree)> FListFree{{"VCLStringListFree"}};
  TFunctionImport<decltype(&VCLSelectTypOp)> FSelectTypOp{{"VCLSelectTypOp"}};
  TFunctionImport<decltype(&GetRegConf)> FGetRegConf{{"GetRegConf"}};
  TFunctionImport<decltype(&SetRegConf)> FSetRegConf{{"SetRegConf"}};
  TFunctionImport<decltype(&VCLAskForDownload)> FAskForDownload{{"VCLAskForDownload"}};
  TFunctionImport<decltype(&VCLNewURL)> FNewUrl{{"VCLNewURL"}};
  TFunctionImport<decltype(&VCLCmdURL)> FCmdUrl{{"VCLCmdURL"}};
  TFunctionImport<decltype(&MD5)> FMd5{{"MD5"}};

  ZefStringList NewList(const std::vector<std::string>& lines);
  void FreeList(ZefStringList list);
  void Prepared(const std::wstring& call);

  TImport* const FImports[35] = {
      &FGetVersion,      &FSetMainWindow,  &FSetMainHelpFile, &FFree,       &FIsMethod,
      &FIsConstant,      &FHelpBox,        &FConstHelpBox,    &FTypesBox,   &FGetNewTypes,
      &FInvokeModal,     &FInvokeNonModal, &FFreeNonModal,    &FDialogShow, &FHasChanged,
      &FClearHasChanged, &FCreateView,     &FGiveToView,      &FShowHint,   &FShowDebugText,
      &FStringCreate,    &FStringSet,      &FStringGet,       &FStringFree, &FListCreate,
      &FListAdd,         &FListFree,       &FSelectTypOp,     &FGetRegConf, &FSetRegConf,
      &FSelectDirList,   &FAskForDownload, &FNewUrl,          &FCmdUrl,     &FMd5};

  TCallLog& FLog;
  HMODULE FModule = nullptr;
  int FRunning = 0;
};
