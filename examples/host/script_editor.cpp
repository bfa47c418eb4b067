#include "script_editor.h"

#include <commctrl.h>
#include <richole.h>
#include <tom.h>

#include <algorithm>
#include <utility>

#include "script_words.h"

namespace {

constexpr COLORREF KeywordColour = RGB(0, 0, 192);
constexpr COLORREF CommentColour = RGB(0, 120, 0);
constexpr COLORREF TextColour = RGB(163, 21, 21);
constexpr COLORREF MethodColour = RGB(0, 112, 128);
constexpr COLORREF ConstantColour = RGB(128, 0, 128);

constexpr wchar_t Indent[] = L"    ";
constexpr int FontTwips = 10 * 20;

constexpr GUID TextDocumentId = {
    0x8CC497C0, 0xA1DF, 0x11CE, {0x80, 0x98, 0x00, 0xAA, 0x00, 0x47, 0xBE, 0x5D}};

int CALLBACK FontFound(const LOGFONTW*, const TEXTMETRICW*, DWORD, LPARAM found) {
  *reinterpret_cast<bool*>(found) = true;
  return 0;
}

bool FontExists(const wchar_t* name) {
  const HDC screen = GetDC(nullptr);
  LOGFONTW wanted = {};
  wanted.lfCharSet = DEFAULT_CHARSET;
  lstrcpynW(wanted.lfFaceName, name, LF_FACESIZE);
  bool found = false;
  EnumFontFamiliesExW(screen, &wanted, FontFound, reinterpret_cast<LPARAM>(&found), 0);
  ReleaseDC(nullptr, screen);
  return found;
}

/// A scalable font, of fixed width where the system has one: asked for a font that is not there,
/// the control may take a bitmap font of one size only.
const wchar_t* ScriptFont() {
  for (const wchar_t* name :
       {L"Consolas", L"Courier New", L"DejaVu Sans Mono", L"Liberation Mono"}) {
    if (FontExists(name)) return name;
  }
  return L"Tahoma";
}

POINT PointOf(LPARAM packed) {
  return {static_cast<short>(LOWORD(packed)), static_cast<short>(HIWORD(packed))};
}

std::vector<std::wstring> SplitLines(const std::wstring& text) {
  std::vector<std::wstring> lines;
  std::size_t start = 0;
  for (std::size_t end; (end = text.find(L'\r', start)) != std::wstring::npos; start = end + 1) {
    lines.push_back(text.substr(start, end - start));
  }
  lines.push_back(text.substr(start));
  return lines;
}

/// Colours are no step of the user's: while this lives, the control keeps them out of the undo
/// list, where it can.
class TUndoPause {
 public:
  explicit TUndoPause(HWND editor) {
    IUnknown* ole = nullptr;
    SendMessageW(editor, EM_GETOLEINTERFACE, 0, reinterpret_cast<LPARAM>(&ole));
    if (!ole) return;
    void* document = nullptr;
    if (SUCCEEDED(ole->QueryInterface(TextDocumentId, &document))) {
      FDocument = static_cast<ITextDocument*>(document);
      FDocument->Undo(tomSuspend, nullptr);
    }
    ole->Release();
  }
  ~TUndoPause() {
    if (!FDocument) return;
    FDocument->Undo(tomResume, nullptr);
    FDocument->Release();
  }
  TUndoPause(const TUndoPause&) = delete;
  TUndoPause& operator=(const TUndoPause&) = delete;

 private:
  ITextDocument* FDocument = nullptr;
};

/// Colouring goes through the control's selection: this hides it from the user and the parent, and
/// puts everything back.
class TQuiet {
 public:
  explicit TQuiet(HWND editor) : FEditor(editor), FPause(editor) {
    SendMessageW(FEditor, WM_SETREDRAW, FALSE, 0);
    FEvents = SendMessageW(FEditor, EM_SETEVENTMASK, 0, 0);
    SendMessageW(FEditor, EM_EXGETSEL, 0, reinterpret_cast<LPARAM>(&FSelection));
    SendMessageW(FEditor, EM_GETSCROLLPOS, 0, reinterpret_cast<LPARAM>(&FScroll));
  }
  ~TQuiet() {
    SendMessageW(FEditor, EM_EXSETSEL, 0, reinterpret_cast<LPARAM>(&FSelection));
    SendMessageW(FEditor, EM_SETSCROLLPOS, 0, reinterpret_cast<LPARAM>(&FScroll));
    SendMessageW(FEditor, EM_SETEVENTMASK, 0, FEvents);
    SendMessageW(FEditor, WM_SETREDRAW, TRUE, 0);
    InvalidateRect(FEditor, nullptr, FALSE);
  }
  TQuiet(const TQuiet&) = delete;
  TQuiet& operator=(const TQuiet&) = delete;

 private:
  HWND FEditor;
  TUndoPause FPause;
  LRESULT FEvents = 0;
  CHARRANGE FSelection = {};
  POINT FScroll = {};
};

}  // namespace

bool TScriptEditor::Create(HWND parent, int id, TNames names) {
  FNames = std::move(names);
  if (!LoadLibraryW(L"msftedit.dll")) return false;
  FHandle = CreateWindowExW(WS_EX_CLIENTEDGE, L"RICHEDIT50W", L"",
                            WS_CHILD | WS_VISIBLE | WS_TABSTOP | WS_HSCROLL | WS_VSCROLL |
                                ES_MULTILINE | ES_AUTOHSCROLL | ES_AUTOVSCROLL | ES_NOHIDESEL,
                            0, 0, 0, 0, parent, reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)),
                            nullptr, nullptr);
  if (!FHandle) return false;
  SetWindowSubclass(FHandle, EditorProc, 0, reinterpret_cast<DWORD_PTR>(this));

  CHARFORMAT2W format = {};
  format.cbSize = sizeof format;
  format.dwMask = CFM_FACE | CFM_SIZE | CFM_COLOR | CFM_CHARSET;
  format.dwEffects = CFE_AUTOCOLOR;
  format.yHeight = FontTwips;
  format.bCharSet = DEFAULT_CHARSET;
  lstrcpynW(format.szFaceName, ScriptFont(), LF_FACESIZE);
  SendMessageW(FHandle, EM_SETCHARFORMAT, SCF_DEFAULT, reinterpret_cast<LPARAM>(&format));
  // Else the control takes another font for each script it meets.
  const LRESULT options = SendMessageW(FHandle, EM_GETLANGOPTIONS, 0, 0);
  SendMessageW(FHandle, EM_SETLANGOPTIONS, 0, options & ~(IMF_AUTOFONT | IMF_DUALFONT));
  SendMessageW(FHandle, EM_EXLIMITTEXT, 0, 0x7FFFFFFE);
  SendMessageW(FHandle, EM_SETEVENTMASK, 0, ENM_CHANGE | ENM_SELCHANGE);
  return true;
}

void TScriptEditor::SetText(const std::wstring& text) {
  SetWindowTextW(FHandle, text.c_str());
  SendMessageW(FHandle, EM_EMPTYUNDOBUFFER, 0, 0);
  FLines.clear();
  Changed();
}

std::wstring TScriptEditor::Text() const {
  GETTEXTLENGTHEX measure = {GTL_PRECISE | GTL_NUMCHARS, 1200};
  const LRESULT length =
      SendMessageW(FHandle, EM_GETTEXTLENGTHEX, reinterpret_cast<WPARAM>(&measure), 0);
  std::wstring text(static_cast<std::size_t>(std::max<LRESULT>(length, 0)) + 1, L'\0');
  GETTEXTEX get = {};
  get.cb = static_cast<DWORD>(text.size() * sizeof(wchar_t));
  get.flags = GT_DEFAULT;
  get.codepage = 1200;
  const LRESULT copied = SendMessageW(FHandle, EM_GETTEXTEX, reinterpret_cast<WPARAM>(&get),
                                      reinterpret_cast<LPARAM>(text.data()));
  text.resize(static_cast<std::size_t>(copied));
  return text;
}

CHARRANGE TScriptEditor::Selection() const {
  CHARRANGE range = {};
  SendMessageW(FHandle, EM_EXGETSEL, 0, reinterpret_cast<LPARAM>(&range));
  return range;
}

void TScriptEditor::Select(CHARRANGE range) {
  SendMessageW(FHandle, EM_EXSETSEL, 0, reinterpret_cast<LPARAM>(&range));
}

TScriptEditor::TPosition TScriptEditor::Position() const {
  const LONG caret = Selection().cpMax;
  const LRESULT line = SendMessageW(FHandle, EM_EXLINEFROMCHAR, 0, caret);
  const LRESULT start = SendMessageW(FHandle, EM_LINEINDEX, static_cast<WPARAM>(line), 0);
  return {static_cast<int>(line), static_cast<int>(caret - start)};
}

void TScriptEditor::SetPosition(TPosition position) {
  const CHARRANGE line = LineRange(std::clamp(position.Line, 0, LineCount() - 1));
  const LONG caret = std::clamp<LONG>(line.cpMin + position.Column, line.cpMin, line.cpMax);
  Select({caret, caret});
  SendMessageW(FHandle, EM_SCROLLCARET, 0, 0);
}

CHARRANGE TScriptEditor::LineRange(int line) const {
  const auto start =
      static_cast<LONG>(SendMessageW(FHandle, EM_LINEINDEX, static_cast<WPARAM>(line), 0));
  return {start, start + static_cast<LONG>(Line(line).size())};
}

void TScriptEditor::ReplaceKeepingCaret(CHARRANGE range, const std::wstring& text) {
  const CHARRANGE before = Selection();
  Select(range);
  SendMessageW(FHandle, EM_REPLACESEL, TRUE, reinterpret_cast<LPARAM>(text.c_str()));
  const LONG shift = static_cast<LONG>(text.size()) - (range.cpMax - range.cpMin);
  const auto moved = [&](LONG at) {
    return at >= range.cpMax ? at + shift : std::min(at, range.cpMin);
  };
  Select({moved(before.cpMin), moved(before.cpMax)});
}

void TScriptEditor::SetLine(int line, const std::wstring& text) {
  ReplaceKeepingCaret(LineRange(line), text);
}

void TScriptEditor::InsertLine(int line, const std::wstring& text) {
  const LONG start = LineRange(line).cpMin;
  ReplaceKeepingCaret({start, start}, text + L'\r');
}

void TScriptEditor::DeleteLine(int line) {
  CHARRANGE range = LineRange(line);
  if (line + 1 < LineCount()) ++range.cpMax;
  ReplaceKeepingCaret(range, std::wstring());
}

std::optional<std::wstring> TScriptEditor::SelectedText() const {
  const CHARRANGE range = Selection();
  std::wstring text(static_cast<std::size_t>(range.cpMax - range.cpMin) + 1, L'\0');
  const LRESULT copied =
      SendMessageW(FHandle, EM_GETSELTEXT, 0, reinterpret_cast<LPARAM>(text.data()));
  text.resize(static_cast<std::size_t>(copied));
  if (text.find_first_of(L"\r\n") != std::wstring::npos) return std::nullopt;
  return text;
}

void TScriptEditor::ReplaceSelection(const std::wstring& text) {
  SendMessageW(FHandle, EM_REPLACESEL, TRUE, reinterpret_cast<LPARAM>(text.c_str()));
}

void TScriptEditor::Changed() {
  if (FColouring) return;
  std::vector<std::wstring> lines = SplitLines(Text());
  const std::size_t common = std::min(lines.size(), FLines.size());
  std::size_t head = 0;
  while (head < common && lines[head] == FLines[head]) ++head;
  std::size_t tail = 0;
  while (tail < common - head && lines[lines.size() - 1 - tail] == FLines[FLines.size() - 1 - tail])
    ++tail;
  FLines = std::move(lines);
  const std::size_t end = FLines.size() - tail;
  if (head >= end) return;
  FColouring = true;
  {
    const TQuiet quiet(FHandle);
    for (std::size_t line = head; line < end; ++line) ColourLine(static_cast<int>(line));
  }
  FColouring = false;
}

void TScriptEditor::ColourLine(int line) {
  const CHARRANGE range = LineRange(line);
  Colour(range, 0, true);
  const std::wstring& text = Line(line);
  for (const TWord& word : SplitScriptLine(text)) {
    LONG start = range.cpMin + static_cast<LONG>(word.Start);
    const LONG end = start + static_cast<LONG>(word.Length);
    switch (word.Kind) {
      case TWordKind::Keyword:
        Colour({start, end}, KeywordColour, false);
        break;
      case TWordKind::Comment:
        Colour({start, end}, CommentColour, false);
        break;
      case TWordKind::Text:
        Colour({start, end}, TextColour, false);
        break;
      case TWordKind::Name: {
        const std::wstring name = text.substr(word.Start, word.Length);
        if (name.front() == L'.') ++start;
        if (FNames.IsMethod(name)) {
          Colour({start, end}, MethodColour, false);
        } else if (FNames.IsConstant(name)) {
          Colour({start, end}, ConstantColour, false);
        }
        break;
      }
    }
  }
}

void TScriptEditor::Colour(CHARRANGE range, COLORREF colour, bool automatic) {
  CHARFORMAT2W format = {};
  format.cbSize = sizeof format;
  format.dwMask = CFM_COLOR;
  format.dwEffects = automatic ? CFE_AUTOCOLOR : 0;
  format.crTextColor = colour;
  Select(range);
  SendMessageW(FHandle, EM_SETCHARFORMAT, SCF_SELECTION, reinterpret_cast<LPARAM>(&format));
}

void TScriptEditor::PastePlain() { SendMessageW(FHandle, EM_PASTESPECIAL, CF_UNICODETEXT, 0); }

std::wstring TScriptEditor::NameAt(POINT at) const {
  POINTL point = {at.x, at.y};
  const LRESULT place = SendMessageW(FHandle, EM_CHARFROMPOS, 0, reinterpret_cast<LPARAM>(&point));
  const auto row = static_cast<int>(SendMessageW(FHandle, EM_EXLINEFROMCHAR, 0, place));
  if (row < 0 || row >= LineCount()) return {};
  const LONG column = static_cast<LONG>(place) - LineRange(row).cpMin;
  const std::wstring& text = Line(row);
  // Beside the text, the control names the nearest place in it.
  if (column < 0 || column >= static_cast<LONG>(text.size())) return {};
  for (const TWord& word : SplitScriptLine(text)) {
    const auto start = static_cast<LONG>(word.Start);
    const auto end = start + static_cast<LONG>(word.Length);
    if (column >= start && column < end && word.Kind == TWordKind::Name) {
      return text.substr(word.Start, word.Length);
    }
  }
  return {};
}

void TScriptEditor::MouseMoved(POINT at) {
  if (!FRestsOn.empty() && NameAt(at) == FRestsOn) return;
  if (!FRestsOn.empty() && OnMovedOn) OnMovedOn();
  FRestsOn.clear();
  TRACKMOUSEEVENT track = {sizeof track, TME_HOVER | TME_LEAVE, FHandle, HOVER_DEFAULT};
  TrackMouseEvent(&track);
}

void TScriptEditor::MouseRests(POINT at) {
  const std::wstring name = NameAt(at);
  if (name.empty() || name == FRestsOn || !OnRestOn) return;
  FRestsOn = name;
  POINT below = {at.x, at.y + GetSystemMetrics(SM_CYCURSOR) * 2 / 3};
  ClientToScreen(FHandle, &below);
  OnRestOn(name, below);
}

LRESULT CALLBACK TScriptEditor::EditorProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam,
                                           UINT_PTR id, DWORD_PTR data) {
  auto& editor = *reinterpret_cast<TScriptEditor*>(data);
  switch (message) {
    case WM_MOUSEMOVE:
      editor.MouseMoved(PointOf(lParam));
      break;
    case WM_MOUSEHOVER:
      editor.MouseRests(PointOf(lParam));
      break;
    case WM_MOUSELEAVE:
    case WM_KILLFOCUS:
      editor.MouseMoved({-1, -1});
      break;
    case WM_PASTE:
      editor.PastePlain();
      return 0;
    case WM_KEYDOWN: {
      const bool control = GetKeyState(VK_CONTROL) < 0;
      const bool shift = GetKeyState(VK_SHIFT) < 0;
      // The control handles its paste keys itself, without WM_PASTE.
      if ((control && !shift && wParam == 'V') || (shift && !control && wParam == VK_INSERT)) {
        editor.PastePlain();
        return 0;
      }
      break;
    }
    case WM_CHAR:
      // The library takes the space, not the tabulation, for a blank before an expression.
      if (wParam == L'\t') {
        editor.ReplaceSelection(Indent);
        return 0;
      }
      break;
    case WM_NCDESTROY:
      RemoveWindowSubclass(window, EditorProc, id);
      break;
  }
  return DefSubclassProc(window, message, wParam, lParam);
}
