#pragma once

#include <array>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

/// The text that describes a form: one item a control, all texts UTF-8, positions in pixels at
/// 96 DPI.
///
///     # comment
///     form TDlgDebug inherits TDlgBase
///       caption "DlgDebug"  client 382 150
///     button Clear 8 115 75 25  caption "Vider"  anchors left bottom  click ClearClick
///
/// An item starts at the left margin and goes on over indented lines. After the kind and the name
/// come none, two (left, top) or four (left, top, width, height) numbers, then properties. A double
/// quote inside a text is doubled. The words stand in layout_words.cpp.

class TLayoutError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

struct TLayoutProperty {
  std::string Name;
  std::vector<std::string> Values;
};

struct TLayoutItem {
  std::string Kind;
  std::string Name;
  std::array<std::optional<int>, 4> Bounds;  ///< left, top, width, height
  std::vector<TLayoutProperty> Properties;   ///< each name once
  int Line = 0;                              ///< where the item starts, 1-based

  const TLayoutProperty* Find(std::string_view property) const;
};

struct TLayout {
  std::string BaseName;  ///< class whose layout this one inherits, or empty
  TLayoutItem Form;      ///< kind "form", name = the class
  std::vector<TLayoutItem> Controls;
};

/// Throws TLayoutError that names form, line, control and word for anything that layout_words.cpp
/// does not know: a kind, a property, one that the kind does not take, a value; and for a wrong
/// number of values or a name given twice.
TLayout ParseLayout(std::string_view text);

/// The derived layout over its base: properties given again replace the base's, new controls follow
/// the base's. An inherited control keeps its kind; giving another one throws TLayoutError.
TLayout MergeLayouts(TLayout base, const TLayout& derived);

/// A number value; throws TLayoutError when it is none.
int LayoutNumber(const std::string& value);
