#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/// What the header of an answer says of the body.
struct TResponseHead {
  int Status = 0;
  /// Bytes of the body; nothing when the end of the transfer tells.
  std::optional<std::uint64_t> Length;
  std::string Location;  ///< of a redirection
};

enum class TAnswer {
  Document,     ///< what was asked for
  Redirection,  ///< the document is elsewhere
  Refusal       ///< a word on why there is none, or only a part
};

TAnswer AnswerOf(int status);

/// Reads the lines of a header, the first one with the status. Nothing when it is none or was
/// broken off, or the length that it declares is no number: such an answer cannot be told to be
/// whole.
std::optional<TResponseHead> ParseResponseHead(std::string_view lines);
