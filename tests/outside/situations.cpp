#include "outside/situations.h"

#include <commctrl.h>

#include "outside/watchdog.h"
#include "user/say.h"

namespace {
constexpr UINT TickMs = 10;

constexpr char SomeWords[] =
    "<objects><object name=\"Compte\"><method name=\"Ajouter\"><param name=\"montant\"/>"
    "<oparam name=\"style\" type=\"Integer\" list=\"Styles\" def=\"Gras\"/></method>"
    "<method name=\"Fermer\"/></object><type name=\"Cpt\"/><const name=\"ZEF\" type=\"Compte\"/>"
    "<list name=\"Styles\" flag=\"add\" type=\"Integer\"><listconst name=\"Gras\"/>"
    "<listconst name=\"Italique\"/></list></objects>";

bool MayBeLeft(HWND window) {
  const std::string name = ClassOf(window);
  return name == "#32770" || name.starts_with("TDlg") || name == "TInputBox";
}

void SelectRow(HWND form, const char* name, int index) {
  LVITEMW item{};
  item.state = item.stateMask = LVIS_SELECTED | LVIS_FOCUSED;
  SendMessageW(ControlOf(form, name), LVM_SETITEMSTATE, static_cast<WPARAM>(index),
               reinterpret_cast<LPARAM>(&item));
}
}  // namespace

// ---- the pilot ----

TPilot* TPilot::Current = nullptr;
int TPilot::Patience = TPilot::Usual;

TPilot::TPilot(std::vector<TStep> steps)
    : FOuter(std::exchange(Current, this)),
      FSteps(std::move(steps)),
      FDeadline(GetTickCount64() + static_cast<ULONGLONG>(Patience)),
      FTimer(SetTimer(nullptr, 0, TickMs, Tick)) {}

TPilot::~TPilot() {
  KillTimer(nullptr, FTimer);
  Current = FOuter;
}

HWND TPilot::Find(const char* form) {
  for (const HWND top : TopWindows(GetCurrentProcessId())) {
    if (!Shown(top) || !IsWindowEnabled(top)) continue;
    if (form ? ClassOf(top) == form : MayBeLeft(top)) return top;
    for (const HWND child : Descendants(top))
      if (form && ClassOf(child) == form && Shown(child)) return child;
  }
  return nullptr;
}

void TPilot::KeepOld() {
  for (const HWND window : TopWindows(GetCurrentProcessId())) Current->FOld.insert(window);
}

void TPilot::Serve() {
  MSG message;
  while (Current->FNext < Current->FSteps.size() && GetMessageW(&message, nullptr, 0, 0) > 0) {
    TranslateMessage(&message);
    DispatchMessageW(&message);
  }
}

void CALLBACK TPilot::Tick(HWND, UINT, UINT_PTR timer, DWORD) {
  TPilot* const self = Current;
  if (!self || timer != self->FTimer) return;
  const bool late = GetTickCount64() > self->FDeadline;
  if (late) {
    if (Patience == Usual) {
      ADD_FAILURE() << "step " << self->FNext << " waits in vain\n"
                    << WindowTree(GetCurrentProcessId());
    }
    self->FNext = self->FSteps.size();
    self->FLeaves = true;
    self->FDeadline += Usual;
  }
  if (self->FNext == self->FSteps.size()) {
    if (self->FLeaves) self->Leave();
  } else if (const HWND form = Find(self->FSteps[self->FNext].Form)) {
    self->FDeadline = GetTickCount64() + static_cast<ULONGLONG>(Patience);
    const TStep& step = self->FSteps[self->FNext++];
    if (step.Act) step.Act(form);
  }
}

void TPilot::Leave() {
  const HWND dialog = Find();
  if (!dialog || FOld.contains(dialog)) return;
  if (ClassOf(dialog) != "#32770") return void(PostMessageW(dialog, WM_CLOSE, 0, 0));
  for (const int id : {IDCANCEL, IDNO, IDOK})
    if (GetDlgItem(dialog, id))
      return void(PostMessageW(dialog, WM_COMMAND, static_cast<WPARAM>(id), 0));
}

HWND ControlOf(HWND form, const char* name) {
  for (const HWND control : Descendants(form))
    if (NameOf(control) == name) return control;
  ADD_FAILURE() << "no control " << name;
  return nullptr;
}

static void Notify(HWND form, const char* name, WORD code) {
  const HWND control = ControlOf(form, name);
  SendMessageW(form, WM_COMMAND, MAKEWPARAM(GetDlgCtrlID(control), code),
               reinterpret_cast<LPARAM>(control));
}

void SelectInList(HWND form, const char* name, int index) {
  SendMessageW(ControlOf(form, name), LB_SETCURSEL, static_cast<WPARAM>(index), 0);
  Notify(form, name, LBN_SELCHANGE);
}

void ClickLater(HWND form, const char* name) {
  PostMessageW(ControlOf(form, name), BM_CLICK, 0, 0);
}

// ---- the calls ----

std::string TSituations::Base() { return Say(Library->VCLInvokeModalDialog(nullptr) & 0xFF); }

std::string TSituations::Assistant() {
  const char* result = nullptr;
  int cursor = 3;
  Library->VCLSyntaxHelpBox("c.Ajouter 1, 2", &cursor, &result, "c=Compte");
  return Say(result, ' ', cursor);
}

std::string TSituations::Picker() {
  const char* result = nullptr;
  Library->VCLSyntaxConstHelpBox("Gras", &result);
  return result;
}

std::string TSituations::Editor() {
  const char* result = nullptr;
  Library->VCLSyntaxTypesBox("c=Cpt,d=Cpt", &result);
  return result;
}

std::string TSituations::Directories() {
  unsigned char cancelled = 9;
  const int changed = Library->VCLSelectDirList("", static_cast<unsigned char>(1), &cancelled);
  return Say(changed, int{cancelled});
}

std::string TSituations::Filter() {
  const THostList types(*Library, {"Virement", "CB/Chq"});
  const THostList cards(*Library, {"Visa"});
  const THostString selection(*Library, "Virement");
  const int chosen = Library->VCLSelectTypOp(types.Handle(), cards.Handle(), selection.Handle());
  return Say(chosen, selection.Text());
}

std::string TSituations::Offer() {
  return Say(Library->VCLAskForDownload("1", "2", Server->Address("/").c_str()));
}

std::string TSituations::Modeless() {
  ZefDialog dialog = nullptr;
  Library->VCLInvokeNonModalDialog(Owner, nullptr, &dialog);
  TPilot::Serve();
  return Library ? Say(Library->VCLFreeNonModalDialog(dialog) & 0xFF) : "";
}

std::string TSituations::View() {
  void* view = nullptr;
  const HWND frame = CreateWindowExW(0, L"STATIC", L"", WS_CHILD | WS_VISIBLE, 0, 0, 300, 200,
                                     Owner, nullptr, nullptr, nullptr);
  Library->CreateExampleView(frame, nullptr, &view);
  Library->VCLDialogShow(static_cast<ZefDialog>(view));
  TPilot::Serve();
  DestroyWindow(frame);
  return Library ? Say(Library->VCLDialogHasChanged(static_cast<ZefDialog>(view))) : "";
}

std::string TSituations::Traces() {
  Library->VCLShowDebugText("trace");
  Library->VCLShowHint(Owner, "bulle", 50, 50, 0);
  TPilot::Serve();
  if (Library) Library->VCLFree();
  return {};
}

std::string TSituations::Download() {
  ZefDialog dialog = nullptr;
  Library->VCLNewURL(nullptr, nullptr, &dialog);
  const auto command = [&](int number, const char* text = nullptr) {
    return Library->VCLCmdURL(dialog, static_cast<signed char>(number), text, nullptr);
  };
  command(ZEF_DOWNLOAD_SET_ADDRESS, Server->Address("/").c_str());
  command(ZEF_DOWNLOAD_SET_FILE);
  command(ZEF_DOWNLOAD_SHOW);
  command(ZEF_DOWNLOAD_START);
  TPilot::Serve();
  return Library ? Say(command(ZEF_DOWNLOAD_DESTROY)) : "";
}

// ---- the moments ----

const std::vector<TSituations::TSituation> TSituations::Situations{
    {"base", &TSituations::Base, "0", {}, "TDlgBase", false},
    {"assistant", &TSituations::Assistant, "c.Ajouter 1, 2 3", {}, "TDlgSyntax"},
    {"assistant, its list open",
     &TSituations::Assistant,
     "c.Ajouter 1, 2 3",
     {{"TDlgSyntax",
       [](HWND form) {
         const HWND box = ControlOf(form, "BoxMethod");
         SendMessageW(box, CB_SHOWDROPDOWN, TRUE, 0);
         SendMessageW(box, CB_SETCURSEL, 1, 0);
       }}},
     "TDlgSyntax"},
    {"picker over the assistant",
     &TSituations::Assistant,
     "c.Ajouter 1, 2 3",
     {{"TDlgSyntax",
       [](HWND form) {
         SelectRow(form, "ListParam", 1);
         ClickLater(form, "ButValue");
       }}},
     "TDlgSyntaxConst"},
    {"assistant over the assistant",
     &TSituations::Assistant,
     "c.Ajouter 1, 2 3",
     {{"TDlgSyntax",
       [](HWND form) {
         SelectRow(form, "ListParam", 0);
         ClickLater(form, "ButRecall");
       }},
      {"TDlgSyntax", [](HWND form) { SetWindowTextW(ControlOf(form, "EditLigne"), L"ZEF.F"); }}},
     "TDlgSyntax"},
    {"picker", &TSituations::Picker, "Gras", {}, "TDlgSyntaxConst"},
    {"editor",
     &TSituations::Editor,
     "c=Cpt,d=Cpt",
     {{"TDlgSyntaxTypes",
       [](HWND form) {
         SetWindowTextW(ControlOf(form, "EditNew"), L"x");
         ClickLater(form, "BtnAdd");
       }}},
     "TDlgSyntaxTypes"},
    {"directories", &TSituations::Directories, "01", {}, "TDlgDirSelect"},
    {"name box",
     &TSituations::Directories,
     "01",
     {{"TDlgDirSelect", [](HWND form) { ClickLater(form, "BtnAdd"); }}},
     "TInputBox"},
    {"confirmation",
     &TSituations::Directories,
     "01",
     {{"TDlgDirSelect",
       [](HWND form) {
         SelectInList(form, "ListRep", 0);
         ClickLater(form, "BtnDel");
       }}},
     "#32770"},
    {"folder picker",
     &TSituations::Directories,
     "01",
     {{"TDlgDirSelect", [](HWND form) { ClickLater(form, "BtnBrowse"); }}},
     "#32770"},
    {"filter", &TSituations::Filter, "0Virement", {}, "TDlgSelectTypOp"},
    {"offer", &TSituations::Offer, "0", {}, "TDlgAskDwld", false},
    {"modeless", &TSituations::Modeless, "0", {}, "TDlgBase", false, false},
    {"view", &TSituations::View, "0", {}, "TExampleView", false, false},
    {"traces", &TSituations::Traces, "", {}, "TDlgDebug", false, false},
    {"download", &TSituations::Download, "1", {}, "TDlgDwnld", false, false},
};

void TSituations::SetUp() {
  TDirectoriesTest::SetUp();
  Database.emplace(SomeWords);
  Listen();
  Home = MakeDirectory("comptes", true);
  Store({{"Comptes", Home}, {"Partis", Path("partis")}});
  NewOwner();
}

void TSituations::TearDown() {
  if (Library) Library->VCLSetMainWindowHandle(MainWindow);
  DestroyWindow(Owner);
  Server.reset();
  Database.reset();
  TDirectoriesTest::TearDown();
}

void TSituations::Listen() {
  Server.emplace([](TConnection& connection) { connection.Stall(600000); });
}

void TSituations::NewOwner() {
  if (IsWindow(Owner)) DestroyWindow(Owner);
  Owner = CreateWindowExW(0, L"STATIC", L"hôte", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, 900, 600,
                          nullptr, nullptr, nullptr, nullptr);
  Library->VCLSetMainWindowHandle(Owner);
}

std::string TSituations::Run(const TSituation& situation, std::function<void(HWND)> last) {
  auto steps = situation.Steps;
  steps.push_back({situation.Top, std::move(last)});
  const TPilot pilot(std::move(steps));
  return (this->*situation.Call)();
}

void TSituations::ExpectNothingLeft() {
  const HWND left = TPilot::Find();
  EXPECT_EQ(left, nullptr) << ClassOf(left);
  EXPECT_TRUE(IsWindowEnabled(MainWindow));
  EXPECT_TRUE(!IsWindow(Owner) || IsWindowEnabled(Owner));
  // Put off as long as a call is on some stack.
  ZefDialog dialog = nullptr;
  Library->VCLNewURL(nullptr, nullptr, &dialog);
  EXPECT_NE(FindWindowA("TDlgDwnld", nullptr), nullptr);
  Library->VCLCmdURL(dialog, static_cast<signed char>(ZEF_DOWNLOAD_DESTROY), nullptr, nullptr);
  EXPECT_EQ(FindWindowA("TDlgDwnld", nullptr), nullptr);
}
