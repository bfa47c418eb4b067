#include "forms/rules/layout.h"

#include <algorithm>
#include <charconv>
#include <span>

namespace {

enum class TToken { Word, Number, Text };

struct TLexeme {
  TToken Token;
  std::string Value;
  int Line;
  bool AtMargin;
};

[[noreturn]] void Fail(int line, const std::string& what) {
  throw TLayoutError("line " + std::to_string(line) + ": " + what);
}

bool IsBlank(char c) { return c == ' ' || c == '\t' || c == '\r'; }

std::string ReadQuoted(std::string_view text, std::size_t& at, int line) {
  std::string value;
  for (++at; at < text.size() && text[at] != '\n'; ++at) {
    if (text[at] != '"') {
      value += text[at];
    } else if (at + 1 < text.size() && text[at + 1] == '"') {
      value += text[at++];
    } else {
      ++at;
      return value;
    }
  }
  Fail(line, "a text is not closed");
}

bool IsNumber(std::string_view word) {
  const auto digits = word.starts_with('-') ? word.substr(1) : word;
  return !digits.empty() &&
         std::ranges::all_of(digits, [](char c) { return c >= '0' && c <= '9'; });
}

std::vector<TLexeme> Tokenize(std::string_view text) {
  std::vector<TLexeme> lexemes;
  int line = 1;
  bool lineStart = true;
  for (std::size_t at = 0; at < text.size();) {
    const char c = text[at];
    if (c == '\n') {
      ++line;
      lineStart = true;
      ++at;
    } else if (IsBlank(c)) {
      lineStart = false;
      ++at;
    } else if (c == '#') {
      at = std::min(text.find('\n', at), text.size());
    } else if (c == '"') {
      lexemes.push_back({TToken::Text, ReadQuoted(text, at, line), line, lineStart});
      lineStart = false;
    } else {
      const auto start = at;
      while (at < text.size() && !IsBlank(text[at]) && text[at] != '\n' && text[at] != '"') ++at;
      const auto word = text.substr(start, at - start);
      lexemes.push_back(
          {IsNumber(word) ? TToken::Number : TToken::Word, std::string(word), line, lineStart});
      lineStart = false;
    }
  }
  return lexemes;
}

/// What follows a property's name: how many values of which sort.
struct TPropertyShape {
  std::string_view Name;
  TToken Token = TToken::Word;
  int Count = 0;                                 ///< 0: a flag; -1: one or more
  std::span<const std::string_view> Words = {};  ///< allowed words; empty: any
};

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

constexpr TPropertyShape kProperties[] = {
    {"active", TToken::Word, 1, {}},
    {"anchors", TToken::Word, -1, kSides},
    {"bevel", TToken::Word, 1, kBevels},
    {"border", TToken::Word, 1, kBorders},
    {"cancel"},
    {"caption", TToken::Text, 1, {}},
    {"change", TToken::Word, 1, {}},
    {"checked"},
    {"click", TToken::Word, 1, {}},
    {"click-check", TToken::Word, 1, {}},
    {"client", TToken::Number, 2, {}},
    {"close", TToken::Word, 1, {}},
    {"close-query", TToken::Word, 1, {}},
    {"color", TToken::Word, 1, kColors},
    {"columns", TToken::Number, 1, {}},
    {"create", TToken::Word, 1, {}},
    {"cursor", TToken::Word, 1, kCursors},
    {"dblclick", TToken::Word, 1, {}},
    {"default"},
    {"disabled"},
    {"enter", TToken::Word, 1, {}},
    {"exit", TToken::Word, 1, {}},
    {"font", TToken::Text, 1, {}},
    {"font-height", TToken::Number, 1, {}},
    {"glyph", TToken::Word, 1, {}},
    {"help", TToken::Number, 1, {}},
    {"help-event", TToken::Word, 1, {}},
    {"hidden"},
    {"hide", TToken::Word, 1, {}},
    {"hint", TToken::Text, 1, {}},
    {"icons", TToken::Word, -1, kIcons},
    {"item", TToken::Number, 1, {}},
    {"items", TToken::Text, -1, {}},
    {"lines", TToken::Text, -1, {}},
    {"list-lines", TToken::Number, 1, {}},
    {"no-tab-stop"},
    {"paint", TToken::Word, 1, {}},
    {"position", TToken::Word, 1, kPositions},
    {"range", TToken::Number, 2, {}},
    {"read-only"},
    {"result", TToken::Number, 1, {}},
    {"scroll", TToken::Word, 1, kScrolls},
    {"show", TToken::Word, 1, {}},
    {"show-hints"},
    {"show-selection"},
    {"size", TToken::Number, 2, {}},
    {"sorted"},
    {"stay-on-top"},
    {"style", TToken::Word, 1, kStyles},
    {"tab", TToken::Number, 1, {}},
    {"wrap"},
};

constexpr std::string_view kKinds[] = {
    "bitmap-button", "button",       "check-box",   "check-list", "combo-box", "edit",
    "image-combo",   "label",        "list-box",    "log-memo",   "memo",      "progress-bar",
    "radio-group",   "speed-button", "static-text", "up-down",    "web"};

class TParser {
 public:
  explicit TParser(std::string_view text) : FLexemes(Tokenize(text)) {}

  TLayout Parse() {
    TLayout layout;
    if (FLexemes.empty() || FLexemes[0].Value != "form") Fail(1, "a layout starts with its form");
    layout.Form = ReadHead();
    if (FAt < FLexemes.size() && !FLexemes[FAt].AtMargin && FLexemes[FAt].Value == "inherits") {
      ++FAt;
      layout.BaseName = Take(TToken::Word, "the name of the base");
    }
    ReadProperties(layout.Form);
    while (FAt < FLexemes.size()) {
      TLayoutItem item = ReadHead();
      if (std::ranges::find(kKinds, item.Kind) == std::end(kKinds)) {
        Fail(item.Line, "unknown kind " + item.Kind);
      }
      for (const auto& other : layout.Controls) {
        if (other.Name == item.Name) Fail(item.Line, item.Name + " is given twice");
      }
      ReadBounds(item);
      ReadProperties(item);
      layout.Controls.push_back(std::move(item));
    }
    return layout;
  }

 private:
  bool ItemGoesOn() const { return FAt < FLexemes.size() && !FLexemes[FAt].AtMargin; }

  int Line() const {
    return FLexemes.empty() ? 1 : FLexemes[std::min(FAt, FLexemes.size() - 1)].Line;
  }

  std::string Take(TToken token, const std::string& what) {
    if (!ItemGoesOn() || FLexemes[FAt].Token != token) Fail(Line(), what + " is missing");
    return FLexemes[FAt++].Value;
  }

  TLayoutItem ReadHead() {
    const auto& kind = FLexemes[FAt];
    if (!kind.AtMargin || kind.Token != TToken::Word)
      Fail(kind.Line, "an item starts with its kind");
    ++FAt;
    TLayoutItem item;
    item.Kind = kind.Value;
    item.Line = kind.Line;
    item.Name = Take(TToken::Word, "the name");
    return item;
  }

  void ReadBounds(TLayoutItem& item) {
    std::size_t count = 0;
    while (count < 4 && ItemGoesOn() && FLexemes[FAt].Token == TToken::Number) {
      item.Bounds[count++] = LayoutNumber(FLexemes[FAt++].Value);
    }
    if (count == 1 || count == 3) Fail(item.Line, "a position has two or four numbers");
  }

  void ReadProperties(TLayoutItem& item) {
    while (ItemGoesOn()) {
      const std::string name = Take(TToken::Word, "a property");
      const auto shape = std::ranges::find(kProperties, name, &TPropertyShape::Name);
      if (shape == std::end(kProperties)) Fail(Line(), "unknown property " + name);
      if (item.Find(name)) Fail(Line(), name + " is given twice");
      item.Properties.push_back({name, ReadValues(*shape)});
    }
  }

  std::vector<std::string> ReadValues(const TPropertyShape& shape) {
    std::vector<std::string> values;
    const auto allowed = [&](const TLexeme& lexeme) {
      return lexeme.Token == shape.Token &&
             (shape.Words.empty() ||
              std::ranges::find(shape.Words, lexeme.Value) != shape.Words.end());
    };
    const auto limit = shape.Count < 0 ? ~std::size_t{0} : static_cast<std::size_t>(shape.Count);
    while (values.size() < limit && ItemGoesOn() && allowed(FLexemes[FAt])) {
      values.push_back(FLexemes[FAt++].Value);
    }
    if (shape.Count < 0 ? values.empty() : values.size() < limit) {
      Fail(Line(), std::string(shape.Name) + " lacks a value");
    }
    return values;
  }

  std::vector<TLexeme> FLexemes;
  std::size_t FAt = 0;
};

void MergeItem(TLayoutItem& base, const TLayoutItem& derived) {
  for (std::size_t i = 0; i < base.Bounds.size(); ++i) {
    if (derived.Bounds[i]) base.Bounds[i] = derived.Bounds[i];
  }
  for (const auto& property : derived.Properties) {
    const auto found = std::ranges::find(base.Properties, property.Name, &TLayoutProperty::Name);
    if (found == base.Properties.end()) {
      base.Properties.push_back(property);
    } else {
      found->Values = property.Values;
    }
  }
}

}  // namespace

const TLayoutProperty* TLayoutItem::Find(std::string_view property) const {
  const auto found = std::ranges::find(Properties, property, &TLayoutProperty::Name);
  return found == Properties.end() ? nullptr : &*found;
}

int LayoutNumber(const std::string& value) {
  int number = 0;
  const auto [end, error] = std::from_chars(value.data(), value.data() + value.size(), number);
  if (error != std::errc() || end != value.data() + value.size()) {
    throw TLayoutError(value + " is not a number");
  }
  return number;
}

TLayout ParseLayout(std::string_view text) { return TParser(text).Parse(); }

TLayout MergeLayouts(TLayout base, const TLayout& derived) {
  MergeItem(base.Form, derived.Form);
  base.Form.Name = derived.Form.Name;
  base.BaseName = derived.BaseName;
  for (const auto& item : derived.Controls) {
    const auto found = std::ranges::find(base.Controls, item.Name, &TLayoutItem::Name);
    if (found == base.Controls.end()) {
      base.Controls.push_back(item);
    } else if (found->Kind != item.Kind) {
      Fail(item.Line, item.Name + " is a " + found->Kind + " in the base");
    } else {
      MergeItem(*found, item);
    }
  }
  return base;
}
