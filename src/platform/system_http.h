#pragma once

#include <windows.h>

#include <winhttp.h>

#include <string>

#include "platform/owned.h"

/// The system's HTTP client, loaded on first use. Never unloaded: its threads may still be at work
/// when a request of ours is long over. Any thread.
class TSystemHttp {
 public:
  static const TSystemHttp& Get();

  decltype(&WinHttpOpen) Open;
  decltype(&WinHttpConnect) Connect;
  decltype(&WinHttpOpenRequest) OpenRequest;
  decltype(&WinHttpSetTimeouts) SetTimeouts;
  decltype(&WinHttpSetOption) SetOption;
  decltype(&WinHttpSetStatusCallback) SetStatusCallback;
  decltype(&WinHttpSendRequest) SendRequest;
  decltype(&WinHttpReceiveResponse) ReceiveResponse;
  decltype(&WinHttpQueryHeaders) QueryHeaders;
  decltype(&WinHttpQueryDataAvailable) QueryDataAvailable;
  decltype(&WinHttpReadData) ReadData;
  decltype(&WinHttpCloseHandle) CloseHandle;
  decltype(&WinHttpGetIEProxyConfigForCurrentUser) UserProxy;
  decltype(&WinHttpGetProxyForUrl) ProxyForUrl;

  /// False when this machine has no such client: none of the functions may be called then.
  bool Usable() const { return FUsable; }

 private:
  TSystemHttp();
  bool FUsable;
};

/// The calling thread's last error; never none, for something did fail.
unsigned long LastHttpFailure();

struct TCloseInternet {
  void operator()(HINTERNET handle) const { TSystemHttp::Get().CloseHandle(handle); }
};
using TInternetHandle = TOwned<HINTERNET, TCloseInternet>;

/// What the requests of one fetch share: settings and cookies. No logon data goes out by itself.
class THttpSession {
 public:
  enum class TProxy {
    BySystem,  ///< the system finds the proxy, by the user's setting, as long as it knows how
    ByUser     ///< the user's setting is read here
  };

  /// Milliseconds that each step of a request may take.
  explicit THttpSession(unsigned timeOut, TProxy proxy = TProxy::BySystem);

  /// Null when there can be none.
  HINTERNET Handle() const { return FHandle.Get(); }
  /// Gives a request the proxy that the user's setting asks for, where the system does not; may
  /// have to fetch a script first.
  void SetProxy(HINTERNET request, const std::wstring& address) const;

 private:
  TInternetHandle FHandle;
  bool FProxyByUser = false;
};
