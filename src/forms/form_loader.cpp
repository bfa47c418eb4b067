#include <windows.h>

#include <commctrl.h>

#include <algorithm>

#include "forms/accessibility.h"
#include "forms/buttons.h"
#include "forms/check_list_box.h"
#include "forms/combo_box.h"
#include "forms/dpi.h"
#include "forms/form.h"
#include "forms/image_combo_box.h"
#include "forms/list_box.h"
#include "forms/log_memo.h"
#include "forms/memo.h"
#include "forms/radio_group.h"
#include "forms/resource.h"
#include "forms/rules/layout_words.h"
#include "forms/std_controls.h"
#include "forms/web_view.h"
#include "forms/window_class.h"
#include "platform/code_page.h"
#include "platform/common_controls.h"

namespace {

template <class T>
std::unique_ptr<TControl> Make(TForm& form, const TLayoutItem& layout) {
  return std::make_unique<T>(form, layout);
}

struct TMaker {
  std::string_view Kind;
  std::unique_ptr<TControl> (*Make)(TForm&, const TLayoutItem&);
};

constexpr TMaker kMakers[] = {
    {"bitmap-button", Make<TBitBtn>},
    {"button", Make<TButton>},
    {"check-box", Make<TCheckBox>},
    {"check-list", Make<TCheckListBox>},
    {"combo-box", Make<TComboBox>},
    {"edit", Make<TEdit>},
    {"image-combo", Make<TImageComboBox>},
    {"label", Make<TLabel>},
    {"list-box", Make<TListBox>},
    {"log-memo", Make<TLogMemo>},
    {"memo", Make<TMemo>},
    {"progress-bar", Make<TProgressBar>},
    {"radio-group", Make<TRadioGroup>},
    {"speed-button", Make<TSpeedButton>},
    {"static-text", Make<TStaticText>},
    {"up-down", Make<TUpDown>},
    {"web", Make<TWebView>},
};
static_assert(std::ranges::equal(kMakers, kControlKinds, {}, &TMaker::Kind));

/// The layout of a class over those of the classes it inherits.
TLayout LoadLayout(const std::string& name) {
  TLayout layout = ParseLayout(LoadTextResource("FORM", name));
  if (layout.BaseName.empty()) return layout;
  return MergeLayouts(LoadLayout(layout.BaseName), layout);
}

/// The order in which Tab and screen readers meet the controls: a control without a place of its
/// own (a label) comes right before the next one that has one.
std::vector<TControl*> TabSequence(const std::vector<TControl*>& controls) {
  std::vector<std::pair<int, TControl*>> keyed;
  int next = INT_MAX;
  for (auto at = controls.rbegin(); at != controls.rend(); ++at) {
    if ((*at)->TabOrder() != INT_MAX) next = (*at)->TabOrder();
    keyed.emplace_back(next, *at);
  }
  std::ranges::reverse(keyed);
  std::ranges::stable_sort(keyed, {}, [](const auto& entry) { return entry.first; });
  std::vector<TControl*> sequence;
  sequence.reserve(keyed.size());
  for (const auto& entry : keyed) sequence.push_back(entry.second);
  return sequence;
}

/// Runs a step of making a form; an error in it names whose step it was.
template <class TStep>
void Naming(const std::string& name, TStep&& step) {
  try {
    step();
  } catch (const std::exception& error) {
    throw TLayoutError(name + ": " + error.what());
  }
}

}  // namespace

void TForm::Load() {
  const TOurControls controls;
  const TLayout layout = LoadLayout(ClassName());
  FLayout = layout.Form;
  FDpi = DpiOf(FParentWindow ? FParentWindow : Application().MainWindow());
  FFont = MakeFont();
  if (const auto* help = FLayout.Find("help")) FHelpContext = LayoutNumber(help->Values[0]);
  Naming(ClassName(), [&] {
    CreateFormWindow();
    CreateControls(layout);
    TFormBinder binder(*this);
    Bind(binder);
    BindEvents(binder);
  });
  if (FLayout.Find("show-hints")) FTips.emplace(*this);
  AnnotateControls(*this);
  if (const auto* active = FLayout.Find("active")) {
    FFirstActive = FActiveControl = &Child(active->Values[0]);
  }
  if (OnCreate) OnCreate();
}

TFontHandle TForm::MakeFont() const {
  const auto* name = FLayout.Find("font");
  const auto* height = FLayout.Find("font-height");
  const std::string face = name ? name->Values[0] : "MS Sans Serif";
  LOGFONTW font{};
  font.lfHeight = MulDiv(height ? LayoutNumber(height->Values[0]) : -11, FDpi, 96);
  font.lfCharSet = DEFAULT_CHARSET;
  // The bitmap font of that name has no sizes between: its outline twin takes over off 96 DPI.
  const bool bitmapFace = FDpi != 96 && face == "MS Sans Serif";
  const auto wide = bitmapFace ? std::wstring(L"Microsoft Sans Serif") : Utf8ToWide(face);
  wide.copy(font.lfFaceName, LF_FACESIZE - 1);
  return TFontHandle(CreateFontIndirectW(&font));
}

void TForm::CreateParams(TCreateParams& params) {
  const auto has = [&](const char* property, const char* value) {
    const auto* found = FLayout.Find(property);
    return found && std::ranges::find(found->Values, value) != found->Values.end();
  };
  // Children are not clipped: a group box shows the form between its radio buttons.
  params.Style = has("border", "none") ? 0 : WS_CAPTION;
  if (has("icons", "system")) params.Style |= WS_SYSMENU;
  if (has("icons", "minimize")) params.Style |= WS_MINIMIZEBOX;
  if (has("icons", "maximize")) params.Style |= WS_MAXIMIZEBOX;
  // The system offers the question mark only beside a lone close box.
  if (has("icons", "help")) params.ExStyle |= WS_EX_CONTEXTHELP;
  if (has("border", "sizeable") || has("border", "sizeable-tool")) {
    params.Style |= WS_THICKFRAME;
  } else if (has("border", "dialog")) {
    params.Style |= DS_MODALFRAME;
  }
  // This one also keeps the icon out of the caption.
  params.ExStyle |= WS_EX_DLGMODALFRAME;
  if (has("border", "sizeable-tool")) params.ExStyle |= WS_EX_TOOLWINDOW;
  if (FLayout.Find("stay-on-top")) params.ExStyle |= WS_EX_TOPMOST;
  params.ExStyle |= WS_EX_CONTROLPARENT;
  if (FParentWindow) {
    params.Style |= WS_CHILD | WS_CLIPSIBLINGS;
    params.Parent = FParentWindow;
    params.Centred = false;
  } else {
    params.Style |= WS_POPUP;
    params.Parent = Application().MainWindow();
  }
}

void TForm::CreateFormWindow() {
  const std::wstring className = Utf8ToWide(ClassName());
  RegisterWindowClass(className, FormProc, DLGWINDOWEXTRA + static_cast<int>(sizeof(TForm*)),
                      reinterpret_cast<HBRUSH>(COLOR_BTNFACE + 1));
  TCreateParams params;
  CreateParams(params);
  FCentred = params.Centred;
  const auto* caption = FLayout.Find("caption");
  // Any size that is more than borders: what is right is known once there are borders to measure.
  FHandle = CreateWindowExW(params.ExStyle, className.c_str(),
                            caption ? Utf8ToWide(caption->Values[0]).c_str() : L"", params.Style, 0,
                            0, Scaled(400), Scaled(200), params.Parent, nullptr,
                            TApplication::Instance(), this);
  if (!FHandle) throw std::runtime_error("window refused: " + std::string(ClassName()));
  SizeAsWanted();
  SendMessageW(FHandle, WM_SETFONT, reinterpret_cast<WPARAM>(FFont.Get()), FALSE);
}

void TForm::CreateControls(const TLayout& layout) {
  for (const auto& item : layout.Controls) {
    const auto maker = std::ranges::find(kMakers, item.Kind, &TMaker::Kind);
    FControls.push_back(&Adopt(maker->Make(*this, item)));
  }
  FArranged = TabSequence(FControls);
  MeasureControls();
  if (!Embedded()) FitTo(WorkAreaAround());
  const SIZE client = ClientSize();
  const auto boxes = FArrangement.At({static_cast<int>(client.cx), static_cast<int>(client.cy)});
  for (std::size_t i = 0; i < FArranged.size(); ++i) {
    const TBox& box = boxes[i];
    Naming(FArranged[i]->Name(), [&] {
      FArranged[i]->Create({box.Left, box.Top, box.Right, box.Bottom}, FFont.Get());
    });
  }
  ArrangeControls();
}

TNotifyEvent* TForm::FindEvent(std::string_view property) {
  const struct {
    std::string_view Property;
    TNotifyEvent* Event;
  } events[] = {{"click", &OnClick},  {"dblclick", &OnDblClick}, {"close", &OnClose},
                {"paint", &OnPaint},  {"show", &OnShow},         {"hide", &OnHide},
                {"create", &OnCreate}};
  const auto found =
      std::ranges::find(events, property, &std::decay_t<decltype(*events)>::Property);
  return found == std::end(events) ? nullptr : found->Event;
}

void TForm::BindEvents(const TFormBinder& binder) {
  const auto bindAll = [&](const TLayoutItem& item, auto findEvent) {
    for (const auto& property : item.Properties) {
      if (!FindLayoutWord(property.Name)->Event) continue;
      const std::string& handler = property.Values[0];
      if (property.Name == "close-query") {
        OnCloseQuery = TFormBinder::Find(binder.FCloseQueryHandlers, handler);
      } else if (property.Name == "help-event") {
        OnHelp = TFormBinder::Find(binder.FHelpHandlers, handler);
      } else if (TNotifyEvent* event = findEvent(property.Name)) {
        *event = TFormBinder::Find(binder.FHandlers, handler);
      } else {
        throw std::logic_error("no event behind " + property.Name);
      }
    }
  };
  bindAll(FLayout, [&](const std::string& property) { return FindEvent(property); });
  for (TControl* control : FControls) {
    const TLayoutItem& layout = control->Layout();
    Naming(control->Name(), [&] {
      bindAll(layout, [&](const std::string& property) { return control->FindEvent(property); });
    });
    if (layout.Find("default")) FDefaultButton = dynamic_cast<TButton*>(control);
    if (layout.Find("cancel")) FCancelButton = dynamic_cast<TButton*>(control);
  }
  if (FDefaultButton) SetDefaultButton(*FDefaultButton);
}
