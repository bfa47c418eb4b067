#include "forms/form_tips.h"

#include <algorithm>

#include "forms/form.h"

namespace {

POINT PointerPosition() {
  const DWORD at = GetMessagePos();
  return {static_cast<short>(LOWORD(at)), static_cast<short>(HIWORD(at))};
}

}  // namespace

TFormTips::TFormTips(const TForm& form)
    : FForm(form),
      FWindow(CreateWindowExW(WS_EX_TOPMOST, TOOLTIPS_CLASSW, nullptr,
                              WS_POPUP | TTS_NOPREFIX | TTS_ALWAYSTIP, 0, 0, 0, 0, form.Handle(),
                              nullptr, TApplication::Instance(), nullptr)) {
  // Until the pointer leaves, as far as the system goes: our hints are long, its 5 s are short.
  SendMessageW(FWindow, TTM_SETDELAYTIME, TTDT_AUTOPOP, SHRT_MAX);
  SendMessageW(FWindow, TTM_SETMAXTIPWIDTH, 0, form.Scaled(320));
  EnumChildWindows(form.Handle(), AddTool, reinterpret_cast<LPARAM>(this));
  for (const TControl* control : form.Controls()) {
    TTTOOLINFOW area = AreaOf(*control);
    SendMessageW(FWindow, TTM_ADDTOOLW, 0, reinterpret_cast<LPARAM>(&area));
  }
}

// It belongs to the window around an embedded form, and would outlive it.
TFormTips::~TFormTips() {
  if (IsWindow(FWindow)) DestroyWindow(FWindow);
}

TTTOOLINFOW TFormTips::Tool() const {
  TTTOOLINFOW tool{};
  tool.cbSize = TTTOOLINFOW_V1_SIZE;
  tool.uFlags = TTF_SUBCLASS;
  tool.hwnd = FForm.Handle();
  tool.lpszText = LPSTR_TEXTCALLBACKW;
  return tool;
}

BOOL CALLBACK TFormTips::AddTool(HWND child, LPARAM self) {
  const auto* tips = reinterpret_cast<TFormTips*>(self);
  if (!tips->FForm.FindControl(child)) return TRUE;
  TTTOOLINFOW tool = tips->Tool();
  tool.uFlags |= TTF_IDISHWND;
  tool.uId = reinterpret_cast<UINT_PTR>(child);
  SendMessageW(tips->FWindow, TTM_ADDTOOLW, 0, reinterpret_cast<LPARAM>(&tool));
  return TRUE;
}

// The mouse passes a disabled control by and speaks to the form, where its place is a tool of its
// own; an empty one as long as the control speaks for itself.
TTTOOLINFOW TFormTips::AreaOf(const TControl& control) const {
  TTTOOLINFOW tool = Tool();
  tool.uId = reinterpret_cast<UINT_PTR>(&control);
  if (!control.Enabled() && control.Visible()) tool.rect = control.Bounds();
  return tool;
}

void TFormTips::Show(const TControl& control) const {
  TTTOOLINFOW area = AreaOf(control);
  SendMessageW(FWindow, TTM_NEWTOOLRECTW, 0, reinterpret_cast<LPARAM>(&area));
}

std::wstring TFormTips::TextAt(const TControl& control, POINT screen) {
  ScreenToClient(control.Handle(), &screen);
  std::wstring text = control.CutText(screen);
  return text.empty() ? control.HintWide() : text;
}

void TFormTips::PointerMoved(const TControl& control, HWND window, POINT at) {
  if (!IsWindowVisible(FWindow)) return;
  ClientToScreen(window, &at);
  if (TextAt(control, at) == FText) return;
  // The tip asks for its text anew.
  TTTOOLINFOW tool = Tool();
  tool.uFlags |= TTF_IDISHWND;
  tool.uId = reinterpret_cast<UINT_PTR>(window);
  SendMessageW(FWindow, TTM_UPDATETIPTEXTW, 0, reinterpret_cast<LPARAM>(&tool));
}

bool TFormTips::HandleNotify(NMHDR& header) {
  if (header.hwndFrom != FWindow || header.code != TTN_GETDISPINFOW) return false;
  auto& request = reinterpret_cast<NMTTDISPINFOW&>(header);
  const auto& controls = FForm.Controls();
  const auto area = std::ranges::find_if(controls, [&](const TControl* control) {
    return reinterpret_cast<UINT_PTR>(control) == header.idFrom;
  });
  const TControl* control =
      area != controls.end() ? *area : FForm.FindControl(reinterpret_cast<HWND>(header.idFrom));
  FText = control ? TextAt(*control, PointerPosition()) : std::wstring();
  request.lpszText = FText.data();
  return true;
}
