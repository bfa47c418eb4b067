#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

/// How many characters from the start of a line fit into the width there is.
using TFitting = std::function<std::size_t(std::wstring_view line)>;

/// The lines that a text takes: broken at its own line ends, else at blanks, which vanish there,
/// and inside a word only where it is wider than a line. A line holds one character at least, and
/// never half of a surrogate pair. Of a text that takes more than `most` lines the rest is dropped,
/// and the last line ends in an ellipsis; what is dropped is never measured.
std::vector<std::wstring> WrapText(std::wstring_view text, std::size_t most,
                                   const TFitting& fitting);
