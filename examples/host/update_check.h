#pragma once

#include <memory>
#include <string>

#include "library.h"
#include "loopback_server.h"

/// The search for a new version of the program, from the question to the file. The web that it
/// searches is a small server of its own, so that it can be tried without any other.
class TUpdateCheck {
 public:
  explicit TUpdateCheck(TLibrary& library) : FLibrary(library) {}
  TUpdateCheck(const TUpdateCheck&) = delete;
  TUpdateCheck& operator=(const TUpdateCheck&) = delete;
  ~TUpdateCheck() { Abort(); }

  /// Asks the user, and starts the download to the file if that is the answer. Returns what to tell
  /// the user.
  std::wstring Ask(const std::wstring& file);
  bool Downloading() const { return FDownload != nullptr; }
  /// A download ran and has come to its end.
  bool Ended() const;
  /// Puts the download's window away. Returns what to tell the user.
  std::wstring Finish();
  void Abort();

 private:
  TLibrary& FLibrary;
  std::unique_ptr<TLoopbackServer> FServer;
  ZefDialog FDownload = nullptr;
  std::string FFile;
};
