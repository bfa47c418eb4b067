#include "entries_window.h"

#include <commctrl.h>

#include <algorithm>
#include <iterator>
#include <vector>

#include "ansi.h"
#include "commands.h"

namespace {

// The library knows this type by its name: the one that a card or cheque book goes with.
constexpr wchar_t CardType[] = L"CB/Chq";
constexpr const wchar_t* Types[] = {L"Virement", L"Prélèvement", CardType, L"Espèces", L"Dépôt"};
constexpr const wchar_t* Cards[] = {L"Carte bleue Léa", L"Carte bleue Paul", L"Chéquier n° 102"};

enum TColumn { Date, Label, Type, Card, Amount, ColumnCount };

struct THeading {
  const wchar_t* Text;
  int Width;
  int Format;
};

constexpr THeading Headings[ColumnCount] = {{L"Date", 80, LVCFMT_LEFT},
                                            {L"Libellé", 170, LVCFMT_LEFT},
                                            {L"Type", 90, LVCFMT_LEFT},
                                            {L"Carte ou chéquier", 130, LVCFMT_LEFT},
                                            {L"Montant", 90, LVCFMT_RIGHT}};

using TEntry = const wchar_t* [ColumnCount];

constexpr TEntry Entries[] = {
    {L"02/05/2005", L"Salaire", L"Virement", L"", L"1 842,50"},
    {L"03/05/2005", L"Loyer", L"Prélèvement", L"", L"-615,00"},
    {L"04/05/2005", L"Supermarché", CardType, Cards[0], L"-87,42"},
    {L"06/05/2005", L"Électricité", L"Prélèvement", L"", L"-64,10"},
    {L"07/05/2005", L"Essence", CardType, Cards[1], L"-51,30"},
    {L"09/05/2005", L"Boulangerie", L"Espèces", L"", L"-12,80"},
    {L"11/05/2005", L"Dentiste", CardType, Cards[2], L"-140,00"},
    {L"13/05/2005", L"Remboursement santé", L"Virement", L"", L"96,25"},
    {L"14/05/2005", L"Librairie", CardType, Cards[0], L"-23,90"},
    {L"17/05/2005", L"Chèque de tante Jeanne", L"Dépôt", L"", L"50,00"},
    {L"20/05/2005", L"Garagiste", CardType, Cards[2], L"-312,75"},
};

template <std::size_t Count>
std::vector<std::string> AllAnsi(const wchar_t* const (&texts)[Count]) {
  std::vector<std::string> result;
  for (const wchar_t* text : texts) result.push_back(ToAnsi(text).value_or("?"));
  return result;
}

bool Passes(const TEntry& entry, const std::wstring& filter) {
  return filter.empty() || filter == entry[Type] || filter == entry[Card];
}

}  // namespace

TEntriesWindow::TEntriesWindow(TLibrary& library, HWND owner) : FLibrary(library) {
  RECT place;
  GetWindowRect(owner, &place);
  if (!CreateHandle(
          {ZEF_ENTRIES_WINDOW_CLASS, L"",
           WS_POPUP | WS_CAPTION | WS_SYSMENU | WS_THICKFRAME | WS_CLIPCHILDREN, 0, owner},
          {place.left + Scale(60), place.top + Scale(90)}, {Scale(600), Scale(320)})) {
    return;
  }
  CreateList();
  ShowEntries();
  ShowWindow(Handle(), SW_SHOW);
}

TEntriesWindow::~TEntriesWindow() { DestroyHandle(); }

void TEntriesWindow::Filter() {
  const std::optional<std::string> chosen =
      FLibrary.SelectTypOp(AllAnsi(Types), AllAnsi(Cards), ToAnsi(FFilter).value_or(""));
  FFilter = ToWide(chosen.value_or(""));
  if (!Handle()) return;
  ShowEntries();
  SetForegroundWindow(Handle());
}

void TEntriesWindow::CreateList() {
  FList = CreateWindowExW(0, WC_LISTVIEWW, L"",
                          WS_CHILD | WS_VISIBLE | WS_TABSTOP | LVS_REPORT | LVS_SINGLESEL, 0, 0, 0,
                          0, Handle(), reinterpret_cast<HMENU>(IDC_ENTRIES), nullptr, nullptr);
  ListView_SetExtendedListViewStyle(FList, LVS_EX_FULLROWSELECT | LVS_EX_GRIDLINES);
  for (int column = 0; column < ColumnCount; ++column) {
    LVCOLUMNW heading = {};
    heading.mask = LVCF_TEXT | LVCF_WIDTH | LVCF_FMT;
    heading.pszText = const_cast<wchar_t*>(Headings[column].Text);
    heading.cx = Scale(Headings[column].Width);
    heading.fmt = Headings[column].Format;
    SendMessageW(FList, LVM_INSERTCOLUMNW, static_cast<WPARAM>(column),
                 reinterpret_cast<LPARAM>(&heading));
  }
  Arrange();
}

void TEntriesWindow::ShowEntries() {
  SetWindowTextW(Handle(), FFilter.empty() ? L"Toutes les écritures"
                                           : (L"Écritures - filtre : " + FFilter).c_str());
  SendMessageW(FList, LVM_DELETEALLITEMS, 0, 0);
  int row = 0;
  for (const TEntry& entry : Entries) {
    if (!Passes(entry, FFilter)) continue;
    LVITEMW item = {};
    item.mask = LVIF_TEXT;
    item.iItem = row++;
    for (item.iSubItem = 0; item.iSubItem < ColumnCount; ++item.iSubItem) {
      item.pszText = const_cast<wchar_t*>(entry[item.iSubItem]);
      SendMessageW(FList, item.iSubItem == 0 ? LVM_INSERTITEMW : LVM_SETITEMW, 0,
                   reinterpret_cast<LPARAM>(&item));
    }
  }
}

void TEntriesWindow::Arrange() {
  RECT client;
  GetClientRect(Handle(), &client);
  MoveWindow(FList, 0, 0, client.right, client.bottom, TRUE);
}

LRESULT TEntriesWindow::HandleMessage(UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_SIZE:
      Arrange();
      return 0;
    case WM_SETFOCUS:
      SetFocus(FList);
      return 0;
    default:
      return DefWindowProcW(Handle(), message, wParam, lParam);
  }
}
