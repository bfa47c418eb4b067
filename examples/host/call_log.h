#pragma once

#include <windows.h>

#include <cstdio>
#include <functional>
#include <string>
#include <string_view>

/// One line for every call of the library: in a pane of the main window and, when asked, in a file.
class TCallLog {
 public:
  enum class TDetail {
    Service,      ///< shown in the pane and written
    Colouring,    ///< written only: asked at every word, it would bury the services
    Preparation,  ///< written only: the texts and lists that a service is handed
  };

  TCallLog() = default;
  ~TCallLog();
  TCallLog(const TCallLog&) = delete;
  TCallLog& operator=(const TCallLog&) = delete;

  /// False when the file cannot be made; it is written in UTF-8 and flushed at each line.
  bool Open(const std::wstring& file);
  /// A read-only multi-line edit, or null when it is gone.
  void SetPane(HWND pane) { FPane = pane; }
  /// Also hands each line of the pane to a trace; empty: no more.
  void SetTrace(std::function<void(const std::wstring& line)> trace) { FTrace = std::move(trace); }
  void Clear();
  void Add(std::wstring_view line, TDetail detail = TDetail::Service);

 private:
  std::FILE* FFile = nullptr;
  HWND FPane = nullptr;
  std::function<void(const std::wstring& line)> FTrace;
};
