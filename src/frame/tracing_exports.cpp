#include "frame/dlg_debug.h"
#include "frame/exported.h"
#include "frame/singletons.h"
#include "platform/code_page.h"
#include "zefext.h"

void ZEFEXT_API VCLShowHint(HWND window, const char* text, int x, int y, int maxWidth) {
  Exported([&] {
    auto& bubble = HintBubble();
    // Hosts rely on a bubble of its own for each call, at the window given: only the bubble's own
    // handle, handed back, moves the bubble that is there.
    const bool same = bubble && window && bubble->Handle() == window;
    if (!same) {
      bubble = std::make_unique<THintWindow>(window);
      HintShown() = false;
    }
    if (HintShown()) {
      bubble->ReleaseHandle();
      HintShown() = false;
    }
    bubble->Show({x, y}, maxWidth, ToWide(OrEmpty(text)));
  });
}

void ZEFEXT_API VCLHideHint() {
  Exported([] {
    // Nothing sets the flag: the bubble stays until it is replaced or the library is freed. Hosts
    // hide it right after showing it and count on that.
    if (HintBubble() && HintShown()) HintBubble()->ReleaseHandle();
    HintShown() = false;
  });
}

void ZEFEXT_API VCLShowDebugText(const char* text) {
  Exported([&] { SingletonForm<TDlgDebug>(TFormSlot::DebugWindow).ShowText(OrEmpty(text)); });
}
