#include "platform/http_request.h"

#include <windows.h>

#include <winhttp.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <charconv>
#include <mutex>
#include <utility>

#include "platform/code_page.h"
#include "platform/module_hold.h"
#include "platform/system_library.h"

namespace {

static_assert(THttpResult::TimedOut == ERROR_WINHTTP_TIMEOUT);
static_assert(THttpResult::NameNotResolved == ERROR_WINHTTP_NAME_NOT_RESOLVED);
static_assert(THttpResult::CannotConnect == ERROR_WINHTTP_CANNOT_CONNECT);
static_assert(THttpResult::RedirectRefused == ERROR_WINHTTP_REDIRECT_FAILED);

constexpr wchar_t kAgent[] = L"ZEF";
constexpr int kMostRedirections = 10;
constexpr DWORD kLargestHeader = 64 * 1024;
constexpr std::size_t kBufferSize = 128 * 1024;

/// The system's client. Never unloaded: its threads may still be at work when a request of ours is
/// long over.
class TWinHttp {
 public:
  static const TWinHttp& Get() {
    static const TWinHttp client;
    return client;
  }

  decltype(&WinHttpCrackUrl) CrackUrl;
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

  /// False when this machine has no such client.
  bool Usable() const { return FUsable; }

 private:
  TWinHttp() {
    const auto library = static_cast<HMODULE>(LoadSystemLibrary(L"winhttp.dll"));
    const auto find = [&](auto& function, const char* name) {
      using TFunction = std::remove_reference_t<decltype(function)>;
      function =
          library
              ? reinterpret_cast<TFunction>(reinterpret_cast<void*>(GetProcAddress(library, name)))
              : nullptr;
      return function != nullptr;
    };
    FUsable = find(CrackUrl, "WinHttpCrackUrl") & find(Open, "WinHttpOpen") &
              find(Connect, "WinHttpConnect") & find(OpenRequest, "WinHttpOpenRequest") &
              find(SetTimeouts, "WinHttpSetTimeouts") & find(SetOption, "WinHttpSetOption") &
              find(SetStatusCallback, "WinHttpSetStatusCallback") &
              find(SendRequest, "WinHttpSendRequest") &
              find(ReceiveResponse, "WinHttpReceiveResponse") &
              find(QueryHeaders, "WinHttpQueryHeaders") &
              find(QueryDataAvailable, "WinHttpQueryDataAvailable") &
              find(ReadData, "WinHttpReadData") & find(CloseHandle, "WinHttpCloseHandle");
  }

  bool FUsable;
};

/// The calling thread's last error; never none, for something did fail.
unsigned long LastFailure() {
  const DWORD error = GetLastError();
  return error ? error : ERROR_GEN_FAILURE;
}

class TInternetHandle {
 public:
  TInternetHandle() = default;
  explicit TInternetHandle(HINTERNET handle) : FHandle(handle) {}
  TInternetHandle(TInternetHandle&& other) noexcept
      : FHandle(std::exchange(other.FHandle, nullptr)) {}
  TInternetHandle& operator=(TInternetHandle&& other) noexcept {
    std::swap(FHandle, other.FHandle);
    return *this;
  }
  ~TInternetHandle() {
    if (FHandle) TWinHttp::Get().CloseHandle(FHandle);
  }
  HINTERNET Get() const { return FHandle; }
  explicit operator bool() const { return FHandle != nullptr; }

 private:
  HINTERNET FHandle = nullptr;
};

/// A request and the handles that it hangs on, which must outlive it.
struct TOpened {
  TInternetHandle Session;
  TInternetHandle Connection;
  TInternetHandle Request;
  bool Secure = false;
};

struct TAddress {
  std::wstring Host;
  std::wstring Path;
  INTERNET_PORT Port = 0;
  bool Secure = false;
};

bool ParseAddress(std::string_view text, TAddress& address) {
  const std::wstring wide = ToWide(text);
  URL_COMPONENTS parts{};
  parts.dwStructSize = sizeof parts;
  parts.dwHostNameLength = parts.dwUrlPathLength = parts.dwExtraInfoLength = static_cast<DWORD>(-1);
  if (wide.empty()) {
    SetLastError(ERROR_WINHTTP_INVALID_URL);
    return false;
  }
  if (!TWinHttp::Get().CrackUrl(wide.c_str(), static_cast<DWORD>(wide.size()), 0, &parts)) {
    return false;
  }
  address.Host.assign(parts.lpszHostName, parts.dwHostNameLength);
  address.Path.assign(parts.lpszUrlPath, parts.dwUrlPathLength);
  if (parts.lpszExtraInfo) address.Path.append(parts.lpszExtraInfo, parts.dwExtraInfoLength);
  // A fragment is the reader's affair, not the server's.
  address.Path.resize(std::min(address.Path.find(L'#'), address.Path.size()));
  address.Port = parts.nPort;
  address.Secure = parts.nScheme == INTERNET_SCHEME_HTTPS;
  return true;
}

void SetNumber(HINTERNET handle, DWORD option, DWORD value) {
  TWinHttp::Get().SetOption(handle, option, &value, sizeof value);
}

TInternetHandle OpenSession(unsigned timeOut) {
  const auto& client = TWinHttp::Get();
  const auto open = [&](DWORD proxy) {
    return TInternetHandle(client.Open(kAgent, proxy, WINHTTP_NO_PROXY_NAME,
                                       WINHTTP_NO_PROXY_BYPASS, WINHTTP_FLAG_ASYNC));
  };
  TInternetHandle session = open(WINHTTP_ACCESS_TYPE_AUTOMATIC_PROXY);
  // Systems before 8.1 do not know that kind.
  if (!session) session = open(WINHTTP_ACCESS_TYPE_DEFAULT_PROXY);
  if (!session) return session;
  const int ms = static_cast<int>(timeOut);
  client.SetTimeouts(session.Get(), ms, ms, ms, ms);
  SetNumber(session.Get(), WINHTTP_OPTION_RECEIVE_RESPONSE_TIMEOUT, timeOut);
  SetNumber(session.Get(), WINHTTP_OPTION_MAX_RESPONSE_HEADER_SIZE, kLargestHeader);
  SetNumber(session.Get(), WINHTTP_OPTION_REDIRECT_POLICY,
            WINHTTP_OPTION_REDIRECT_POLICY_DISALLOW_HTTPS_TO_HTTP);
  SetNumber(session.Get(), WINHTTP_OPTION_SECURE_PROTOCOLS, WINHTTP_FLAG_SECURE_PROTOCOL_TLS1_2);
  return session;
}

std::wstring QueryText(HINTERNET request, DWORD what) {
  const auto& client = TWinHttp::Get();
  DWORD size = 0;
  client.QueryHeaders(request, what, WINHTTP_HEADER_NAME_BY_INDEX, nullptr, &size,
                      WINHTTP_NO_HEADER_INDEX);
  if (GetLastError() != ERROR_INSUFFICIENT_BUFFER) return {};
  std::wstring text(size / sizeof(wchar_t) + 1, L'\0');
  size = static_cast<DWORD>(text.size() * sizeof(wchar_t));
  if (!client.QueryHeaders(request, what, WINHTTP_HEADER_NAME_BY_INDEX, text.data(), &size,
                           WINHTTP_NO_HEADER_INDEX)) {
    return {};
  }
  text.resize(size / sizeof(wchar_t));
  return text;
}

int QueryStatus(HINTERNET request) {
  DWORD status = 0;
  DWORD size = sizeof status;
  TWinHttp::Get().QueryHeaders(request, WINHTTP_QUERY_STATUS_CODE | WINHTTP_QUERY_FLAG_NUMBER,
                               WINHTTP_HEADER_NAME_BY_INDEX, &status, &size,
                               WINHTTP_NO_HEADER_INDEX);
  return static_cast<int>(status);
}

std::optional<std::uint64_t> QueryLength(HINTERNET request) {
  // As a text: the numeric form ends at 4 GB. A body in chunks knows its end by itself.
  if (!QueryText(request, WINHTTP_QUERY_TRANSFER_ENCODING).empty()) return std::nullopt;
  const std::string text = ToAnsi(QueryText(request, WINHTTP_QUERY_CONTENT_LENGTH));
  std::uint64_t length = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), length);
  if (text.empty() || error != std::errc()) return std::nullopt;
  return length;
}

}  // namespace

/// What the requesting thread and the system's threads share. Lives until the system reports that
/// the request's handle is closed, which may be long after the requesting thread has gone.
class THttpRequest::TExchange {
 public:
  explicit TExchange(std::shared_ptr<TSignal> signal) : FSignal(std::move(signal)) {}

  /// Has the system report to this object, which it keeps alive until it reports no more.
  bool Attach(TOpened opened, const std::shared_ptr<TExchange>& self);
  /// Ends what the system still does, and its use by the requesting thread.
  void Close();

  HINTERNET Request() const { return FOpened.Request.Get(); }
  void Cancel() {
    FCancelled = true;
    FSignal->Set();
  }
  bool Cancelled() const { return FCancelled; }
  THttpPhase Phase() const { return FPhase; }

  /// Starts an asynchronous step; the call returns false when the system refuses it.
  template <class TCall>
  unsigned long Begin(TCall&& call) {
    FCompleted = false;
    return call() ? THttpResult::NoError : LastFailure();
  }
  /// Starts a step that reads into the buffer not read last.
  unsigned long BeginRead();
  /// Waits for the end of a step; an error of the system's, or one of ours.
  unsigned long Await(const TSignalWait& wait, unsigned timeOut) const;
  /// What the last step has read; empty at the end of the body. Stays until the next but one.
  std::span<const char> Data() const { return {Buffer(), FSize}; }

 private:
  static void CALLBACK Report(HINTERNET handle, DWORD_PTR context, DWORD status, void* info,
                              DWORD size);
  void Reported(DWORD status, const void* info, DWORD size);
  void DataAvailable(DWORD size);
  void Redirected(const wchar_t* address);
  void Completed(unsigned long error, DWORD size = 0);
  void Reached(THttpPhase phase) {
    FPhase = phase;
    FSignal->Set();
  }
  char* Buffer() const { return FBuffers[FReadingInto].get(); }

  const std::shared_ptr<TSignal> FSignal;
  std::atomic<bool> FCancelled = false;
  std::atomic<THttpPhase> FPhase = THttpPhase::Starting;
  std::atomic<bool> FCompleted = false;
  // Written before FCompleted, read after it.
  unsigned long FError = 0;
  DWORD FSize = 0;
  std::atomic<unsigned long> FRefusal = 0;

  std::mutex FLock;  ///< the handle is not closed while a report reads through it
  TOpened FOpened;
  std::array<std::unique_ptr<char[]>, 2> FBuffers;
  std::size_t FReadingInto = 0;
  int FRedirections = 0;

  std::shared_ptr<TExchange> FSelf;
  std::unique_ptr<TModuleHold> FHold;
};

bool THttpRequest::TExchange::Attach(TOpened opened, const std::shared_ptr<TExchange>& self) {
  const auto& client = TWinHttp::Get();
  for (auto& buffer : FBuffers) buffer = std::make_unique_for_overwrite<char[]>(kBufferSize);
  auto hold = std::make_unique<TModuleHold>();
  auto context = reinterpret_cast<DWORD_PTR>(this);
  if (!client.SetOption(opened.Request.Get(), WINHTTP_OPTION_CONTEXT_VALUE, &context,
                        sizeof context)) {
    return false;
  }
  FHold = std::move(hold);
  FSelf = self;
  if (client.SetStatusCallback(opened.Request.Get(), Report,
                               WINHTTP_CALLBACK_FLAG_ALL_NOTIFICATIONS,
                               0) == WINHTTP_INVALID_STATUS_CALLBACK) {
    FSelf = nullptr;
    return false;
  }
  FOpened = std::move(opened);
  return true;
}

void THttpRequest::TExchange::Close() {
  TOpened closing;
  const std::lock_guard lock(FLock);
  closing = std::move(FOpened);
}

unsigned long THttpRequest::TExchange::Await(const TSignalWait& wait, unsigned timeOut) const {
  while (!FCompleted) {
    if (FCancelled) return ERROR_WINHTTP_OPERATION_CANCELLED;
    if (const auto refusal = FRefusal.load()) return refusal;
    // Each sign of life gives the step its full time again.
    if (!wait(*FSignal, timeOut) && !FCompleted) return THttpResult::TimedOut;
  }
  return FError;
}

unsigned long THttpRequest::TExchange::BeginRead() {
  FReadingInto = 1 - FReadingInto;
  return Begin([&] { return TWinHttp::Get().QueryDataAvailable(FOpened.Request.Get(), nullptr); });
}

void CALLBACK THttpRequest::TExchange::Report(HINTERNET, DWORD_PTR context, DWORD status,
                                              void* info, DWORD size) {
  auto* exchange = reinterpret_cast<TExchange*>(context);
  if (!exchange) return;
  if (status == WINHTTP_CALLBACK_STATUS_HANDLE_CLOSING) {
    // The last report: with it goes what was kept for the system's sake.
    const auto last = std::move(exchange->FSelf);
  } else {
    exchange->Reported(status, info, size);
  }
}

void THttpRequest::TExchange::Reported(DWORD status, const void* info, DWORD size) {
  switch (status) {
    case WINHTTP_CALLBACK_STATUS_RESOLVING_NAME:
      return Reached(THttpPhase::Resolving);
    case WINHTTP_CALLBACK_STATUS_CONNECTING_TO_SERVER:
      return Reached(THttpPhase::Connecting);
    case WINHTTP_CALLBACK_STATUS_CONNECTED_TO_SERVER:
    case WINHTTP_CALLBACK_STATUS_SENDING_REQUEST:
      return Reached(THttpPhase::Sending);
    case WINHTTP_CALLBACK_STATUS_REQUEST_SENT:
      return Reached(THttpPhase::Receiving);
    case WINHTTP_CALLBACK_STATUS_REDIRECT:
      return Redirected(static_cast<const wchar_t*>(info));
    case WINHTTP_CALLBACK_STATUS_SENDREQUEST_COMPLETE:
    case WINHTTP_CALLBACK_STATUS_HEADERS_AVAILABLE:
      return Completed(THttpResult::NoError);
    case WINHTTP_CALLBACK_STATUS_DATA_AVAILABLE:
      return DataAvailable(*static_cast<const DWORD*>(info));
    case WINHTTP_CALLBACK_STATUS_READ_COMPLETE:
      return Completed(THttpResult::NoError, size);
    case WINHTTP_CALLBACK_STATUS_REQUEST_ERROR:
      return Completed(static_cast<const WINHTTP_ASYNC_RESULT*>(info)->dwError);
    default:
      return;
  }
}

void THttpRequest::TExchange::DataAvailable(DWORD size) {
  // Reading what is there from here, and not from the requesting thread, saves waking it twice.
  if (size == 0) return Completed(THttpResult::NoError);
  const std::lock_guard lock(FLock);
  if (!FOpened.Request) return;
  const DWORD room = static_cast<DWORD>(kBufferSize);
  if (!TWinHttp::Get().ReadData(FOpened.Request.Get(), Buffer(), std::min(size, room), nullptr)) {
    Completed(LastFailure());
  }
}

void THttpRequest::TExchange::Redirected(const wchar_t* address) {
  // Kept here as well as asked of the system, not all versions of which hold to either.
  constexpr std::wstring_view plain = L"http:";
  const bool downgraded = FOpened.Secure && _wcsnicmp(address, plain.data(), plain.size()) == 0;
  if (++FRedirections > kMostRedirections || downgraded) FRefusal = THttpResult::RedirectRefused;
  FSignal->Set();
}

void THttpRequest::TExchange::Completed(unsigned long error, DWORD size) {
  FError = error;
  FSize = size;
  FCompleted = true;
  FSignal->Set();
}

// ---- the request ----

namespace {

TOpened Open(const TAddress& address, unsigned timeOut) {
  const auto& client = TWinHttp::Get();
  TOpened opened;
  opened.Secure = address.Secure;
  opened.Session = OpenSession(timeOut);
  if (!opened.Session) return opened;
  opened.Connection =
      TInternetHandle(client.Connect(opened.Session.Get(), address.Host.c_str(), address.Port, 0));
  if (!opened.Connection) return opened;
  opened.Request = TInternetHandle(client.OpenRequest(
      opened.Connection.Get(), L"GET", address.Path.c_str(), nullptr, WINHTTP_NO_REFERER,
      WINHTTP_DEFAULT_ACCEPT_TYPES, address.Secure ? WINHTTP_FLAG_SECURE : 0));
  return opened;
}

}  // namespace

THttpRequest::THttpRequest(unsigned timeOut)
    : FTimeOut(timeOut),
      FSignal(std::make_shared<TSignal>(TSignal::TReset::ByWait)),
      FExchange(std::make_shared<TExchange>(FSignal)) {}

THttpRequest::~THttpRequest() = default;

void THttpRequest::Cancel() { FExchange->Cancel(); }

bool THttpRequest::Cancelled() const { return FExchange->Cancelled(); }

THttpResult THttpRequest::Get(std::string_view text, THttpSink& sink, const TSignalWait& wait) {
  struct TCloser {
    TExchange& Exchange;
    ~TCloser() { Exchange.Close(); }
  };
  const TCloser closer{*FExchange};
  THttpResult result;
  result.Error = Perform(text, sink, wait, result);
  result.Phase = FExchange->Phase();
  result.Cancelled = Cancelled();
  return result;
}

unsigned long THttpRequest::Perform(std::string_view text, THttpSink& sink, const TSignalWait& wait,
                                    THttpResult& result) {
  const auto& client = TWinHttp::Get();
  if (!client.Usable()) return ERROR_MOD_NOT_FOUND;
  TAddress address;
  if (!ParseAddress(text, address)) return LastFailure();
  TOpened opened = Open(address, FTimeOut);
  if (!opened.Request || !FExchange->Attach(std::move(opened), FExchange)) {
    return LastFailure();
  }
  const HINTERNET request = FExchange->Request();
  const auto step = [&](auto&& call) {
    const unsigned long refused = FExchange->Begin(call);
    return refused ? refused : FExchange->Await(wait, FTimeOut);
  };
  if (const auto error = step([&] {
        return client.SendRequest(request, WINHTTP_NO_ADDITIONAL_HEADERS, 0,
                                  WINHTTP_NO_REQUEST_DATA, 0, 0,
                                  reinterpret_cast<DWORD_PTR>(FExchange.get()));
      })) {
    return error;
  }
  if (const auto error = step([&] { return client.ReceiveResponse(request, nullptr); })) {
    return error;
  }
  result.Status = QueryStatus(request);
  result.Length = QueryLength(request);
  const std::string header = ToAnsi(QueryText(request, WINHTTP_QUERY_RAW_HEADERS_CRLF));
  // Not all versions of the system hold to the limit asked for.
  if (header.size() > kLargestHeader) return ERROR_WINHTTP_HEADER_SIZE_OVERFLOW;
  result.Refused = !sink.Begin(result.Status, header, result.Length);
  if (result.Refused) return THttpResult::NoError;
  return ReceiveBody(sink, wait, result);
}

unsigned long THttpRequest::ReceiveBody(THttpSink& sink, const TSignalWait& wait,
                                        THttpResult& result) {
  unsigned long begun = FExchange->BeginRead();
  while (true) {
    if (const auto error = begun ? begun : FExchange->Await(wait, FTimeOut)) return error;
    auto data = FExchange->Data();
    // What follows the declared length is no part of the body.
    const std::uint64_t missing = result.Length.value_or(UINT64_MAX) - result.Received;
    if (data.size() > missing) data = data.first(static_cast<std::size_t>(missing));
    if (data.empty()) return THttpResult::NoError;
    result.Received += data.size();
    const bool last = data.size() == missing;
    // The next packet comes in while the sink deals with this one.
    if (!last) begun = FExchange->BeginRead();
    result.Refused = !sink.Receive(data);
    if (last || result.Refused) return THttpResult::NoError;
  }
}
