#pragma once

#include <windows.h>

#include <string>

/// Writes what the screen shows in a rectangle of screen coordinates to a 24-bit BMP file, once it
/// shows the same thing twice in a row. Throws TUserError.
void SavePicture(const RECT& area, const std::string& file);
