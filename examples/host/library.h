#pragma once

#include <windows.h>

#include <optional>
#include <string>

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
    auto operator()(TArguments... arguments) const {
      return reinterpret_cast<TFunction>(Address)(arguments...);
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

  TFunctionImport<decltype(&VCLAskForDownload)> FAskForDownload{{"VCLAskForDownload"}};
  TFunctionImport<decltype(&VCLNewURL)> FNewUrl{{"VCLNewURL"}};
  TFunctionImport<decltype(&VCLCmdURL)> FCmdUrl{{"VCLCmdURL"}};
  TFunctionImport<decltype(&MD5)> FMd5{{"MD5"}};

  TImport* const FImports[14] = {
      &FGetVersion,     &FSetMainWindow, &FSetMainHelpFile, &FFree,     &FIsMethod,
      &FIsConstant,     &FHelpBox,       &FConstHelpBox,    &FTypesBox, &FGetNewTypes,
      &FAskForDownload, &FNewUrl,        &FCmdUrl,          &FMd5};

  TCallLog& FLog;
  HMODULE FModule = nullptr;
  int FRunning = 0;
};
