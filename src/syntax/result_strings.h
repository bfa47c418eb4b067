#pragma once

#include <string>

/// The two texts through which the assistant's exports hand results to the host: owned by the
/// library, valid until the same one is filled again, released as the library unloads.
enum class TResultString { Assistant, Types };

/// Fills one and returns its characters, never null.
const char* FillResultString(TResultString which, std::string text);
