#include "main_window.h"

#include <commctrl.h>

#include <algorithm>
#include <iterator>
#include <optional>

#include "ansi.h"
#include "commands.h"
#include "first_start.h"
#include "window_place.h"

struct TMainWindow::TCommand {
  int Id;  ///< 0 for a separator
  const wchar_t* Text;
  void (TMainWindow::*Run)();
  bool OfLibrary;  ///< greyed without the library
};

struct TMainWindow::TMenu {
  const wchar_t* Text;
  std::vector<TCommand> Commands;
};

const TMainWindow::TMenu TMainWindow::Menus[5] = {
    {L"&Fichier",
     {{IDM_DIRECTORIES, L"&Répertoire des comptes…\tF4", &TMainWindow::RunDirectories, true},
      {0, nullptr, nullptr, false},
      {IDM_QUIT, L"&Quitter\tAlt+F4", &TMainWindow::Quit, false}}},
    {L"&Macro",
     {{IDM_ASSISTANT, L"&Assistant objet…\tF1", &TMainWindow::RunAssistant, true},
      {IDM_CONSTANTS, L"&Constantes…\tF2", &TMainWindow::RunConstants, true},
      {IDM_TYPES, L"&Types des variables…\tF3", &TMainWindow::RunTypes, true}}},
    {L"&Boîtes",
     {{IDM_MODAL, L"Boîte &modale…", &TMainWindow::RunModalDialog, true},
      {IDM_MODELESS, L"Boîte &non modale", &TMainWindow::OpenDialog, true},
      {IDM_VIEW, L"&Vue incorporée", &TMainWindow::OpenView, true}}},
    {L"&Outils",
     {{IDM_FILTER, L"&Filtrer par type d'opération…", &TMainWindow::FilterEntries, true},
      {IDM_TRACE, L"&Tracer les appels", &TMainWindow::SwitchTrace, true},
      {IDM_CLEAR_LOG, L"&Vider la liste des appels", &TMainWindow::ClearLog, false}}},
    {L"&Aide",
     {{IDM_FIRST_STEPS, L"&Premiers pas…", &TMainWindow::ShowFirstSteps, false},
      {IDM_UPDATE, L"&Rechercher une mise à jour", &TMainWindow::CheckForUpdate, true},
      {IDM_ABOUT, L"À &propos de ZEF…", &TMainWindow::ShowAbout, false}}},
};

namespace {

constexpr ACCEL Keys[] = {{FVIRTKEY, VK_F1, IDM_ASSISTANT},
                          {FVIRTKEY, VK_F2, IDM_CONSTANTS},
                          {FVIRTKEY, VK_F3, IDM_TYPES},
                          {FVIRTKEY, VK_F4, IDM_DIRECTORIES}};

constexpr UINT_PTR UpdateTimer = 1;
constexpr UINT UpdatePollMs = 100;

std::wstring BesideProgram(const wchar_t* name) {
  std::wstring path(32768, L'\0');
  path.resize(GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size())));
  return path.substr(0, path.find_last_of(L'\\') + 1) + name;
}

std::wstring CurrentDirectory() {
  std::wstring path(32768, L'\0');
  path.resize(GetCurrentDirectoryW(static_cast<DWORD>(path.size()), path.data()));
  return path;
}

HMENU ControlId(int id) { return reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)); }

}  // namespace

bool TMainWindow::Create(const TCommandLine& commandLine, int show) {
  FMacros = LoadMacros();
  if (!CreateHandle({ZEF_MAIN_WINDOW_CLASS, L"ZEF", WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN},
                    {CW_USEDEFAULT, CW_USEDEFAULT}, {Scale(940), Scale(660)})) {
    return false;
  }
  const int macro = std::clamp(commandLine.Script, 0, static_cast<int>(FMacros.size()) - 1);
  if (commandLine.Position) {
    FMacros[static_cast<std::size_t>(macro)].Position = *commandLine.Position;
  }
  ShowMacro(macro);
  ShowWindow(Handle(), PutBackPlace(FLibrary, Handle(), show));
  SetFocus(FEditor.Handle());
  BringOwnDirectory(FLibrary, BesideProgram(L"Comptes"));
  OpenDirectory(false);
  if (commandLine.Assist) PostMessageW(Handle(), WM_COMMAND, IDM_ASSISTANT, 0);
  return true;
}

bool TMainWindow::CreateControls() {
  NONCLIENTMETRICSW metrics = {};
  metrics.cbSize = sizeof metrics;
  SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0);
  FFont = CreateFontIndirectW(&metrics.lfMessageFont);

  FTabs =
      CreateWindowExW(0, WC_TABCONTROLW, L"", WS_CHILD | WS_VISIBLE | WS_TABSTOP | WS_CLIPSIBLINGS,
                      0, 0, 0, 0, Handle(), ControlId(IDC_TABS), nullptr, nullptr);
  FCallsLabel = CreateWindowExW(0, WC_STATICW, L"Appels de zefext.dll :", WS_CHILD | WS_VISIBLE, 0,
                                0, 0, 0, Handle(), nullptr, nullptr, nullptr);
  FCalls = CreateWindowExW(WS_EX_CLIENTEDGE, WC_EDITW, L"",
                           WS_CHILD | WS_VISIBLE | WS_TABSTOP | WS_HSCROLL | WS_VSCROLL |
                               ES_MULTILINE | ES_READONLY | ES_AUTOHSCROLL | ES_AUTOVSCROLL,
                           0, 0, 0, 0, Handle(), ControlId(IDC_LOG), nullptr, nullptr);
  FStatus = CreateWindowExW(0, STATUSCLASSNAMEW, L"", WS_CHILD | WS_VISIBLE | SBARS_SIZEGRIP, 0, 0,
                            0, 0, Handle(), ControlId(IDC_STATUS), nullptr, nullptr);
  if (!FTabs || !FCallsLabel || !FCalls || !FStatus) return false;
  for (HWND control : {FTabs, FCallsLabel, FCalls, FStatus}) {
    SendMessageW(control, WM_SETFONT, reinterpret_cast<WPARAM>(FFont), FALSE);
  }
  SendMessageW(FCalls, EM_SETLIMITTEXT, 0, 0);
  FLog.SetPane(FCalls);
  for (std::size_t i = 0; i < FMacros.size(); ++i) {
    TCITEMW item = {};
    item.mask = TCIF_TEXT;
    item.pszText = FMacros[i].Title.data();
    SendMessageW(FTabs, TCM_INSERTITEMW, i, reinterpret_cast<LPARAM>(&item));
  }

  const auto ask = [this](bool (TLibrary::*question)(const std::string&)) {
    return [this, question](const std::wstring& name) {
      const std::optional<std::string> word = ToAnsi(name);
      return word && (FLibrary.*question)(*word);
    };
  };
  FEditor.OnRestOn = [this](const std::wstring& name, POINT below) { ShowWordHelp(name, below); };
  FEditor.OnMovedOn = [this] { HideWordHelp(); };
  return FEditor.Create(Handle(), IDC_EDITOR,
                        {ask(&TLibrary::IsMethod), ask(&TLibrary::IsConstant)});
}

void TMainWindow::CreateMenus() {
  const HMENU bar = CreateMenu();
  for (const TMenu& menu : Menus) {
    const HMENU popup = CreatePopupMenu();
    for (const TCommand& command : menu.Commands) {
      const UINT kind = command.Id == 0 ? MF_SEPARATOR : MF_STRING;
      const UINT state = Available(command) ? MF_ENABLED : MF_GRAYED;
      AppendMenuW(popup, kind | state, static_cast<UINT_PTR>(command.Id), command.Text);
    }
    AppendMenuW(bar, MF_POPUP, reinterpret_cast<UINT_PTR>(popup), menu.Text);
  }
  SetMenu(Handle(), bar);
  ACCEL keys[std::size(Keys)];
  std::copy(std::begin(Keys), std::end(Keys), keys);
  FAccelerators = CreateAcceleratorTableW(keys, static_cast<int>(std::size(keys)));
}

void TMainWindow::LoadLibraryBesideProgram() {
  const std::string helpFile = ToAnsi(BesideProgram(L"ZEF.HLP")).value_or("ZEF.HLP");
  const std::string missing = FLibrary.Load(BesideProgram(L"zefext.dll"), Handle(), helpFile);
  Tell(missing.empty() ? L"Prêt"
                       : ToWide(missing) +
                             L" est introuvable : l'assistant et la couleur des "
                             L"mots ne sont pas disponibles.");
}

void TMainWindow::Arrange() {
  RECT client;
  GetClientRect(Handle(), &client);
  const int width = client.right;
  const int statusParts[] = {std::max(width - Scale(180), 0), -1};
  SendMessageW(FStatus, SB_SETPARTS, std::size(statusParts), reinterpret_cast<LPARAM>(statusParts));
  SendMessageW(FStatus, WM_SIZE, 0, 0);
  RECT status;
  GetWindowRect(FStatus, &status);

  const int gap = Scale(6);
  const int callsHeight = Scale(110);
  const int callsTop = client.bottom - (status.bottom - status.top) - gap - callsHeight;
  const int labelHeight = Scale(18);
  const int labelTop = callsTop - labelHeight;
  const int tabsHeight = std::max(labelTop - 2 * gap, 0);
  MoveWindow(FTabs, gap, gap, width - 2 * gap, tabsHeight, TRUE);
  MoveWindow(FCallsLabel, gap, labelTop, width - 2 * gap, labelHeight, TRUE);
  MoveWindow(FCalls, gap, callsTop, width - 2 * gap, callsHeight, TRUE);

  RECT page = {gap, gap, width - gap, gap + tabsHeight};
  SendMessageW(FTabs, TCM_ADJUSTRECT, FALSE, reinterpret_cast<LPARAM>(&page));
  SetWindowPos(FEditor.Handle(), HWND_TOP, page.left, page.top, page.right - page.left,
               page.bottom - page.top, 0);
}

void TMainWindow::ShowMacro(int index) {
  if (FMacro >= 0) {
    TMacro& left = FMacros[static_cast<std::size_t>(FMacro)];
    left.Text = FEditor.Text();
    left.Position = FEditor.Position();
  }
  FMacro = index;
  const TMacro& shown = FMacros[static_cast<std::size_t>(FMacro)];
  SendMessageW(FTabs, TCM_SETCURSEL, static_cast<WPARAM>(FMacro), 0);
  FEditor.SetText(shown.Text);
  FEditor.SetPosition(shown.Position);
  ShowTitle();
  ShowPosition();
}

void TMainWindow::ShowTitle() {
  const std::wstring& macro = FMacros[static_cast<std::size_t>(FMacro)].Title;
  SetWindowTextW(Handle(), (L"ZEF - " + macro + L" - " + CurrentDirectory()).c_str());
}

void TMainWindow::ShowPosition() {
  const TScriptEditor::TPosition position = FEditor.Position();
  const std::wstring text = L"Ligne " + std::to_wstring(position.Line + 1) + L", colonne " +
                            std::to_wstring(position.Column + 1);
  SendMessageW(FStatus, SB_SETTEXTW, 1, reinterpret_cast<LPARAM>(text.c_str()));
}

void TMainWindow::Tell(const std::wstring& message) {
  SendMessageW(FStatus, SB_SETTEXTW, 0, reinterpret_cast<LPARAM>(message.c_str()));
}

bool TMainWindow::Available(const TCommand& command) const {
  return !command.OfLibrary || FLibrary.Loaded();
}

void TMainWindow::RunCommand(int id) {
  // A service already open has disabled this window for the user, not for messages of programs.
  if (FLibrary.Busy()) return;
  for (const TMenu& menu : Menus) {
    for (const TCommand& command : menu.Commands) {
      if (command.Id == id && command.Run && Available(command)) (this->*command.Run)();
    }
  }
}

void TMainWindow::Quit() { SendMessageW(Handle(), WM_CLOSE, 0, 0); }

void TMainWindow::RunDirectories() {
  OpenDirectory(true);
  SetFocus(FEditor.Handle());
}

void TMainWindow::OpenDirectory(bool showList) {
  const TLibrary::TDirectoryChoice choice = FLibrary.SelectDirectory(showList);
  ShowTitle();
  if (choice.Changed) {
    Tell(L"Répertoire des comptes ouvert");
  } else if (choice.Cancelled) {
    Tell(L"Le répertoire des comptes n'a pas changé.");
  }
}

void TMainWindow::RunAssistant() {
  const auto [line, column] = FEditor.Position();
  const std::wstring text = FEditor.Line(line);
  const std::optional<std::string> ansi = ToAnsi(text);
  if (!ansi) {
    Tell(L"Cette ligne contient des caractères que l'assistant ne connaît pas.");
    return;
  }
  int cursor = static_cast<int>(
      ToAnsi(text.substr(0, static_cast<std::size_t>(column))).value_or("").size());
  const int before = cursor;
  const std::string result = FLibrary.SyntaxHelpBox(*ansi, cursor, AnsiTypes());
  if (result != *ansi) FEditor.SetLine(line, ToWide(result));
  if (result != *ansi || cursor != before) {
    const auto bytes = static_cast<std::size_t>(std::max(cursor, 0));
    FEditor.SetPosition({line, static_cast<int>(ToWide(result.substr(0, bytes)).size())});
  }
  KeepNewTypes();
  SetFocus(FEditor.Handle());
}

void TMainWindow::RunConstants() {
  const std::optional<std::wstring> selected = FEditor.SelectedText();
  if (!selected) {
    Tell(L"Sélectionnez une partie d'une seule ligne.");
    return;
  }
  const std::optional<std::string> text = ToAnsi(*selected);
  if (!text) {
    Tell(L"La sélection contient des caractères que l'assistant ne connaît pas.");
    return;
  }
  const std::string value = FLibrary.SyntaxConstHelpBox(*text);
  if (value != *text) FEditor.ReplaceSelection(ToWide(value));
  SetFocus(FEditor.Handle());
}

void TMainWindow::RunTypes() {
  SetDeclaredTypes(FEditor, ToWide(FLibrary.SyntaxTypesBox(AnsiTypes())));
  SetFocus(FEditor.Handle());
}

void TMainWindow::RunModalDialog() { FLibrary.InvokeModalDialog(); }

void TMainWindow::OpenDialog() { OpenGuest(FDialogWindow, TGuestWindow::TGuest::Dialog); }

void TMainWindow::OpenView() { OpenGuest(FViewWindow, TGuestWindow::TGuest::View); }

void TMainWindow::OpenGuest(std::unique_ptr<TGuestWindow>& window, TGuestWindow::TGuest guest) {
  if (window && window->Handle()) {
    SetForegroundWindow(window->Handle());
  } else {
    window = std::make_unique<TGuestWindow>(FLibrary, guest, Handle());
  }
}

void TMainWindow::ShowWordHelp(const std::wstring& name, POINT below) {
  if (!FHelp) FHelp = std::make_unique<TScriptHelp>(BesideProgram(L"VBSZEF.XML"));
  const std::optional<std::string> help = ToAnsi(FHelp->Find(name));
  if (!help || help->empty() || FLibrary.Busy()) return;
  HideWordHelp();
  FBubbleOwner = CreateWindowExW(0, WC_STATICW, L"", WS_POPUP, 0, 0, 0, 0, Handle(), nullptr,
                                 nullptr, nullptr);
  FLibrary.ShowHint(FBubbleOwner, *help, below, Scale(360));
}

// The library takes a bubble away only with the window that it belongs to: it has one of its own.
void TMainWindow::HideWordHelp() {
  if (FBubbleOwner) DestroyWindow(FBubbleOwner);
  FBubbleOwner = nullptr;
}

void TMainWindow::SwitchTrace() {
  FTracing = !FTracing;
  CheckMenuItem(GetMenu(Handle()), IDM_TRACE, FTracing ? MF_CHECKED : MF_UNCHECKED);
  if (!FTracing) {
    FLog.SetTrace({});
    return;
  }
  FLog.SetTrace([this](const std::wstring& line) {
    if (const std::optional<std::string> text = ToAnsi(line)) FLibrary.ShowDebugText(*text);
  });
  FLibrary.Version();
  SetFocus(FEditor.Handle());
}

void TMainWindow::FilterEntries() {
  if (!FEntries || !FEntries->Handle())
    FEntries = std::make_unique<TEntriesWindow>(FLibrary, Handle());
  FEntries->Filter();
}

void TMainWindow::ClearLog() { FLog.Clear(); }

void TMainWindow::CheckForUpdate() {
  Tell(FUpdate.Ask(BesideProgram(L"ZEF-nouveau.bin")));
  if (FUpdate.Downloading()) SetTimer(Handle(), UpdateTimer, UpdatePollMs, nullptr);
}

void TMainWindow::FollowUpdate() {
  if (FLibrary.Busy() || !FUpdate.Ended()) return;
  KillTimer(Handle(), UpdateTimer);
  Tell(FUpdate.Finish());
}

void TMainWindow::ShowFirstSteps() {
  MessageBoxW(Handle(),
              L"Le curseur est sur un appel de la macro :\n\n"
              L"F1   l'assistant montre l'objet, ses membres et leurs paramètres ; changez une "
              L"valeur, puis OK réécrit la ligne\n"
              L"F2   les constantes, sur un mot comme vbYesNo\n"
              L"F3   les types des variables de la macro\n"
              L"F4   les répertoires des comptes\n\n"
              L"Laissez la souris sur un mot coloré : une bulle l'explique.\n"
              L"Menu Outils : le filtre des écritures et la trace des appels.\n"
              L"En bas de la fenêtre : chaque appel fait à zefext.dll.",
              L"Premiers pas", MB_OK | MB_ICONINFORMATION);
}

void TMainWindow::ShowAbout() {
  std::wstring text = L"ZEF, programme d'exemple de zefext.dll.\n\n";
  if (FLibrary.Loaded()) {
    text += L"Version de l'interface : " + std::to_wstring(FLibrary.Version());
  } else {
    text += L"zefext.dll n'est pas chargée.";
  }
  MessageBoxW(Handle(), text.c_str(), L"À propos de ZEF", MB_OK | MB_ICONINFORMATION);
}

std::string TMainWindow::AnsiTypes() const { return ToAnsi(DeclaredTypes(FEditor)).value_or(""); }

void TMainWindow::KeepNewTypes() {
  if (const std::optional<std::string> types = FLibrary.SyntaxNewTypes()) {
    SetDeclaredTypes(FEditor, ToWide(*types));
  }
}

LRESULT TMainWindow::HandleMessage(UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_CREATE:
      if (!CreateControls()) return -1;
      LoadLibraryBesideProgram();
      CreateMenus();
      return 0;
    case WM_SIZE:
      if (wParam != SIZE_MINIMIZED) Arrange();
      return 0;
    case WM_GETMINMAXINFO:
      reinterpret_cast<MINMAXINFO*>(lParam)->ptMinTrackSize = {Scale(480), Scale(360)};
      return 0;
    case WM_SETFOCUS:
      SetFocus(FEditor.Handle());
      return 0;
    case WM_COMMAND:
      if (lParam == 0) {
        RunCommand(LOWORD(wParam));
      } else if (LOWORD(wParam) == IDC_EDITOR && HIWORD(wParam) == EN_CHANGE) {
        FEditor.Changed();
      }
      return 0;
    case WM_NOTIFY:
      return Notified(*reinterpret_cast<const NMHDR*>(lParam));
    case WM_TIMER:
      FollowUpdate();
      return 0;
    case WM_CLOSE:
      if (FLibrary.Busy()) return 0;
      FViewWindow.reset();
      FDialogWindow.reset();
      FEntries.reset();
      HideWordHelp();
      FLog.SetTrace({});
      KeepPlace(FLibrary, Handle());
      FUpdate.Abort();
      FLibrary.Unload();
      DestroyWindow(Handle());
      return 0;
    case WM_DESTROY:
      FLog.SetPane(nullptr);
      DestroyAcceleratorTable(FAccelerators);
      DeleteObject(FFont);
      PostQuitMessage(0);
      return 0;
  }
  return DefWindowProcW(Handle(), message, wParam, lParam);
}

LRESULT TMainWindow::Notified(const NMHDR& notice) {
  if (notice.idFrom == IDC_TABS && notice.code == static_cast<UINT>(TCN_SELCHANGE)) {
    ShowMacro(static_cast<int>(SendMessageW(FTabs, TCM_GETCURSEL, 0, 0)));
  } else if (notice.idFrom == IDC_EDITOR && notice.code == EN_SELCHANGE) {
    ShowPosition();
  }
  return 0;
}
