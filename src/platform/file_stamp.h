#pragma once

#include <cstdint>
#include <optional>
#include <string>

/// What tells that a file was written anew.
struct TFileStamp {
  std::uint64_t Size = 0;       ///< bytes
  std::uint64_t LastWrite = 0;  ///< 100 ns units

  bool operator==(const TFileStamp&) const = default;
};

/// Nothing when the path (ANSI) names no file that can be looked at; a directory is none.
std::optional<TFileStamp> FileStamp(const std::string& path);
