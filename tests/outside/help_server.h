#pragma once

#include <windows.h>

#include <string>
#include <vector>

/// Stands in for the system's help program: programs find it by its window and send it their
/// requests, which it records.
class THelpServer {
 public:
  struct TRequest {
    HWND Window;
    unsigned Command;
    int Data;
    std::string File;
    bool operator==(const TRequest&) const = default;
  };

  THelpServer();
  THelpServer(const THelpServer&) = delete;
  THelpServer& operator=(const THelpServer&) = delete;
  ~THelpServer();

  /// Requests come in on the thread that made this object.
  const std::vector<TRequest>& Requests() const { return FRequests; }
  void Forget() { FRequests.clear(); }

 private:
  static LRESULT CALLBACK ServerProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
  void Record(HWND asker, const COPYDATASTRUCT& copy);

  HWND FWindow;
  std::vector<TRequest> FRequests;
};
