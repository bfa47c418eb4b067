#include "update/rules/response_head.h"

#include <algorithm>

#include "text/ascii.h"
#include "text/trimmed.h"

namespace {

/// Takes what stands before the separator off the text, and the separator with it.
std::string_view CutTo(std::string_view& text, char separator) {
  const auto end = std::min(text.find(separator), text.size());
  const auto part = text.substr(0, end);
  text.remove_prefix(std::min(end + 1, text.size()));
  return part;
}

/// A server may repeat a length, as long as it is the same.
bool ReadLength(std::string_view list, std::optional<std::uint64_t>& length) {
  do {
    std::uint64_t number = 0;
    if (!ReadNumber(Trimmed(CutTo(list, ',')), number)) return false;
    if (length && *length != number) return false;
    length = number;
  } while (!list.empty());
  return true;
}

bool ReadStatus(std::string_view line, int& status) {
  return CutTo(line, ' ').starts_with("HTTP/") &&
         ReadNumber(CutTo(line = Trimmed(line), ' '), status);
}

}  // namespace

TAnswer AnswerOf(int status) {
  switch (status) {
    case 200:
    case 203:
      return TAnswer::Document;
    case 301:
    case 302:
    case 303:
    case 307:
    case 308:
      return TAnswer::Redirection;
    default:
      return TAnswer::Refusal;
  }
}

std::optional<TResponseHead> ParseResponseHead(std::string_view lines) {
  TResponseHead head;
  bool endTells = false;
  if (!ReadStatus(Trimmed(CutTo(lines, '\n')), head.Status)) return std::nullopt;
  bool ended = false;
  while (!lines.empty() && !ended) {
    std::string_view value = CutTo(lines, '\n');
    const bool field = value.find(':') != std::string_view::npos;
    const std::string name = LoweredAscii(Trimmed(CutTo(value, ':')));
    // The system's client may pass on a head that the server broke off. Whether a whole one ends in
    // an empty line is the system's affair.
    ended = field ? lines.empty() : name.empty();
    value = Trimmed(value);
    if (name == "location") head.Location = value;
    if (name == "transfer-encoding") endTells = true;
    if (name == "content-length" && !ReadLength(value, head.Length)) return std::nullopt;
  }
  if (!ended) return std::nullopt;
  if (endTells) head.Length.reset();
  return head;
}
