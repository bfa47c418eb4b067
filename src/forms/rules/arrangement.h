#pragma once

#include <cstddef>
#include <vector>

/// Where the controls of a form stand when it is not as large as it was designed: by their anchors,
/// and never so narrow or so low that controls would meet. All numbers are pixels of one scale.

struct TExtent {
  int Width = 0;
  int Height = 0;
};

struct TBox {
  int Left = 0;
  int Top = 0;
  int Right = 0;
  int Bottom = 0;
};

/// Which sides of the form a control keeps its distance to.
struct TAnchors {
  bool Left = true;
  bool Top = true;
  bool Right = false;
  bool Bottom = false;
};

struct TArrangedItem {
  TBox Box;  ///< at the designed size
  TAnchors Anchors;
  TExtent Least;  ///< what is left of it when both opposite sides come closer
  bool Shown = true;
};

class TArrangement {
 public:
  TArrangement() = default;
  TArrangement(std::vector<TArrangedItem> items, TExtent design);

  TExtent Design() const { return FDesign; }
  /// The smallest size at which everything can still be told apart; never more than the design.
  TExtent Least() const { return FLeast; }
  /// The items' places at a size, in their order. Below the least size they stay as they are there.
  std::vector<TBox> At(TExtent size) const;

 private:
  std::vector<TArrangedItem> FItems;
  TExtent FDesign;
  TExtent FLeast;
};

/// Makes room for labels that need more than the layout foresaw: the field beside one starts
/// further right, and so does whatever else starts where that field did, so that a column stays
/// one. Right sides stay where they are. `labels` are the indexes of the items that are as wide as
/// their text.
void MakeRoomForLabels(std::vector<TArrangedItem>& items, const std::vector<std::size_t>& labels,
                       int gap);
