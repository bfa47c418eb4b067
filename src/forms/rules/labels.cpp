#include "forms/rules/labels.h"

namespace {

constexpr int kTextHeight = 13;  // of one line in the forms' font
constexpr int kHighestGap = 11;  // between a text and the control below it

struct TPlace {
  int Left, Top, Bottom;
};

TPlace PlaceOf(const TLayoutItem& item) {
  const int top = item.Bounds[1].value_or(0);
  return {item.Bounds[0].value_or(0), top, top + item.Bounds[3].value_or(kTextHeight)};
}

/// A label, or a static text that has a caption: without one it stands for a value.
bool IsText(const TLayoutItem& item) {
  return item.Kind == "label" || (item.Kind == "static-text" && item.Find("caption"));
}

bool SameRow(const TPlace& text, const TPlace& control) {
  return text.Top < control.Bottom && text.Top + kTextHeight > control.Top;
}

}  // namespace

const TLayoutItem* LabelOf(const TLayoutItem& control,
                           const std::vector<const TLayoutItem*>& items) {
  const TPlace place = PlaceOf(control);
  const TLayoutItem* before = nullptr;  // on the row, nearest
  const TLayoutItem* above = nullptr;
  for (const TLayoutItem* item : items) {
    if (item == &control || item->Find("hidden")) continue;
    const TPlace other = PlaceOf(*item);
    if (SameRow(other, place) && other.Left < place.Left &&
        (!before || other.Left > PlaceOf(*before).Left)) {
      before = item;
    }
    if (IsText(*item) && other.Left == place.Left && other.Top < place.Top &&
        place.Top - other.Top <= kTextHeight + kHighestGap) {
      above = item;
    }
  }
  return before && IsText(*before) ? before : above;
}
