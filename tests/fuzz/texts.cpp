// Texts from outside that are read or refused: layouts, answers and addresses of servers,
// documents.

#include "forms/rules/layout.h"
#include "fuzz.h"
#include "text/xml_text.h"
#include "update/rules/response_head.h"
#include "update/rules/web_address.h"

namespace {

void CheckAddress(const TWebAddress& address) {
  for (const char c : address.Target) Check(c > ' ' && c < 0x7F);
  Check(address.Target.starts_with('/') && address.Port != 0 && !address.Host.empty());
  const std::string text = (address.Secure ? "https://" : "http://") + address.Host + ":" +
                           std::to_string(address.Port) + address.Target;
  Check(ParseWebAddress(text) == address);
}

const bool layout = Target("layout", [](TInput input) {
  // A message is read up to the first zero.
  const std::string text = input.Text('\0');
  try {
    ParseLayout(text);
  } catch (const TLayoutError& error) {
    Check(std::string_view(error.what()).find("line ") != std::string_view::npos);
  }
});

const bool web = Target("web", [](TInput input) {
  const std::string location = input.Text('\0'), base = input.Text('\0'), lines = input.Rest();
  const auto head = ParseResponseHead(lines);
  Check(!head || head->Location.find('\n') == std::string::npos);
  const auto from = ParseWebAddress(base);
  if (!from) return;
  CheckAddress(*from);
  if (const auto next = FollowLocation(*from, location)) {
    CheckAddress(*next);
    Check(next->Secure || !from->Secure);
  }
});

const bool xml = Target("xml", [](TInput input) {
  const std::string bytes = input.Rest();
  Check(XmlEncodingOf(bytes).MarkSize <= bytes.size());
  std::u16string text(bytes.begin(), bytes.end());
  if (bytes.starts_with('\xFF'))
    text.assign(reinterpret_cast<const char16_t*>(bytes.data()), bytes.size() / 2);
  if (PrepareXmlText(text) != TXmlText::Ready) return;
  Check(text.find(u'\r') == std::u16string::npos);
  std::u16string again = text;
  // A second name of an encoding, which no reader takes, may be found broken then.
  const TXmlText outcome = PrepareXmlText(again);
  Check(outcome == TXmlText::Broken || (outcome == TXmlText::Ready && again.size() == text.size()));
});

}  // namespace
