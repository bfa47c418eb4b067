#include "forms/form_loader.h"

#include <algorithm>
#include <climits>

#include "forms/buttons.h"
#include "forms/check_list_box.h"
#include "forms/combo_box.h"
#include "forms/image_combo_box.h"
#include "forms/list_box.h"
#include "forms/log_memo.h"
#include "forms/memo.h"
#include "forms/radio_group.h"
#include "forms/resource.h"
#include "forms/rules/layout_words.h"
#include "forms/std_controls.h"
#include "forms/web_view.h"

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

}  // namespace

TLayout LoadLayout(const std::string& className) {
  TLayout layout = ParseLayout(LoadTextResource("FORM", className));
  if (layout.BaseName.empty()) return layout;
  return MergeLayouts(LoadLayout(layout.BaseName), layout);
}

std::unique_ptr<TControl> MakeControl(TForm& form, const TLayoutItem& layout) {
  return std::ranges::find(kMakers, layout.Kind, &TMaker::Kind)->Make(form, layout);
}

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
