#include <cstdlib>
#include <cstring>
#include <random>
#include <set>
#include <tuple>

#include "outside/situations.h"
#include "user/say.h"
#include "user/watchdog.h"

namespace {

ULONG_PTR Number(const void* handle) { return reinterpret_cast<ULONG_PTR>(handle); }

const char* Calling = "";

/// The one exception that is documented is taken note of, and the call goes on behind it.
LONG CALLBACK HearException(EXCEPTION_POINTERS* exception) {
  const DWORD code = exception->ExceptionRecord->ExceptionCode;
  if (code == EXCEPTION_ARRAY_BOUNDS_EXCEEDED) return EXCEPTION_CONTINUE_EXECUTION;
  if (code == EXCEPTION_ACCESS_VIOLATION) std::printf("access violation in %s\n", Calling);
  return EXCEPTION_CONTINUE_SEARCH;
}

}  // namespace

/// Every export called with whatever a host may get wrong. Some 20,000 calls; the variable
/// ZEF_CALLS asks for another number (1000000 is the full one).
class Boundary : public TSituations {
 protected:
  static constexpr size_t MostText = 1 << 20;
  static constexpr size_t Room = 1 << 12;
  static constexpr size_t Edges = 8;
  static constexpr int Rubbish = 0x5A;
  static constexpr size_t MostAlive = 30;

  Boundary() {
    for (size_t edge = 0; edge < Edges; ++edge)
      VirtualAlloc(FEdges + edge * 2 * Room, Room, MEM_COMMIT, PAGE_READWRITE);
  }
  ~Boundary() override { VirtualFree(FEdges, 0, MEM_RELEASE); }

  // ---- what goes in ----

  size_t Below(size_t limit) { return FRandom() % limit; }
  template <class T, size_t Count>
  T OneOf(const T (&values)[Count]) {
    return values[Below(Count)];
  }
  /// Memory that ends where none may be touched.
  char* AtEdge(size_t size) { return FEdges + (FNextEdge++ % Edges * 2 + 1) * Room - size; }

  const char* MakeText() {
    const char* const words[] = {"",          "ZEF.Nom",        ".Ajouter", "a=b,c=d",  "\"\"\"",
                                 "Gras+Gras", "c.Ajouter(1, 2", "Comptes",  "Virement", "x.y.z."};
    const size_t kind = Below(20);
    if (kind == 0) return nullptr;
    const bool isLong = Below(4000) == 0;
    std::string& text = isLong ? FLong : FText;
    text = OneOf(words);
    if (isLong || kind >= 8) {
      text.resize(isLong ? MostText - Below(3) : Below(kind == 8 ? Room - 1 : 40));
      for (char& letter : text) letter = static_cast<char>(1 + Below(255));
    }
    return isLong ? text.c_str() : std::strcpy(AtEdge(text.size() + 1), text.c_str());
  }
  template <class T>
  T MakeHandle() {
    if constexpr (!std::is_same_v<T, HWND>) {
      const std::set<T>& given = Given<T>();
      if (!given.empty() && Below(3))
        return *std::next(given.begin(), static_cast<int>(Below(given.size())));
    }
    const ULONG_PTR own = Number(this);
    const ULONG_PTR odd[] = {
        0, 1, 3, 8, 0x7FFFFFFF, 0xFFFFFFFF, own, own + 1, Number(MainWindow), FRandom(), FLast};
    return reinterpret_cast<T>(OneOf(odd));
  }
  template <class T>
  T Make() {
    using TTarget = std::remove_pointer_t<T>;
    if constexpr (std::is_same_v<T, const char*>) {
      return MakeText();
    } else if constexpr (std::is_same_v<T, char*>) {
      return Below(10) ? AtEdge(FSize) : nullptr;
    } else if constexpr (std::is_same_v<T, HWND>) {
      const HWND windows[] = {nullptr,        Owner,        MainWindow,
                              HWND_BROADCAST, HWND_MESSAGE, GetDesktopWindow()};
      return Below(3) ? OneOf(windows) : MakeHandle<HWND>();
    } else if constexpr (std::is_void_v<TTarget>) {
      return Below(2) ? static_cast<void*>(Make<HWND>()) : MakeHandle<ZefDialog>();
    } else if constexpr (std::is_class_v<TTarget>) {
      return MakeHandle<T>();
    } else if constexpr (std::is_pointer_v<T>) {
      // Holds rubbish; at the edge, or misaligned.
      char* const out = AtEdge(sizeof(TTarget) + Below(2));
      std::memset(out, Rubbish, sizeof(TTarget));
      return Below(10) ? reinterpret_cast<T>(out) : nullptr;
    } else if constexpr (std::is_same_v<T, int>) {
      const int extremes[] = {0, 1, -1, INT_MAX, INT_MIN, static_cast<int>(FRandom())};
      return Below(2) ? OneOf(extremes) : static_cast<int>(Below(50));
    } else {
      return static_cast<T>(Below(sizeof(T) > 1 ? FSize + 1 : Below(4) ? 12 : 256));
    }
  }

  // ---- what comes out ----

  /// The handles of a kind that were given out; dialogs, gone by now or not.
  template <class T>
  std::set<T>& Given() {
    return std::get<std::set<T>>(FGiven);
  }
  /// Texts and handles that come out are never what stood there before.
  template <class T>
  void Check(const T&) {}
  template <class T>
  void Check(T** const& out) {
    if (!out) return;
    T *value = nullptr, *rubbish = nullptr;
    std::memcpy(&value, out, sizeof value);
    std::memset(&rubbish, Rubbish, sizeof rubbish);
    EXPECT_NE(value, rubbish) << Calling;
    if constexpr (!std::is_same_v<T, const char>) {
      if (!value) return;
      FLast = Number(value);
      constexpr bool comesBack = !std::is_same_v<T*, ZefDialog>;
      EXPECT_TRUE(Given<T*>().insert(value).second || comesBack) << Calling;
    }
  }
  /// What is given no handle of its own kind says so.
  template <class T>
  void CheckRefused(int, const T&) {}
  void CheckRefused(int result, ZefStringList list) {
    EXPECT_TRUE(result == -1 || Given<ZefStringList>().contains(list)) << Calling;
  }
  void CheckRefused(int result, ZefDialog dialog) {
    const bool makes = std::string_view(Calling) == "VCLNewURL";
    EXPECT_TRUE(makes || (result & 0xFF) == 0 || Given<ZefDialog>().contains(dialog)) << Calling;
  }
  template <class TResult, class... TArguments>
  void Call(TResult(WINAPI* function)(TArguments...)) {
    FSize = 33 + Below(1000);
    const std::tuple<TArguments...> arguments{Make<TArguments>()...};
    if constexpr (std::is_same_v<TResult, int>)
      CheckRefused(std::apply(function, arguments), std::get<0>(arguments));
    else
      std::apply(function, arguments);
    std::apply([this](const auto&... each) { (Check(each), ...); }, arguments);
  }
  /// What was freed is stale, and the number of those alive stays small.
  template <class T, class TFree>
  void FreeAll(const TFree& free, const char* one) {
    if (Given<T>().size() <= MostAlive && std::strcmp(Calling, one) != 0) return;
    for (const T each : Given<T>()) free(each);
    Given<T>().clear();
  }

  /// What goes in comes out, byte for byte, in whatever code page.
  void CheckTexts() {
    const THostString in(*Library, MakeText());
    const std::string text = in.Text();
    const THostList list(*Library, {"", text}), copy(*Library);
    const THostString out(*Library, "before");
    Library->VCLStringListGet(list.Handle(), 1, out.Handle());
    EXPECT_EQ(out.Text(), text.empty() ? "before" : text);
    if (text.size() > Room) return;
    copy.SetCommaText(list.CommaText());
    EXPECT_EQ(copy.CommaText(), list.CommaText());
    EXPECT_EQ(copy.Count(), list.Count());
    const char* line = nullptr;
    int cursor = Make<int>();
    PostQuitMessage(0);
    Library->VCLSyntaxHelpBox(text.c_str(), &cursor, &line, in.Characters());
    EXPECT_EQ(std::string(line), text) << "cancelled";
  }

 private:
  std::mt19937 FRandom{20110211};
  char* const FEdges =
      static_cast<char*>(VirtualAlloc(nullptr, 2 * Edges * Room, MEM_RESERVE, PAGE_NOACCESS));
  size_t FNextEdge = 0;
  size_t FSize = 0;  ///< of the next buffer
  std::string FText, FLong;
  std::tuple<std::set<ZefString>, std::set<ZefStringList>, std::set<ZefDialog>> FGiven;
  ULONG_PTR FLast = 0;  ///< the last handle given out, of whatever kind
};

TEST_F(Boundary, TakesWhateverAHostGetsWrong) {
  const struct {
    const char* Name;
    std::function<void()> Call;
  } exports[] = {
#define ZEF_CALL(result, name, ...) {#name, [&] { Call(Library->name); }},
      ZEFEXT_FUNCTIONS(ZEF_CALL) ZEFEXT_DECORATED_FUNCTIONS(ZEF_CALL)
#undef ZEF_CALL
  };
  // What makes windows or runs a dialog takes a thousand times as long as the others.
  const std::string_view slow =
      "VCLFree VCLInvokeModalDialog VCLInvokeNonModalDialog VCLDialogShow VCLShowHint "
      "VCLShowDebugText VCLSyntaxHelpBox VCLSelectDirList VCLSyntaxTypesBox VCLSyntaxConstHelpBox "
      "VCLSelectTypOp VCLAskForDownload VCLNewURL VCLCmdURL SetRegConf CreateExampleView ";
  constexpr int SlowOne = 60;
  const char* wanted = std::getenv("ZEF_CALLS");
  const int calls = wanted ? std::atoi(wanted) : 20000;
  TWatchdog::Allow(TestSeconds + calls / 100);
  void* handler = AddVectoredExceptionHandler(1, HearException);
  MSG message;
  for (int done = 0; done < calls && !HasFailure();) {
    const auto& chosen = exports[Below(std::size(exports))];
    const bool isSlow = slow.find(Say(chosen.Name, ' ')) != slow.npos;
    if (isSlow && Below(SlowOne)) continue;
    // Whatever dialog comes up is left at once.
    if (isSlow) PostQuitMessage(0);
    Calling = chosen.Name;
    chosen.Call();
    while (isSlow && PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
      if (message.message != WM_QUIT) DispatchMessageW(&message);
    }
    FreeAll<ZefString>(Library->VCLAnsiStringFree, "VCLAnsiStringFree");
    FreeAll<ZefStringList>(Library->VCLStringListFree, "VCLStringListFree");
    FreeAll<ZefDialog>(Library->VCLFreeNonModalDialog, "");
    if (done++ % 5000 == 0) CheckTexts();
  }
  RemoveVectoredExceptionHandler(handler);
  Library->VCLSetMainWindowHandle(Owner);
  Library->VCLFree();
  while (PeekMessageW(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE)) {
  }
}
