#include "outside/situations.h"

#include <commctrl.h>

#include <algorithm>

#include "user/items.h"
#include "user/say.h"
#include "user/watchdog.h"

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

}  // namespace

// ---- the pilot ----

TPilot* TPilot::Current = nullptr;
int TPilot::Patience = TPilot::Usual;

TPilot::TPilot(std::vector<TStep> steps)
    : FOuter(std::exchange(Current, this)),
      FSteps(std::move(steps)),
      FDeadline(GetTickCount64() + static_cast<ULONGLONG>(Patience)),
      FTimer(SetTimer(nullptr, 0, TickMs, Tick)) {
  std::erase_if(FOld, std::not_fn(Shown));
}

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
    for (const TAct& act : self->FSteps[self->FNext++].Acts) act(form);
  }
}

void TPilot::Leave() {
  const HWND dialog = Find();
  if (!dialog || std::ranges::count(FOld, dialog)) return;
  if (ClassOf(dialog) != "#32770") return void(PostMessageW(dialog, WM_CLOSE, 0, 0));
  for (const int id : {IDCANCEL, IDNO, IDOK})
    if (GetDlgItem(dialog, id))
      return void(PostMessageW(dialog, WM_COMMAND, static_cast<WPARAM>(id), 0));
}

TPilot::TAct Selects(const char* list, const std::string& item) {
  return [=](HWND form) {
    const HWND control = ControlNamed(form, list);
    SendMessageW(control, LB_SETCURSEL, static_cast<WPARAM>(IndexOfItem(control, item)), 0);
    SendMessageW(form, WM_COMMAND, MAKEWPARAM(GetDlgCtrlID(control), LBN_SELCHANGE),
                 reinterpret_cast<LPARAM>(control));
  };
}

TPilot::TAct SelectsRow(const char* listView, int index) {
  return [=](HWND form) {
    LVITEMW item{};
    item.state = item.stateMask = LVIS_SELECTED | LVIS_FOCUSED;
    SendMessageW(ControlNamed(form, listView), LVM_SETITEMSTATE, static_cast<WPARAM>(index),
                 reinterpret_cast<LPARAM>(&item));
  };
}

TPilot::TAct Fills(const char* edit, const std::string& text) {
  return [=](HWND form) { SetWindowTextW(ControlNamed(form, edit), Wide(text).c_str()); };
}

TPilot::TAct Clicks(const char* button) {
  return [=](HWND form) { PostMessageW(ControlNamed(form, button), BM_CLICK, 0, 0); };
}

// ---- the calls ----

std::string TSituations::Base() { return Say(Library->VCLInvokeModalDialog(nullptr) & 0xFF); }

std::string TSituations::Assistant() {
  const char* result = nullptr;
  int cursor = 3;
  Library->VCLSyntaxHelpBox("c.Ajouter 1, 2", &cursor, &result, "c=Compte");
  return Say(result ? result : None, ' ', cursor);
}

std::string TSituations::Picker() { return TextFrom(Library->VCLSyntaxConstHelpBox, "Gras"); }
std::string TSituations::Editor() { return TextFrom(Library->VCLSyntaxTypesBox, "c=Cpt,d=Cpt"); }

std::string TSituations::Directories() {
  unsigned char cancelled = 9;
  const int changed = Library->VCLSelectDirList("", static_cast<unsigned char>(1), &cancelled);
  return Say(changed, int{cancelled});
}

std::string TSituations::Filter() {
  return FilterFrom(*Library, {"Virement", "CB/Chq"}, {"Visa"}, "Virement");
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
  ZefDialog view = nullptr;
  const HWND frame = CreateWindowExW(0, L"STATIC", L"", WS_CHILD | WS_VISIBLE, 0, 0, 300, 200,
                                     Owner, nullptr, nullptr, nullptr);
  Library->CreateExampleView(frame, nullptr, &view);
  Library->VCLDialogShow(view);
  TPilot::Serve();
  DestroyWindow(frame);
  return Library ? Say(Library->VCLDialogHasChanged(view)) : "";
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

static void OpensMethods(HWND form) {
  const HWND box = ControlNamed(form, "BoxMethod");
  SendMessageW(box, CB_SHOWDROPDOWN, TRUE, 0);
  SendMessageW(box, CB_SETCURSEL, 1, 0);
}

const std::vector<TSituations::TSituation> TSituations::Situations = [] {
  const TCall assistant{&TSituations::Assistant, "c.Ajouter 1, 2 3"};
  const TCall directories{&TSituations::Directories, "01"};
  const auto modeless = TKind::Modeless;
  return std::vector<TSituation>{
      {{&TSituations::Base, "0", TKind::Modal}, "base", "TDlgBase"},
      {assistant, "assistant", "TDlgSyntax"},
      {assistant, "its list open", "TDlgSyntax", {{"TDlgSyntax", {OpensMethods}}}},
      {assistant,
       "picker over it",
       "TDlgSyntaxConst",
       {{"TDlgSyntax", {SelectsRow("ListParam", 1), Clicks("ButValue")}}}},
      {assistant,
       "assistant over it",
       "TDlgSyntax",
       {{"TDlgSyntax", {SelectsRow("ListParam", 0), Clicks("ButRecall")}},
        {"TDlgSyntax", {Fills("EditLigne", "ZEF.F")}}}},
      {{&TSituations::Picker, "Gras"}, "picker", "TDlgSyntaxConst"},
      {{&TSituations::Editor, "c=Cpt,d=Cpt"},
       "editor",
       "TDlgSyntaxTypes",
       {{"TDlgSyntaxTypes", {Fills("EditNew", "x"), Clicks("BtnAdd")}}}},
      {directories, "directories", "TDlgDirSelect"},
      {directories, "name box", "TInputBox", {{"TDlgDirSelect", {Clicks("BtnAdd")}}}},
      {directories,
       "confirmation",
       "#32770",
       {{"TDlgDirSelect", {Selects("ListRep", "Comptes"), Clicks("BtnDel")}}}},
      {directories, "folder picker", "#32770", {{"TDlgDirSelect", {Clicks("BtnBrowse")}}}},
      {{&TSituations::Filter, "0Virement"}, "filter", "TDlgSelectTypOp"},
      {{&TSituations::Offer, "0", TKind::Modal}, "offer", "TDlgAskDwld"},
      {{&TSituations::Modeless, "0", modeless}, "modeless", "TDlgBase"},
      {{&TSituations::View, "0", modeless}, "view", "TExampleView"},
      {{&TSituations::Traces, "", modeless}, "traces", "TDlgDebug"},
      {{&TSituations::Download, "1", modeless}, "download", "TDlgDwnld"},
  };
}();

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
  SetFocus(Edit = HostEdit(Owner));
  Library->VCLSetMainWindowHandle(Owner);
}

std::string TSituations::Run(const TSituation& situation, const TPilot::TAct& last) {
  auto steps = situation.Steps;
  steps.push_back({situation.Top, {}});
  if (last) steps.back().Acts.push_back(last);
  const TPilot pilot(std::move(steps));
  TWatchdog::Allow(TestSeconds);
  return (this->*situation.Call)();
}

void TSituations::ExpectNothingLeft() {
  const HWND left = TPilot::Find();
  EXPECT_EQ(left, nullptr) << ClassOf(left);
  EXPECT_TRUE(IsWindowEnabled(MainWindow));
  EXPECT_TRUE(!IsWindow(Owner) || IsWindowEnabled(Owner));
  {
    const THostDownload download(*Library);
    EXPECT_NE(FindWindowA("TDlgDwnld", nullptr), nullptr);
  }
  // Put off as long as a call is on some stack.
  EXPECT_EQ(FindWindowA("TDlgDwnld", nullptr), nullptr);
}
