#pragma once

#include <string>

/// What the system says of an error code, in the user's language and the host's ANSI code page,
/// without a line break at its end; empty when it knows nothing of it.
std::string SystemMessage(long code);
