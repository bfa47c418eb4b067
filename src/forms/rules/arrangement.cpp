#include "forms/rules/arrangement.h"

#include <algorithm>
#include <climits>
#include <map>
#include <utility>

namespace {

/// One axis of a box: where it starts and ends, and which ends follow the form's far side.
struct TSpan {
  int Start;
  int End;
  bool KeepsNear;
  bool KeepsFar;
  int Least;

  bool StartMoves() const { return KeepsFar && !KeepsNear; }
  bool EndMoves() const { return KeepsFar; }
};

TSpan Across(const TArrangedItem& item) {
  return {item.Box.Left, item.Box.Right, item.Anchors.Left, item.Anchors.Right, item.Least.Width};
}

TSpan Down(const TArrangedItem& item) {
  return {item.Box.Top, item.Box.Bottom, item.Anchors.Top, item.Anchors.Bottom, item.Least.Height};
}

bool Overlap(const TSpan& a, const TSpan& b) { return a.Start < b.End && b.Start < a.End; }

/// By how much the form may shrink along an axis before one item is too small or out of sight.
int ShrinkOf(const TSpan& span, int design) {
  if (!span.EndMoves()) return design - span.End;
  // Anchored to both sides it gets smaller; to the far one only, it meets the near side at last.
  return span.StartMoves() ? span.Start : span.End - span.Start - span.Least;
}

/// By how much before two items, that stand apart along the axis, meet.
int ShrinkOf(const TSpan& a, const TSpan& b) {
  const auto [first, second] = std::ranges::minmax(a, b, {}, &TSpan::Start);
  if (first.EndMoves() || !second.StartMoves()) return INT_MAX;
  return second.Start - first.End;
}

void Place(int& start, int& end, const TSpan& span, int growth) {
  if (span.StartMoves()) start += growth;
  if (span.EndMoves()) end += growth;
}

}  // namespace

TArrangement::TArrangement(std::vector<TArrangedItem> items, TExtent design)
    : FItems(std::move(items)), FDesign(design) {
  int across = design.Width;
  int down = design.Height;
  std::vector<std::pair<TSpan, TSpan>> others;
  for (const auto& item : FItems) {
    if (!item.Shown) continue;
    const TSpan width = Across(item);
    const TSpan height = Down(item);
    across = std::min(across, ShrinkOf(width, design.Width));
    down = std::min(down, ShrinkOf(height, design.Height));
    for (const auto& [otherWidth, otherHeight] : others) {
      const bool besides = !Overlap(width, otherWidth);
      const bool below = !Overlap(height, otherHeight);
      // Those that stand apart both ways need to stay so one way only: the one with more room.
      const bool keepApartAcross =
          besides && (!below || ShrinkOf(width, otherWidth) > ShrinkOf(height, otherHeight));
      if (keepApartAcross) {
        across = std::min(across, ShrinkOf(width, otherWidth));
      } else if (below) {
        down = std::min(down, ShrinkOf(height, otherHeight));
      }
    }
    others.emplace_back(width, height);
  }
  FLeast = {design.Width - std::max(across, 0), design.Height - std::max(down, 0)};
}

std::vector<TBox> TArrangement::At(TExtent size) const {
  const int wider = std::max(size.Width, FLeast.Width) - FDesign.Width;
  const int higher = std::max(size.Height, FLeast.Height) - FDesign.Height;
  std::vector<TBox> boxes;
  for (const auto& item : FItems) {
    TBox box = item.Box;
    Place(box.Left, box.Right, Across(item), wider);
    Place(box.Top, box.Bottom, Down(item), higher);
    boxes.push_back(box);
  }
  return boxes;
}

void MakeRoomForLabels(std::vector<TArrangedItem>& items, const std::vector<std::size_t>& labels,
                       int gap) {
  const auto isLabel = [&](std::size_t i) { return std::ranges::find(labels, i) != labels.end(); };
  std::map<int, int> lacking;  // by the column that fields start in: how much it is too far left
  for (const std::size_t label : labels) {
    int column = INT_MAX;
    for (std::size_t i = 0; i < items.size(); ++i) {
      const int left = items[i].Box.Left;
      if (!isLabel(i) && items[i].Shown && left > items[label].Box.Left &&
          Overlap(Down(items[label]), Down(items[i]))) {
        column = std::min(column, left);
      }
    }
    lacking[column] = std::max(lacking[column], items[label].Box.Right + gap - column);
  }
  for (std::size_t i = 0; i < items.size(); ++i) {
    if (isLabel(i)) continue;
    auto& box = items[i].Box;
    box.Left = std::max(box.Left,
                        std::min(box.Left + lacking[box.Left], box.Right - items[i].Least.Width));
  }
}
