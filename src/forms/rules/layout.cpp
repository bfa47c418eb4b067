#include "forms/rules/layout.h"

#include <algorithm>
#include <optional>

#include "forms/rules/layout_words.h"
#include "text/ascii.h"

namespace {

using TToken = TLayoutWord::TToken;

struct TLexeme {
  TToken Token;
  std::string Value;
  int Line;
  bool AtMargin;
};

/// Where the reader stands, for whoever has to mend the layout.
struct TLayoutPlace {
  std::string Form;
  std::string Item;
};

[[noreturn]] void Fail(const TLayoutPlace& place, int line, const std::string& what) {
  std::string where = place.Form.empty() ? "" : place.Form + ", ";
  where += "line " + std::to_string(line) + ": ";
  if (!place.Item.empty() && place.Item != place.Form) where += place.Item + ": ";
  throw TLayoutError(where + what);
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
  Fail({}, line, "a text is not closed");
}

std::optional<int> NumberOf(std::string_view word) {
  int number = 0;
  return ReadNumber(word, number) ? std::optional(number) : std::nullopt;
}

std::vector<TLexeme> Tokenize(std::string_view text) {
  std::vector<TLexeme> lexemes;
  int line = 1;
  for (std::size_t at = 0; at < text.size();) {
    const char c = text[at];
    const bool atMargin = at == 0 || text[at - 1] == '\n';
    if (c == '\n') {
      ++line;
      ++at;
    } else if (IsBlank(c)) {
      ++at;
    } else if (c == '#') {
      at = std::min(text.find('\n', at), text.size());
    } else if (c == '"') {
      lexemes.push_back({TToken::Text, ReadQuoted(text, at, line), line, atMargin});
    } else {
      const auto start = at;
      while (at < text.size() && !IsBlank(text[at]) && text[at] != '\n' && text[at] != '"') ++at;
      const auto word = text.substr(start, at - start);
      lexemes.push_back(
          {NumberOf(word) ? TToken::Number : TToken::Word, std::string(word), line, atMargin});
    }
  }
  return lexemes;
}

class TParser {
 public:
  explicit TParser(std::string_view text) : FLexemes(Tokenize(text)) {}

  TLayout Parse() {
    TLayout layout;
    if (FLexemes.empty() || FLexemes[0].Value != "form") Fail(1, "a layout starts with its form");
    layout.Form = ReadHead();
    FPlace.Form = layout.Form.Name;
    if (ItemGoesOn() && FLexemes[FAt].Value == "inherits") {
      ++FAt;
      layout.BaseName = Take(TToken::Word, "the name of the base");
    }
    ReadProperties(layout.Form);
    while (FAt < FLexemes.size()) {
      TLayoutItem item = ReadHead();
      if (!IsControlKind(item.Kind)) Fail(item.Line, "unknown kind " + item.Kind);
      for (const auto& other : layout.Controls) {
        if (other.Name == item.Name) Fail(item.Line, "is given twice");
      }
      ReadBounds(item);
      ReadProperties(item);
      layout.Controls.push_back(std::move(item));
    }
    return layout;
  }

 private:
  bool ItemGoesOn() const { return FAt < FLexemes.size() && !FLexemes[FAt].AtMargin; }

  int Line() const { return FLexemes[std::min(FAt, FLexemes.size() - 1)].Line; }

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
    item.Name = FPlace.Item = Take(TToken::Word, "the name");
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
      const TLayoutWord* word = FindLayoutWord(name);
      if (!word) Fail(Line(), "unknown property " + name);
      if (!word->FitsKind(item.Kind)) Fail(Line(), "a " + item.Kind + " takes no " + name);
      if (item.Find(name)) Fail(Line(), name + " is given twice");
      item.Properties.push_back({name, ReadValues(*word)});
    }
  }

  std::vector<std::string> ReadValues(const TLayoutWord& word) {
    std::vector<std::string> values;
    const auto limit = static_cast<std::size_t>(word.Count);  // of -1 there is none
    while (values.size() < limit && ItemGoesOn() && FLexemes[FAt].Token == word.Token) {
      const auto& value = FLexemes[FAt].Value;
      if (!word.Allows(value)) {
        // A list of words ends where the next property begins.
        if (!values.empty()) break;
        Fail(Line(), std::string(word.Name) + " cannot be " + value);
      }
      values.push_back(value);
      ++FAt;
    }
    if (word.Count < 0 ? values.empty() : values.size() < limit) {
      Fail(Line(), std::string(word.Name) + " lacks a value");
    }
    return values;
  }

  [[noreturn]] void Fail(int line, const std::string& what) const { ::Fail(FPlace, line, what); }

  std::vector<TLexeme> FLexemes;
  std::size_t FAt = 0;
  TLayoutPlace FPlace;
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
  const auto number = NumberOf(value);
  if (!number) throw TLayoutError(value + " is not a number");
  return *number;
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
      Fail({derived.Form.Name, item.Name}, item.Line, "is a " + found->Kind + " in the base");
    } else {
      MergeItem(*found, item);
    }
  }
  return base;
}
