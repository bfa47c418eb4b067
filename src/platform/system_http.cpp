#include "platform/system_http.h"

#include <type_traits>

#include "platform/system_library.h"

namespace {

constexpr wchar_t kAgent[] = L"ZEF";
constexpr DWORD kLargestHeader = 64 * 1024;

/// The user's setting, whose texts are the reader's to free.
struct TUserProxy : WINHTTP_CURRENT_USER_IE_PROXY_CONFIG {
  TUserProxy() : WINHTTP_CURRENT_USER_IE_PROXY_CONFIG{} {
    if (TSystemHttp::Get().UserProxy(this)) return;
    fAutoDetect = FALSE;
    lpszAutoConfigUrl = lpszProxy = lpszProxyBypass = nullptr;
  }
  TUserProxy(const TUserProxy&) = delete;
  TUserProxy& operator=(const TUserProxy&) = delete;
  ~TUserProxy() {
    for (LPWSTR text : {lpszAutoConfigUrl, lpszProxy, lpszProxyBypass}) GlobalFree(text);
  }
};

bool SetNumber(HINTERNET handle, DWORD option, DWORD value) {
  return TSystemHttp::Get().SetOption(handle, option, &value, sizeof value) != FALSE;
}

void SetProxyTo(HINTERNET request, LPWSTR proxy, LPWSTR bypass) {
  WINHTTP_PROXY_INFO info{};
  info.dwAccessType = WINHTTP_ACCESS_TYPE_NAMED_PROXY;
  info.lpszProxy = proxy;
  info.lpszProxyBypass = bypass;
  TSystemHttp::Get().SetOption(request, WINHTTP_OPTION_PROXY, &info, sizeof info);
}

}  // namespace

const TSystemHttp& TSystemHttp::Get() {
  static const TSystemHttp client;
  return client;
}

TSystemHttp::TSystemHttp() {
  const auto library = static_cast<HMODULE>(LoadSystemLibrary(L"winhttp.dll"));
  const auto find = [&](auto& function, const char* name) {
    using TFunction = std::remove_reference_t<decltype(function)>;
    function =
        library
            ? reinterpret_cast<TFunction>(reinterpret_cast<void*>(GetProcAddress(library, name)))
            : nullptr;
    return function != nullptr;
  };
  FUsable =
      find(Open, "WinHttpOpen") & find(Connect, "WinHttpConnect") &
      find(OpenRequest, "WinHttpOpenRequest") & find(SetTimeouts, "WinHttpSetTimeouts") &
      find(SetOption, "WinHttpSetOption") & find(SetStatusCallback, "WinHttpSetStatusCallback") &
      find(SendRequest, "WinHttpSendRequest") & find(ReceiveResponse, "WinHttpReceiveResponse") &
      find(QueryHeaders, "WinHttpQueryHeaders") &
      find(QueryDataAvailable, "WinHttpQueryDataAvailable") & find(ReadData, "WinHttpReadData") &
      find(CloseHandle, "WinHttpCloseHandle") &
      find(UserProxy, "WinHttpGetIEProxyConfigForCurrentUser") &
      find(ProxyForUrl, "WinHttpGetProxyForUrl");
}

unsigned long LastHttpFailure() {
  const DWORD error = GetLastError();
  return error ? error : ERROR_GEN_FAILURE;
}

THttpSession::THttpSession(unsigned timeOut, TProxy proxy) {
  const auto& client = TSystemHttp::Get();
  const auto open = [&](DWORD access) {
    return TInternetHandle(client.Open(kAgent, access, WINHTTP_NO_PROXY_NAME,
                                       WINHTTP_NO_PROXY_BYPASS, WINHTTP_FLAG_ASYNC));
  };
  if (proxy == TProxy::BySystem) FHandle = open(WINHTTP_ACCESS_TYPE_AUTOMATIC_PROXY);
  if (!FHandle) {
    // Systems before 8.1 do not know that kind, and by default read the machine's setting only.
    FProxyByUser = true;
    FHandle = open(WINHTTP_ACCESS_TYPE_DEFAULT_PROXY);
  }
  if (!FHandle) return;
  const int ms = static_cast<int>(timeOut);
  client.SetTimeouts(Handle(), ms, ms, ms, ms);
  SetNumber(Handle(), WINHTTP_OPTION_RECEIVE_RESPONSE_TIMEOUT, timeOut);
  SetNumber(Handle(), WINHTTP_OPTION_MAX_RESPONSE_HEADER_SIZE, kLargestHeader);
  SetNumber(Handle(), WINHTTP_OPTION_AUTOLOGON_POLICY, WINHTTP_AUTOLOGON_SECURITY_LEVEL_HIGH);
  // Systems that do not know the newest refuse all that is asked for with it.
  if (!SetNumber(Handle(), WINHTTP_OPTION_SECURE_PROTOCOLS,
                 WINHTTP_FLAG_SECURE_PROTOCOL_TLS1_2 | WINHTTP_FLAG_SECURE_PROTOCOL_TLS1_3)) {
    SetNumber(Handle(), WINHTTP_OPTION_SECURE_PROTOCOLS, WINHTTP_FLAG_SECURE_PROTOCOL_TLS1_2);
  }
}

void THttpSession::SetProxy(HINTERNET request, const std::wstring& address) const {
  if (!FProxyByUser) return;
  const TUserProxy setting;
  if (setting.fAutoDetect || setting.lpszAutoConfigUrl) {
    WINHTTP_AUTOPROXY_OPTIONS options{};
    if (setting.fAutoDetect) {
      options.dwFlags = WINHTTP_AUTOPROXY_AUTO_DETECT;
      options.dwAutoDetectFlags = WINHTTP_AUTO_DETECT_TYPE_DHCP | WINHTTP_AUTO_DETECT_TYPE_DNS_A;
    }
    if (setting.lpszAutoConfigUrl) {
      options.dwFlags |= WINHTTP_AUTOPROXY_CONFIG_URL;
      options.lpszAutoConfigUrl = setting.lpszAutoConfigUrl;
    }
    WINHTTP_PROXY_INFO found{};
    if (TSystemHttp::Get().ProxyForUrl(Handle(), address.c_str(), &options, &found)) {
      if (found.lpszProxy) SetProxyTo(request, found.lpszProxy, found.lpszProxyBypass);
      GlobalFree(found.lpszProxy);
      GlobalFree(found.lpszProxyBypass);
      return;
    }
  }
  if (setting.lpszProxy) SetProxyTo(request, setting.lpszProxy, setting.lpszProxyBypass);
}
