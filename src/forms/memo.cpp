#include "forms/memo.h"

#include "platform/code_page.h"

TControl::TWindowParams TMemo::WindowParams() const {
  const DWORD scroll = ScrollStyle();
  DWORD style = ES_MULTILINE | ES_AUTOVSCROLL | scroll | TabStopStyle();
  if (scroll & WS_HSCROLL) style |= ES_AUTOHSCROLL;
  style |= HasFlag("read-only") ? ES_READONLY : ES_WANTRETURN;
  return {L"EDIT", style, WS_EX_CLIENTEDGE};
}

void TMemo::Created() {
  TEdit::Created();
  if (const auto* lines = Layout().Find("lines")) {
    std::wstring text;
    for (const auto& line : lines->Values) text += Utf8ToWide(line) + L"\r\n";
    text.resize(text.size() - 2);
    Show(text);
  }
}

LRESULT TMemo::WindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  const LRESULT result = TEdit::WindowProc(window, message, wParam, lParam);
  if (message != WM_GETDLGCODE || !lParam) return result;
  // Asked for every key, the native control takes those of the dialog as well, and would close it
  // at Escape instead of cancelling.
  const auto& key = *reinterpret_cast<const MSG*>(lParam);
  const bool writes = key.wParam == VK_TAB ? !HasFlag("read-only") && GetKeyState(VK_CONTROL) < 0
                                           : key.wParam == VK_RETURN && !HasFlag("read-only");
  const bool dialogKey = key.wParam == VK_TAB || key.wParam == VK_RETURN || key.wParam == VK_ESCAPE;
  if (key.message != WM_KEYDOWN || !dialogKey || writes) return result;
  return result & ~(DLGC_WANTALLKEYS | DLGC_WANTTAB);
}

std::wstring TMemo::WithLineEnds(std::wstring_view text) {
  std::wstring result;
  result.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == L'\n' && (i == 0 || text[i - 1] != L'\r')) result += L'\r';
    result += text[i];
  }
  return result;
}

void TMemo::SetText(std::string_view text) { Show(WithLineEnds(ToWide(text))); }

void TMemo::SetTextUtf8(std::string_view text) { Show(WithLineEnds(Utf8ToWide(text))); }

void TMemo::Show(const std::wstring& text) {
  SetWindowTextW(Handle(), text.c_str());
  Send(EM_SETSEL, 0, 0);
  Send(EM_SCROLLCARET);
  // The native control says nothing of a text set as a whole when it has several lines.
  Raise(OnChange);
}
