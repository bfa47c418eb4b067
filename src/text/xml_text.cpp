#include "text/xml_text.h"

#include <algorithm>
#include <array>
#include <optional>
#include <utility>

#include "text/ascii.h"

namespace {

bool IsBlank(char16_t c) { return c == u' ' || c == u'\t' || c == u'\r' || c == u'\n'; }

/// Steps over a prolog. Every step says whether what it was to step over is there.
template <class TChar>
class TScan {
 public:
  using TText = std::basic_string_view<TChar>;

  explicit TScan(TText text) : FText(text) {}

  std::size_t At() const { return FAt; }
  bool AtEnd() const { return FAt == FText.size(); }
  TChar Next() const { return AtEnd() ? TChar() : FText[FAt]; }
  void Skip() { ++FAt; }
  bool SkipBlanks() {
    const std::size_t start = FAt;
    while (!AtEnd() && IsBlank(static_cast<char16_t>(FText[FAt]))) ++FAt;
    return FAt > start;
  }
  bool Take(std::string_view ascii) {
    const bool there =
        std::ranges::equal(FText.substr(FAt, ascii.size()), ascii,
                           [](TChar c, char a) { return c == static_cast<TChar>(a); });
    if (there) FAt += ascii.size();
    return there;
  }
  /// A comment or a processing instruction, to its end; to the text's end, where nothing can follow
  /// that must, when it has none.
  bool TakeAside() {
    const bool comment = Take("<!--");
    if (!comment && !Take("<?")) return false;
    while (!AtEnd() && !Take(comment ? "-->" : "?>")) ++FAt;
    return true;
  }
  /// A text between quotes.
  std::optional<TText> TakeQuoted() {
    const TChar quote = Next();
    if (quote != TChar('"') && quote != TChar('\'')) return std::nullopt;
    const std::size_t end = FText.find(quote, FAt + 1);
    if (end == TText::npos) return std::nullopt;
    const TText quoted = FText.substr(FAt + 1, end - FAt - 1);
    FAt = end + 1;
    return quoted;
  }

 private:
  TText FText;
  std::size_t FAt = 0;
};

template <class TChar>
struct TNamedEncoding {
  std::basic_string_view<TChar> Name;
  std::size_t Start, End;  ///< of the whole attribute of the declaration
};

/// What the declaration at the text's start says of the encoding.
template <class TChar>
std::optional<TNamedEncoding<TChar>> NamedEncoding(std::basic_string_view<TChar> text) {
  TScan<TChar> scan(text);
  if (!scan.Take("<?xml")) return std::nullopt;
  std::size_t start = 0;
  std::optional<std::basic_string_view<TChar>> value;
  for (const std::string_view attribute : {"version", "encoding"}) {
    const bool isApart = scan.SkipBlanks();
    start = scan.At();
    if (!isApart || !scan.Take(attribute)) return std::nullopt;
    scan.SkipBlanks();
    if (!scan.Take("=")) return std::nullopt;
    scan.SkipBlanks();
    value = scan.TakeQuoted();
    if (!value) return std::nullopt;
  }
  return TNamedEncoding<TChar>{*value, start, scan.At()};
}

/// The system's number of the code page that a declaration names.
unsigned CodePageOf(std::string_view name) {
  const std::string lower = LoweredAscii(name);
  // Plain ASCII is read as what it is part of, which refuses other bytes.
  static constexpr std::pair<std::string_view, unsigned> names[] = {
      {"utf-8", TXmlEncoding::Utf8},
      {"us-ascii", TXmlEncoding::Utf8},
      {"macintosh", 10000},
      {"koi8-r", 20866},
      {"shift_jis", 932},
      {"gb2312", 936},
      {"euc-kr", 949},
      {"big5", 950}};
  for (const auto& [known, page] : names)
    if (lower == known) return page;
  static constexpr std::pair<std::string_view, unsigned> families[] = {
      {"windows-", 0}, {"iso-8859-", 28590}, {"ibm", 0}};
  for (const auto& [family, base] : families) {
    if (!lower.starts_with(family)) continue;
    unsigned number = 0;
    if (ReadNumber(std::string_view(lower).substr(family.size()), number) && number != 0)
      return base + number;
  }
  return TXmlEncoding::Unknown;
}

/// A character by itself that stays what it is: nearly every one.
bool IsPlain(char16_t c) {
  return (c >= u' ' && c < 0xD800) || c == u'\n' || c == u'\t' || (c >= 0xE000 && c < 0xFFFE);
}

/// Puts line feeds for the ends of lines. False when there is anything else than characters.
bool NormalizeCharacters(std::u16string& text) {
  // Up to the first end of line that is to be another, everything stays where it is.
  auto to = static_cast<std::size_t>(std::ranges::find_if_not(text, IsPlain) - text.begin());
  for (std::size_t i = to; i < text.size(); ++i) {
    const char16_t c = text[i];
    if (IsPlain(c)) {
      text[to++] = c;
    } else if (c == u'\r') {
      if (text[i + 1] != u'\n') text[to++] = u'\n';  // past the last character is a zero
    } else {
      const bool isLead = c >= 0xD800 && c < 0xDC00;
      if (!isLead || ++i == text.size() || text[i] < 0xDC00 || text[i] >= 0xE000) return false;
      text[to++] = c;
      text[to++] = text[i];
    }
  }
  text.resize(to);
  return true;
}

using TTextScan = TScan<char16_t>;

/// One declaration of the internal part, to its end.
TXmlText TakeDeclaration(TTextScan& scan) {
  if (scan.Take("<!ENTITY")) return TXmlText::DefinesEntities;
  if (!scan.Take("<!ELEMENT") && !scan.Take("<!ATTLIST") && !scan.Take("<!NOTATION"))
    return TXmlText::Broken;
  while (!scan.Take(">")) {
    if (scan.AtEnd()) return TXmlText::Broken;
    if (scan.Next() == u'%') return TXmlText::DefinesEntities;
    if (!scan.TakeQuoted()) scan.Skip();
  }
  return TXmlText::Ready;
}

TXmlText TakeInternalPart(TTextScan& scan) {
  for (;;) {
    scan.SkipBlanks();
    if (scan.Take("]")) return TXmlText::Ready;
    if (scan.Next() == u'%') return TXmlText::DefinesEntities;
    if (scan.TakeAside()) continue;
    const TXmlText declaration = TakeDeclaration(scan);
    if (declaration != TXmlText::Ready) return declaration;
  }
}

/// What follows "<!DOCTYPE", to its end.
TXmlText TakeDocumentType(TTextScan& scan) {
  if (!scan.SkipBlanks()) return TXmlText::Broken;
  while (!scan.Take(">")) {
    if (scan.AtEnd()) return TXmlText::Broken;
    if (scan.Take("[")) {
      const TXmlText part = TakeInternalPart(scan);
      scan.SkipBlanks();
      if (part == TXmlText::Ready && !scan.Take(">")) return TXmlText::Broken;
      return part;
    }
    if (scan.Next() == u'<') return TXmlText::Broken;
    if (!scan.TakeQuoted()) scan.Skip();
  }
  return TXmlText::Ready;
}

void Blank(std::u16string& text, std::size_t start, std::size_t end) {
  std::fill(text.begin() + static_cast<std::ptrdiff_t>(start),
            text.begin() + static_cast<std::ptrdiff_t>(end), u' ');
}

}  // namespace

TXmlEncoding XmlEncodingOf(std::string_view bytes) {
  using namespace std::string_view_literals;
  if (bytes.starts_with("\xEF\xBB\xBF")) return {TXmlEncoding::Utf8, 3};
  if (bytes.starts_with("\xFF\xFE")) return {TXmlEncoding::Utf16, 2};
  if (bytes.starts_with("\xFE\xFF")) return {TXmlEncoding::Utf16BigEndian, 2};
  if (bytes.starts_with("<\0"sv)) return {TXmlEncoding::Utf16, 0};
  if (bytes.starts_with("\0<"sv)) return {TXmlEncoding::Utf16BigEndian, 0};
  const auto named = NamedEncoding(bytes);
  return {named ? CodePageOf(named->Name) : TXmlEncoding::Utf8, 0};
}

TXmlText PrepareXmlText(std::u16string& text) {
  if (!NormalizeCharacters(text)) return TXmlText::Broken;
  if (const auto named = NamedEncoding(std::u16string_view(text))) {
    // Else a quote that is not closed might take the document along.
    if (named->Name.find_first_of(u"<>?") != std::u16string_view::npos) return TXmlText::Broken;
    Blank(text, named->Start, named->End);
  }
  TTextScan scan(text);
  for (bool mayHaveType = true;;) {
    scan.SkipBlanks();
    if (scan.TakeAside()) continue;
    const std::size_t start = scan.At();
    if (!std::exchange(mayHaveType, false) || !scan.Take("<!DOCTYPE")) {
      return scan.Take("<") && scan.Next() != u'!' ? TXmlText::Ready : TXmlText::Broken;
    }
    const TXmlText type = TakeDocumentType(scan);
    if (type != TXmlText::Ready) return type;
    Blank(text, start, scan.At());
  }
}
