#include "text/xml_prolog.h"

#include <cstddef>

namespace {

/// Steps over the bytes of a prolog, leaving out the zero bytes of UTF-16.
class TPrologScan {
 public:
  explicit TPrologScan(std::string_view bytes) : FBytes(bytes) {}

  bool AtEnd() {
    while (FAt < FBytes.size() && FBytes[FAt] == '\0') ++FAt;
    return FAt >= FBytes.size();
  }
  char Peek() { return AtEnd() ? '\0' : FBytes[FAt]; }
  void Skip() { ++FAt; }

  /// Moves past the text if it is next.
  bool Take(std::string_view text) {
    const std::size_t start = FAt;
    for (const char c : text) {
      if (Peek() != c) {
        FAt = start;
        return false;
      }
      Skip();
    }
    return true;
  }

  void TakeThrough(std::string_view text) {
    while (!AtEnd() && !Take(text)) Skip();
  }

 private:
  std::string_view FBytes;
  std::size_t FAt = 0;
};

bool IsBlank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }

}  // namespace

bool MayHaveDocumentType(std::string_view bytes) {
  for (const std::string_view mark : {"\xEF\xBB\xBF", "\xFF\xFE", "\xFE\xFF"})
    if (bytes.starts_with(mark)) {
      bytes.remove_prefix(mark.size());
      break;
    }
  TPrologScan scan(bytes);
  for (;;) {
    while (IsBlank(scan.Peek())) scan.Skip();
    if (scan.AtEnd()) return false;
    if (scan.Take("<?"))
      scan.TakeThrough("?>");
    else if (scan.Take("<!--"))
      scan.TakeThrough("-->");
    else
      // Anything else that opens the document is its root element, or is not to be trusted.
      return scan.Take("<!") || !scan.Take("<");
  }
}
