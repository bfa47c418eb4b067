#include "forms/rules/layout_words.h"

#include <algorithm>

namespace {

using enum TLayoutWord::TToken;

/// Nothing for a word that is no kind: a wrong one in the tables below does not compile.
consteval unsigned Kinds(std::initializer_list<std::string_view> names) {
  unsigned bits = 0;
  for (const auto name : names) {
    const auto found = std::ranges::find(kControlKinds, name);
    if (found == std::end(kControlKinds)) throw "no such kind";
    bits |= 1u << (found - kControlKinds);
  }
  return bits;
}

constexpr unsigned kControls = (1u << std::size(kControlKinds)) - 1;
constexpr unsigned kForm = 1u << std::size(kControlKinds);
constexpr unsigned kTexts = Kinds({"label", "static-text"});
constexpr unsigned kMemos = Kinds({"log-memo", "memo"});
constexpr unsigned kEdits = kMemos | Kinds({"edit"});
constexpr unsigned kPictureButtons = Kinds({"bitmap-button", "speed-button"});
constexpr unsigned kButtons = kPictureButtons | Kinds({"button"});
constexpr unsigned kCombos = Kinds({"combo-box", "image-combo"});
constexpr unsigned kLists = Kinds({"check-list", "list-box"});
constexpr unsigned kFocusable = kControls & ~(kTexts | Kinds({"progress-bar"}));

constexpr std::string_view kSides[] = {"left", "top", "right", "bottom"};
constexpr std::string_view kIcons[] = {"system", "minimize", "maximize", "help", "none"};
constexpr std::string_view kBorders[] = {"dialog", "sizeable", "sizeable-tool", "none"};
constexpr std::string_view kPositions[] = {"main-form", "screen", "designed"};
constexpr std::string_view kScrolls[] = {"none", "vertical", "horizontal", "both"};
constexpr std::string_view kStyles[] = {"drop-down", "drop-down-list"};
constexpr std::string_view kColors[] = {
    "window", "info", "face", "inactive-border", "inactive-gradient", "inactive-text"};
constexpr std::string_view kCursors[] = {"default", "hand"};
constexpr std::string_view kBevels[] = {"none", "sunken"};

constexpr TLayoutWord Event(std::string_view name, unsigned kinds) {
  return {name, kinds, Word, 1, {}, true};
}

constexpr TLayoutWord kWords[] = {
    {"active", kForm, Word, 1},
    {"anchors", kControls, Word, -1, kSides},
    {"bevel", kTexts, Word, 1, kBevels},
    {"border", kForm, Word, 1, kBorders},
    {"cancel", kButtons},
    {"caption", kForm | kControls, Text, 1},
    Event("change", kEdits | kCombos),
    {"checked", Kinds({"check-box"})},
    Event("click", kForm | kButtons | kLists | Kinds({"check-box", "radio-group", "up-down"})),
    Event("click-check", Kinds({"check-list"})),
    {"client", kForm, Number, 2},
    Event("close", kForm),
    Event("close-query", kForm),
    {"color", kControls, Word, 1, kColors},
    {"columns", Kinds({"radio-group"}), Number, 1},
    Event("create", kForm),
    {"cursor", kControls, Word, 1, kCursors},
    Event("dblclick", kForm | kLists),
    {"default", kButtons},
    {"disabled", kControls},
    Event("enter", kFocusable),
    Event("exit", kFocusable),
    {"font", kForm, Text, 1},
    {"font-height", kForm, Number, 1},
    {"glyph", kPictureButtons, Word, 1},
    {"help", kForm | kControls, Number, 1},
    Event("help-event", kForm),
    {"hidden", kControls},
    Event("hide", kForm),
    {"hint", kControls, Text, 1},
    {"icons", kForm, Word, -1, kIcons},
    {"item", Kinds({"radio-group"}), Number, 1},
    {"items", Kinds({"radio-group"}), Text, -1},
    {"lines", kMemos, Text, -1},
    {"list-lines", kCombos, Number, 1},
    {"no-tab-stop", kFocusable},
    Event("paint", kForm),
    {"position", kForm, Word, 1, kPositions},
    {"range", Kinds({"progress-bar", "up-down"}), Number, 2},
    {"read-only", kEdits},
    {"result", kButtons, Number, 1},
    {"scroll", kMemos, Word, 1, kScrolls},
    Event("show", kForm),
    {"show-hints", kForm},
    {"show-selection", kEdits},
    {"size", kForm, Number, 2},
    {"sorted", Kinds({"combo-box", "list-box"})},
    {"stay-on-top", kForm},
    {"style", Kinds({"combo-box"}), Word, 1, kStyles},
    {"tab", kControls, Number, 1},
};

}  // namespace

bool TLayoutWord::FitsKind(std::string_view kind) const {
  const auto found = std::ranges::find(kControlKinds, kind);
  // The bit of the form, which is none of them, follows theirs.
  return (Kinds & 1u << static_cast<unsigned>(found - std::begin(kControlKinds))) != 0;
}

bool TLayoutWord::Allows(std::string_view value) const {
  return Words.empty() || std::ranges::find(Words, value) != Words.end();
}

const TLayoutWord* FindLayoutWord(std::string_view name) {
  const auto found = std::ranges::find(kWords, name, &TLayoutWord::Name);
  return found == std::end(kWords) ? nullptr : found;
}

bool IsControlKind(std::string_view kind) {
  return std::ranges::find(kControlKinds, kind) != std::end(kControlKinds);
}
