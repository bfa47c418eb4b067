#pragma once

#include <string>
#include <string_view>

/// A help text as its author meant it: without the line break after the opening tag, and without
/// the indentation that its lines share because the file is indented. The first line, which may
/// stand right behind the tag, loses all of its own. Lines end as those of an edit control do.
std::string WithoutIndentation(std::string_view text);
