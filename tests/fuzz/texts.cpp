// Texts from outside that are read or refused: layouts, answers and addresses of servers,
// documents.

#include "forms/rules/glyph.h"
#include "forms/rules/labels.h"
#include "forms/rules/layout.h"
#include "fuzz.h"
#include "text/xml_text.h"
#include "update/rules/response_head.h"
#include "update/rules/web_address.h"

namespace {

void CheckLayout(const TLayout& layout) {
  std::vector<const TLayoutItem*> items;
  for (const auto& control : layout.Controls) {
    for (const TLayoutItem* other : items) Check(other->Name != control.Name);
    items.push_back(&control);
    for (const auto& property : control.Properties) Check(control.Find(property.Name) == &property);
  }
  for (const TLayoutItem* item : items) {
    const TLayoutItem* label = LabelOf(*item, items);
    Check(label == nullptr || label->Kind == "label" || label->Kind == "static-text");
  }
  const TLayout twice = MergeLayouts(layout, layout);
  Check(twice.Controls.size() == layout.Controls.size());
  Check(twice.Form.Properties.size() == layout.Form.Properties.size());
}

void CheckAddress(const TWebAddress& address) {
  for (const char c : address.Target) Check(c > ' ' && c < 0x7F);
  Check(address.Target.starts_with('/') && address.Port != 0 && !address.Host.empty());
  const std::string text = (address.Secure ? "https://" : "http://") + address.Host + ":" +
                           std::to_string(address.Port) + address.Target;
  Check(ParseWebAddress(text) == address);
}

}  // namespace

void FuzzLayout(TInput input) {
  // A message is read up to the first zero.
  const std::string text = input.Text('\0');
  try {
    CheckLayout(ParseLayout(text));
  } catch (const TLayoutError& error) {
    Check(std::string_view(error.what()).find("line ") != std::string_view::npos);
  }
  try {
    const TGlyph glyph = ParseGlyph(text);
    Check(ScaleGlyph(glyph, 20).Pixels.size() == 400);
  } catch (const TLayoutError&) {
  }
}

void FuzzWeb(TInput input) {
  const std::string location = input.Text('\0'), base = input.Text('\0'), lines = input.Rest();
  const auto head = ParseResponseHead(lines);
  Check(!head || head->Location.find('\n') == std::string::npos);
  const auto from = ParseWebAddress(base);
  if (!from) return;
  CheckAddress(*from);
  for (const auto& next : {FollowLocation(*from, location),
                           FollowLocation(*from, head ? head->Location : std::string())}) {
    if (!next) continue;
    CheckAddress(*next);
    Check(next->Secure || !from->Secure);
  }
}

void FuzzXml(TInput input) {
  const std::string bytes = input.Rest();
  Check(XmlEncodingOf(bytes).MarkSize <= bytes.size());
  std::u16string text(bytes.begin(), bytes.end());
  if (bytes.starts_with('\xFF')) {
    text.assign(reinterpret_cast<const char16_t*>(bytes.data()), bytes.size() / 2);
  }
  const std::u16string before = text;
  if (PrepareXmlText(text) != TXmlText::Ready) return;
  Check(text.find(u'\r') == std::u16string::npos && text.size() <= before.size());
  std::u16string again = text;
  Check(PrepareXmlText(again) == TXmlText::Ready && again.size() == text.size());
}
