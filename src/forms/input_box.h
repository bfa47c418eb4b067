#pragma once

#include <optional>
#include <string>
#include <string_view>

/// Asks for a line of text in a modal box of one edit, OK and Cancel. Caption and prompt are our
/// own UTF-8; the texts typed are in the host's ANSI code page. The answer, which may be empty, or
/// nothing when the user cancelled.
std::optional<std::string> InputBox(std::string_view captionUtf8, std::string_view promptUtf8,
                                    std::string_view value);
