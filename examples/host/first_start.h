#pragma once

#include <string>

#include "library.h"

/// At the user's first start, when no list of accounts directories was ever saved, enters this one
/// as the only one and the default, so that the program opens with it. Makes the directory when it
/// is not there.
void BringOwnDirectory(TLibrary& library, const std::wstring& directory);
