#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

/// Bits that nobody can foresee.
using TNameKey = std::array<std::uint32_t, 4>;

/// True for a path that names one file, false for a pattern of names.
bool IsOneFile(std::wstring_view path);

/// A full path as the system takes it however long it is.
std::wstring PathOfAnyLength(std::wstring_view path);

/// Names of the files that stand in for another one of their folder while it is written: short
/// whatever that one's name, since a folder takes names up to a length, and so regular that no
/// other program's or user's file is taken for one.
std::wstring TemporaryName(std::wstring_view file, const TNameKey& key);

/// What all of these begin with for a file.
std::wstring TemporaryNameStart(std::wstring_view file);

/// Whether a name is one that TemporaryName gives for the file, whatever the key; letter case of
/// ASCII letters is ignored.
bool IsTemporaryName(std::wstring_view name, std::wstring_view file);
