#pragma once

#include <span>
#include <string_view>

/// A property that layouts give to forms or controls: what follows its name, and which kinds have
/// it. The table in layout_words.cpp is the only place that knows them; a control that reads a
/// property is listed there as one of its kinds.
struct TLayoutWord {
  enum class TToken { Word, Number, Text };

  std::string_view Name;
  unsigned Kinds;  ///< a bit for each kind, in the order of the table of kinds
  TToken Token = TToken::Word;
  int Count = 0;                                 ///< 0: a flag; -1: one or more
  std::span<const std::string_view> Words = {};  ///< allowed words; empty: any
  bool Event = false;                            ///< the value names a handler

  bool FitsKind(std::string_view kind) const;  ///< of a control, or "form"
  bool Allows(std::string_view value) const;
};

/// The kinds of controls: what may stand in a form, which itself is none of them.
inline constexpr std::string_view kControlKinds[] = {
    "bitmap-button", "button",       "check-box",   "check-list", "combo-box", "edit",
    "image-combo",   "label",        "list-box",    "log-memo",   "memo",      "progress-bar",
    "radio-group",   "speed-button", "static-text", "up-down",    "web"};

/// Null when no kind has such a property.
const TLayoutWord* FindLayoutWord(std::string_view name);

bool IsControlKind(std::string_view kind);
