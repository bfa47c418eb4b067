#include "platform/http_exchange.h"

#include <windows.h>

#include <winhttp.h>

#include <algorithm>
#include <atomic>
#include <mutex>
#include <utility>

#include "platform/code_page.h"
#include "platform/module_hold.h"
#include "platform/system_http.h"
#include "platform/system_library.h"

namespace {

static_assert(THttpError::TimedOut == ERROR_WINHTTP_TIMEOUT);
static_assert(THttpError::BadAddress == ERROR_WINHTTP_INVALID_URL);
static_assert(THttpError::NameNotResolved == ERROR_WINHTTP_NAME_NOT_RESOLVED);
static_assert(THttpError::CannotConnect == ERROR_WINHTTP_CANNOT_CONNECT);
static_assert(THttpError::BadAnswer == ERROR_WINHTTP_INVALID_SERVER_RESPONSE);
static_assert(THttpError::RedirectRefused == ERROR_WINHTTP_REDIRECT_FAILED);

constexpr DWORD kLargestHeader = 64 * 1024;
constexpr DWORD kBufferSize = 128 * 1024;
/// More at once than this is no size but an error that the system takes for one.
constexpr DWORD kMostAvailable = 1u << 30;

/// A request and the handles that it hangs on, which must outlive it.
struct TOpened {
  std::shared_ptr<THttpSession> Session;
  TInternetHandle Connection;
  TInternetHandle Request;
};

/// A name as the system's client wants it: it knows ASCII only.
std::wstring HostName(const std::string& host) {
  std::wstring wide = Utf8ToWide(host);
  if (std::ranges::all_of(wide, [](wchar_t c) { return c < 0x80; })) return wide;
  const TSystemLibrary names(L"normaliz.dll");
  const auto toAscii = names.Function<decltype(&IdnToAscii)>("IdnToAscii");
  wchar_t ascii[256];
  const int size =
      toAscii ? toAscii(0, wide.c_str(), static_cast<int>(wide.size()), ascii, 255) : 0;
  return std::wstring(ascii, static_cast<std::size_t>(size));
}

TOpened Open(std::shared_ptr<THttpSession> session, const THttpTarget& target) {
  const auto& client = TSystemHttp::Get();
  TOpened opened;
  opened.Session = std::move(session);
  const std::wstring host = HostName(target.Host);
  const std::wstring path = Utf8ToWide(target.Path);
  if (host.empty()) {
    SetLastError(ERROR_WINHTTP_NAME_NOT_RESOLVED);
    return opened;
  }
  opened.Connection =
      TInternetHandle(client.Connect(opened.Session->Handle(), host.c_str(), target.Port, 0));
  if (!opened.Connection) return opened;
  const DWORD flags = WINHTTP_FLAG_ESCAPE_DISABLE | WINHTTP_FLAG_ESCAPE_DISABLE_QUERY |
                      (target.Secure ? WINHTTP_FLAG_SECURE : 0);
  opened.Request =
      TInternetHandle(client.OpenRequest(opened.Connection.Get(), L"GET", path.c_str(), nullptr,
                                         WINHTTP_NO_REFERER, WINHTTP_DEFAULT_ACCEPT_TYPES, flags));
  if (!opened.Request) return opened;
  // A connection that is not kept cannot be found closed by the next fetch.
  DWORD disabled =
      WINHTTP_DISABLE_REDIRECTS | WINHTTP_DISABLE_AUTHENTICATION | WINHTTP_DISABLE_KEEP_ALIVE;
  client.SetOption(opened.Request.Get(), WINHTTP_OPTION_DISABLE_FEATURE, &disabled,
                   sizeof disabled);
  opened.Session->SetProxy(opened.Request.Get(), (target.Secure ? L"https://" : L"http://") + host +
                                                     L":" + std::to_wstring(target.Port) + path);
  return opened;
}

}  // namespace

std::shared_ptr<THttpSession> OpenHttpSession(unsigned timeOut) {
  if (!TSystemHttp::Get().Usable()) return nullptr;
  auto session = std::make_shared<THttpSession>(timeOut);
  return session->Handle() ? session : nullptr;
}

/// What the making thread and the system's threads share. Lives until the system reports that the
/// request's handle is closed, which may be long after the making thread has gone.
class THttpExchange::TState {
 public:
  TState(std::shared_ptr<THttpSession> session, unsigned timeOut)
      : FSession(std::move(session)), FTimeOut(timeOut) {}

  /// Opens a request that reports to this object, which it keeps alive until it reports no more.
  bool Attach(const THttpTarget& target, const std::shared_ptr<TState>& self);
  /// Ends what the system still does, and its use by the making thread.
  void Close();
  HINTERNET Request() const { return FOpened.Request.Get(); }
  /// Makes an asynchronous step, whose call returns false when the system refuses it.
  template <class TCall>
  unsigned long Step(TCall&& call) {
    FCompleted = false;
    if (!call()) return LastHttpFailure();
    return Await();
  }
  unsigned long ReadHeader(std::string& header) const;
  /// What the last step has read.
  std::span<const char> Data() const { return {FBuffer.get(), FSize}; }

  void Cancel() {
    FCancelled = true;
    FSignal.Set();
  }
  THttpPhase Phase() const { return FPhase; }

 private:
  static void CALLBACK Report(HINTERNET handle, DWORD_PTR context, DWORD status, void* info,
                              DWORD size);
  void Reported(DWORD status, const void* info, DWORD size);
  void DataAvailable(DWORD size);
  void Completed(unsigned long error, DWORD size = 0);
  void Reached(THttpPhase phase) {
    FPhase = phase;
    FSignal.Set();
  }
  unsigned long Await() const;

  const TSignal FSignal{TSignal::TReset::ByWait};
  std::shared_ptr<THttpSession> FSession;
  const unsigned FTimeOut;
  std::atomic<bool> FCancelled = false;
  std::atomic<THttpPhase> FPhase = THttpPhase::Starting;
  std::atomic<bool> FCompleted = false;
  // Written before FCompleted, read after it.
  unsigned long FError = 0;
  DWORD FSize = 0;

  // A handle is closed by whoever uses it last, so that nobody waits for a use of it to end.
  std::mutex FLock;  ///< held for moments
  TOpened FOpened;
  bool FReading = false;
  bool FClosing = false;
  std::unique_ptr<char[]> FBuffer;

  std::shared_ptr<TState> FSelf;
  std::unique_ptr<TModuleHold> FHold;
};

bool THttpExchange::TState::Attach(const THttpTarget& target, const std::shared_ptr<TState>& self) {
  const auto& client = TSystemHttp::Get();
  FBuffer = std::make_unique_for_overwrite<char[]>(kBufferSize);
  TOpened opened = Open(std::move(FSession), target);
  if (!opened.Request) return false;
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

void THttpExchange::TState::Close() {
  TOpened closing;
  const std::lock_guard lock(FLock);
  FClosing = true;
  if (!FReading) closing = std::move(FOpened);
}

unsigned long THttpExchange::TState::Await() const {
  while (!FCompleted) {
    if (FCancelled) return ERROR_WINHTTP_OPERATION_CANCELLED;
    // Each sign of life gives the step its full time again.
    if (!FSignal.Wait(FTimeOut) && !FCompleted) return THttpError::TimedOut;
  }
  return FCancelled ? ERROR_WINHTTP_OPERATION_CANCELLED : FError;
}

unsigned long THttpExchange::TState::ReadHeader(std::string& header) const {
  const auto query = [&](wchar_t* text, DWORD& size) {
    return TSystemHttp::Get().QueryHeaders(Request(), WINHTTP_QUERY_RAW_HEADERS_CRLF,
                                           WINHTTP_HEADER_NAME_BY_INDEX, text, &size,
                                           WINHTTP_NO_HEADER_INDEX);
  };
  DWORD size = 0;
  query(nullptr, size);
  if (GetLastError() != ERROR_INSUFFICIENT_BUFFER) return THttpError::BadAnswer;
  // Not all versions of the system hold to the limit asked for.
  if (size > kLargestHeader * sizeof(wchar_t)) return ERROR_WINHTTP_HEADER_SIZE_OVERFLOW;
  std::wstring text(size / sizeof(wchar_t) + 1, L'\0');
  size = static_cast<DWORD>(text.size() * sizeof(wchar_t));
  if (!query(text.data(), size)) return LastHttpFailure();
  text.resize(std::min<std::size_t>(text.size(), size / sizeof(wchar_t)));
  header = ToAnsi(text);
  return 0;
}

void CALLBACK THttpExchange::TState::Report(HINTERNET, DWORD_PTR context, DWORD status, void* info,
                                            DWORD size) {
  auto* state = reinterpret_cast<TState*>(context);
  if (!state) return;
  if (status == WINHTTP_CALLBACK_STATUS_HANDLE_CLOSING) {
    // The last report: with it goes what was kept for the system's sake.
    const auto hold = std::move(state->FHold);
    const auto last = std::move(state->FSelf);
  } else {
    state->Reported(status, info, size);
  }
}

void THttpExchange::TState::Reported(DWORD status, const void* info, DWORD size) {
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
    case WINHTTP_CALLBACK_STATUS_SENDREQUEST_COMPLETE:
    case WINHTTP_CALLBACK_STATUS_HEADERS_AVAILABLE:
      return Completed(0);
    case WINHTTP_CALLBACK_STATUS_DATA_AVAILABLE:
      return DataAvailable(*static_cast<const DWORD*>(info));
    case WINHTTP_CALLBACK_STATUS_READ_COMPLETE:
      return size <= kBufferSize ? Completed(0, size) : Completed(THttpError::BadAnswer);
    case WINHTTP_CALLBACK_STATUS_REQUEST_ERROR:
      return Completed(static_cast<const WINHTTP_ASYNC_RESULT*>(info)->dwError);
    default:
      return;
  }
}

void THttpExchange::TState::DataAvailable(DWORD size) {
  if (size == 0) return Completed(0);
  if (size > kMostAvailable) return Completed(THttpError::BadAnswer);
  // Reading what is there from here, and not from the making thread, saves waking it twice.
  {
    const std::lock_guard lock(FLock);
    if (FClosing) return;
    FReading = true;
  }
  if (!TSystemHttp::Get().ReadData(Request(), FBuffer.get(), std::min(size, kBufferSize),
                                   nullptr)) {
    Completed(LastHttpFailure());
  }
  TOpened closing;
  const std::lock_guard lock(FLock);
  FReading = false;
  if (FClosing) closing = std::move(FOpened);
}

void THttpExchange::TState::Completed(unsigned long error, DWORD size) {
  FError = error;
  FSize = size;
  FCompleted = true;
  FSignal.Set();
}

// ---- the exchange ----

THttpExchange::THttpExchange(std::shared_ptr<THttpSession> session, unsigned timeOut)
    : FState(std::make_shared<TState>(std::move(session), timeOut)) {}

THttpExchange::~THttpExchange() { FState->Close(); }

void THttpExchange::Cancel() { FState->Cancel(); }

THttpPhase THttpExchange::Phase() const { return FState->Phase(); }

unsigned long THttpExchange::Ask(const THttpTarget& target, std::string& header) {
  const auto& client = TSystemHttp::Get();
  if (!FState->Attach(target, FState)) return LastHttpFailure();
  const HINTERNET request = FState->Request();
  if (const auto error = FState->Step([&] {
        return client.SendRequest(request, WINHTTP_NO_ADDITIONAL_HEADERS, 0,
                                  WINHTTP_NO_REQUEST_DATA, 0, 0,
                                  reinterpret_cast<DWORD_PTR>(FState.get()));
      })) {
    return error;
  }
  if (const auto error = FState->Step([&] { return client.ReceiveResponse(request, nullptr); })) {
    return error;
  }
  return FState->ReadHeader(header);
}

unsigned long THttpExchange::Receive(std::span<const char>& data) {
  const auto error = FState->Step(
      [&] { return TSystemHttp::Get().QueryDataAvailable(FState->Request(), nullptr); });
  if (!error) data = FState->Data();
  return error;
}
