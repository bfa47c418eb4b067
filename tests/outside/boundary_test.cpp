#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <random>
#include <tuple>

#include "outside/situations.h"
#include "outside/watchdog.h"
#include "user/say.h"

/// Every export called with whatever a host may get wrong. Some 20,000 calls; the variable
/// ZEF_CALLS asks for another number (1000000 is the full one).
class Boundary : public TSituations {
 protected:
  static constexpr ULONG_PTR Rubbish = 0x5A5A5A5A;
  static constexpr size_t MostText = 1 << 20;
  static constexpr size_t Room = 1 << 12;

  /// Memory that ends where none may be touched.
  struct TEdge {
    char* End;
    TEdge() {
      auto* start = static_cast<char*>(VirtualAlloc(nullptr, Room * 2, MEM_COMMIT, PAGE_READWRITE));
      DWORD before = 0;
      VirtualProtect(start + Room, Room, PAGE_NOACCESS, &before);
      End = start + Room;
    }
    TEdge(const TEdge&) = delete;
    TEdge& operator=(const TEdge&) = delete;
    ~TEdge() { VirtualFree(End - Room, 0, MEM_RELEASE); }
  };

  size_t Below(size_t limit) { return FRandom() % limit; }
  template <class T, size_t Count>
  T OneOf(const T (&values)[Count]) {
    return values[Below(Count)];
  }
  char* AtEdge(size_t size) { return FEdges[FNextEdge++ % FEdges.size()].End - size; }

  template <class T>
  T Make();
  template <class T>
  T MakeHandle(const std::set<ULONG_PTR>& live);
  /// An out-argument that holds rubbish; at the edge, or misaligned.
  template <class T>
  T* MakeOut() {
    if (Below(10) == 0) return nullptr;
    auto* out = AtEdge(sizeof(T) + Below(2));
    std::memset(out, 0x5A, sizeof(T));
    return reinterpret_cast<T*>(out);
  }
  const char* MakeText();

  template <class TResult, class... TArguments>
  void Call(const TExport<TResult(WINAPI*)(TArguments...)>& function);
  template <class T>
  void Check(const T& argument);
  template <class TResult, class TFirst>
  void CheckRefused(TResult result, TFirst handle);
  void CallOne(size_t index);
  void CheckTexts();

  std::mt19937 FRandom{20110211};
  std::array<TEdge, 8> FEdges;
  size_t FNextEdge = 0;
  size_t FSize = 0;  ///< of the next buffer
  std::string FLong;
  std::set<ULONG_PTR> FStrings;
  std::set<ULONG_PTR> FLists;
  std::set<ULONG_PTR> FDialogs;  ///< that were given out, gone by now or not
};

namespace {

template <class T>
ULONG_PTR Number(T handle) {
  return reinterpret_cast<ULONG_PTR>(handle);
}

const char* Calling = "";

/// The one exception that is documented is taken note of, and the call goes on behind it.
LONG CALLBACK HearException(EXCEPTION_POINTERS* exception) {
  const DWORD code = exception->ExceptionRecord->ExceptionCode;
  if (code == EXCEPTION_ARRAY_BOUNDS_EXCEEDED) return EXCEPTION_CONTINUE_EXECUTION;
  if (code == EXCEPTION_ACCESS_VIOLATION) std::printf("access violation in %s\n", Calling);
  return EXCEPTION_CONTINUE_SEARCH;
}

}  // namespace

const char* Boundary::MakeText() {
  const char* const words[] = {"",          "ZEF.Nom",        ".Ajouter", "a=b,c=d",  "\"\"\"",
                               "Gras+Gras", "c.Ajouter(1, 2", "Comptes",  "Virement", "x.y.z."};
  const size_t kind = Below(20);
  if (kind == 0) return nullptr;
  if (Below(4000) == 0) {
    for (char& letter : FLong) letter = static_cast<char>(1 + Below(255));
    FLong.resize(MostText - Below(3), ',');
    return FLong.c_str();
  }
  const std::string word = OneOf(words);
  const size_t length = kind < 8 ? word.size() : Below(kind == 8 ? Room - 1 : 40);
  char* text = AtEdge(length + 1);
  for (size_t i = 0; i < length; ++i)
    text[i] = kind < 8 ? word[i] : static_cast<char>(1 + Below(255));
  text[length] = '\0';
  return text;
}

template <class T>
T Boundary::MakeHandle(const std::set<ULONG_PTR>& live) {
  const ULONG_PTR odd[] = {0,
                           1,
                           3,
                           8,
                           0x7FFFFFFF,
                           0xFFFFFFFF,
                           Number(this),
                           Number(this) + 1,
                           Number(MainWindow),
                           FRandom(),
                           FStrings.empty() ? 0 : *FStrings.begin(),
                           FLists.empty() ? 0 : *FLists.begin()};
  if (live.empty() || Below(3) == 0) return reinterpret_cast<T>(OneOf(odd));
  return reinterpret_cast<T>(*std::next(live.begin(), static_cast<int>(Below(live.size()))));
}

template <class T>
T Boundary::Make() {
  if constexpr (std::is_same_v<T, const char*>) return MakeText();
  if constexpr (std::is_same_v<T, ZefString>) return MakeHandle<T>(FStrings);
  if constexpr (std::is_same_v<T, ZefStringList>) return MakeHandle<T>(FLists);
  if constexpr (std::is_same_v<T, ZefDialog> || std::is_same_v<T, void*>)
    return static_cast<T>(MakeHandle<ZefDialog>(FDialogs));
  if constexpr (std::is_same_v<T, HWND>) {
    const HWND windows[] = {nullptr,        Owner,        MainWindow,
                            HWND_BROADCAST, HWND_MESSAGE, GetDesktopWindow()};
    return Below(3) ? OneOf(windows) : MakeHandle<HWND>({});
  }
  if constexpr (std::is_same_v<T, int>) {
    const int extremes[] = {0, 1, -1, INT_MAX, INT_MIN, static_cast<int>(FRandom())};
    return Below(2) ? OneOf(extremes) : static_cast<int>(Below(50));
  }
  if constexpr (std::is_same_v<T, unsigned long>) return static_cast<T>(Below(FSize + 1));
  if constexpr (std::is_same_v<T, signed char> || std::is_same_v<T, unsigned char>)
    return static_cast<T>(Below(Below(4) ? 12 : 256));
  if constexpr (std::is_same_v<T, char*>) return Below(10) ? AtEdge(FSize) : nullptr;
  if constexpr (std::is_pointer_v<T> && !std::is_same_v<T, char*>) {
    using TTarget = std::remove_pointer_t<T>;
    if constexpr (std::is_pointer_v<TTarget> || std::is_integral_v<TTarget>)
      if constexpr (!std::is_const_v<TTarget>) return MakeOut<TTarget>();
  }
}

/// Texts and handles that come out are never what stood there before.
template <class T>
void Boundary::Check(const T& argument) {
  if constexpr (std::is_pointer_v<T>) {
    using TTarget = std::remove_pointer_t<T>;
    if constexpr (std::is_pointer_v<TTarget>) {
      if (!argument) return;
      TTarget value;
      std::memcpy(&value, argument, sizeof value);
      EXPECT_NE(Number(value), Rubbish) << Calling;
      bool fresh = true;
      if (!value) return;
      if constexpr (std::is_same_v<TTarget, ZefString>) FStrings.insert(Number(value));
      if constexpr (std::is_same_v<TTarget, ZefStringList>) FLists.insert(Number(value));
      if constexpr (std::is_same_v<TTarget, ZefDialog> || std::is_same_v<TTarget, void*>) {
        fresh = FDialogs.insert(Number(value)).second;
      }
      EXPECT_TRUE(fresh) << "a handle comes back";
    }
  }
}

template <class TResult, class TFirst>
void Boundary::CheckRefused(TResult result, TFirst handle) {
  if constexpr (std::is_same_v<TFirst, ZefStringList> && std::is_same_v<TResult, int>) {
    EXPECT_TRUE(result == -1 || FLists.contains(Number(handle))) << Calling;
  }
  if constexpr (std::is_same_v<TFirst, ZefDialog> && std::is_same_v<TResult, int>) {
    const bool makes = std::string_view(Calling) == "VCLNewURL";
    EXPECT_TRUE(makes || (result & 0xFF) == 0 || FDialogs.contains(Number(handle))) << Calling;
  }
}

template <class TResult, class... TArguments>
void Boundary::Call(const TExport<TResult(WINAPI*)(TArguments...)>& function) {
  FSize = 33 + Below(1000);
  const std::tuple<TArguments...> arguments{Make<TArguments>()...};
  if constexpr (std::is_void_v<TResult>) {
    std::apply(function, arguments);
  } else {
    const TResult result = std::apply(function, arguments);
    if constexpr (sizeof...(TArguments) > 0) CheckRefused(result, std::get<0>(arguments));
  }
  std::apply([this](const auto&... each) { (Check(each), ...); }, arguments);
}

/// What goes in comes out, byte for byte, in whatever code page.
void Boundary::CheckTexts() {
  const THostString in(*Library, MakeText());
  THostList list(*Library);
  const std::string text = in.Text();
  list.Add("");
  EXPECT_EQ(list.Add(text), text.empty() ? 0 : 1);
  const THostString out(*Library, "before");
  Library->VCLStringListGet(list.Handle(), 1, out.Handle());
  EXPECT_EQ(out.Text(), text.empty() ? "before" : text);
  if (text.size() > Room) return;
  THostList copy(*Library);
  copy.SetCommaText(list.CommaText());
  EXPECT_EQ(copy.CommaText(), list.CommaText());
  EXPECT_EQ(copy.Count(), list.Count());
  const char* line = nullptr;
  int cursor = Make<int>();
  PostQuitMessage(0);
  Library->VCLSyntaxHelpBox(text.c_str(), &cursor, &line, in.Characters());
  EXPECT_EQ(std::string(line), text) << "cancelled";
}

void Boundary::CallOne(size_t index) {
  const auto is = [](const char* name) { return !std::strcmp(Calling, name); };
  size_t at = 0;
#define ZEF_CALL(result, name, parameters) \
  if (at++ == index) {                     \
    Calling = #name;                       \
    Call(Library->name);                   \
  }
  ZEFEXT_FUNCTIONS(ZEF_CALL)
#undef ZEF_CALL
  if (at++ == index) {
    Calling = "CreateExampleView";
    Call(Library->CreateExampleView);
  }
  // What was freed is stale, and the number of those alive stays small.
  if (is("VCLAnsiStringFree") || FStrings.size() > 30) {
    for (const ULONG_PTR each : FStrings)
      Library->VCLAnsiStringFree(reinterpret_cast<ZefString>(each));
    FStrings.clear();
  }
  if (is("VCLStringListFree") || FLists.size() > 30) {
    for (const ULONG_PTR each : FLists)
      Library->VCLStringListFree(reinterpret_cast<ZefStringList>(each));
    FLists.clear();
  }
}

TEST_F(Boundary, TakesWhateverAHostGetsWrong) {
  // What makes windows or runs a dialog takes a thousand times as long as the others.
  static const std::set<std::string_view> Slow{"VCLFree",
                                               "VCLInvokeModalDialog",
                                               "VCLInvokeNonModalDialog",
                                               "VCLDialogShow",
                                               "VCLShowHint",
                                               "VCLShowDebugText",
                                               "VCLSyntaxHelpBox",
                                               "VCLSelectDirList",
                                               "VCLSyntaxTypesBox",
                                               "VCLSyntaxConstHelpBox",
                                               "VCLSelectTypOp",
                                               "VCLAskForDownload",
                                               "VCLNewURL",
                                               "VCLCmdURL",
                                               "SetRegConf"};
  constexpr int SlowOne = 60;
  std::vector<bool> slow;
#define ZEF_CALL(result, name, parameters) slow.push_back(Slow.contains(#name));
  ZEFEXT_FUNCTIONS(ZEF_CALL)
#undef ZEF_CALL
  slow.push_back(true);
  const char* wanted = std::getenv("ZEF_CALLS");
  const int calls = wanted ? std::atoi(wanted) : 20000;
  TWatchdog::Allow(180 + calls / 300);
  void* handler = AddVectoredExceptionHandler(1, HearException);
  MSG message;
  for (int done = 0; done < calls && !HasFailure(); ++done) {
    size_t index = Below(slow.size());
    while (slow[index] && Below(SlowOne)) index = Below(slow.size());
    // Whatever dialog comes up is left at once.
    if (slow[index]) PostQuitMessage(0);
    CallOne(index);
    while (slow[index] && PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
      if (message.message != WM_QUIT) DispatchMessageW(&message);
    }
    if (done % 5000 == 0) CheckTexts();
    if (FDialogs.size() > 30) {
      for (const ULONG_PTR each : FDialogs)
        Library->VCLFreeNonModalDialog(reinterpret_cast<ZefDialog>(each));
      FDialogs.clear();
    }
  }
  RemoveVectoredExceptionHandler(handler);
  Library->VCLSetMainWindowHandle(Owner);
  Library->VCLFree();
  while (PeekMessageW(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE)) {
  }
}
