#include "forms/rules/arrangement.h"

#include <algorithm>
#include <climits>
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
  if (!span.EndMoves()) return std::max(design - span.End, 0);
  // Anchored to both sides it gets smaller; to the far one only, it meets the near side at last.
  return span.StartMoves() ? std::max(span.Start, 0)
                           : std::max(span.End - span.Start - span.Least, 0);
}

/// By how much before two items, that stand apart along the axis, meet.
int ShrinkOf(const TSpan& a, const TSpan& b) {
  const TSpan& first = a.Start <= b.Start ? a : b;
  const TSpan& second = a.Start <= b.Start ? b : a;
  if (first.EndMoves() || !second.StartMoves()) return INT_MAX;
  return std::max(second.Start - first.End, 0);
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
  for (std::size_t i = 0; i < FItems.size(); ++i) {
    const TSpan width = Across(FItems[i]);
    const TSpan height = Down(FItems[i]);
    if (!FItems[i].Shown) continue;
    across = std::min(across, ShrinkOf(width, design.Width));
    down = std::min(down, ShrinkOf(height, design.Height));
    for (std::size_t j = 0; j < i; ++j) {
      if (!FItems[j].Shown) continue;
      const TSpan otherWidth = Across(FItems[j]);
      const TSpan otherHeight = Down(FItems[j]);
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
  }
  FLeast = {design.Width - across, design.Height - down};
}

std::vector<TBox> TArrangement::At(TExtent size) const {
  const int wider = std::max(size.Width, FLeast.Width) - FDesign.Width;
  const int higher = std::max(size.Height, FLeast.Height) - FDesign.Height;
  std::vector<TBox> boxes;
  boxes.reserve(FItems.size());
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
  // Every field by the column it starts in, and by how much that column is too far left.
  std::vector<std::pair<int, int>> columns;
  for (const std::size_t label : labels) {
    const TSpan line = Down(items[label]);
    const TArrangedItem* field = nullptr;
    for (std::size_t i = 0; i < items.size(); ++i) {
      if (isLabel(i) || !items[i].Shown || !Overlap(line, Down(items[i]))) continue;
      if (items[i].Box.Left <= items[label].Box.Left) continue;
      if (!field || items[i].Box.Left < field->Box.Left) field = &items[i];
    }
    if (!field) continue;
    const int lacking = items[label].Box.Right + gap - field->Box.Left;
    if (lacking > 0) columns.emplace_back(field->Box.Left, lacking);
  }
  for (std::size_t i = 0; i < items.size(); ++i) {
    if (isLabel(i)) continue;
    auto& box = items[i].Box;
    const int column = box.Left;
    for (const auto& [left, lacking] : columns) {
      if (left != column) continue;
      box.Left = std::max(box.Left, std::min(column + lacking, box.Right - items[i].Least.Width));
    }
  }
}
