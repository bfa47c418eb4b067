#pragma once

#include <cstdint>
#include <optional>
#include <string>

/// What tells that a file was written anew or replaced. A replacement that bears the old one's size
/// and time is another file, or was changed at another time than it says.
struct TFileStamp {
  std::uint64_t Size = 0;       ///< bytes
  std::uint64_t LastWrite = 0;  ///< as the file says, 100 ns units
  std::uint64_t Changed = 0;    ///< as the file system knows, 100 ns units; 0 where it does not
  std::uint64_t Identity = 0;   ///< of the file on its volume
  std::uint32_t Volume = 0;

  bool operator==(const TFileStamp&) const = default;
};

/// Nothing when the path (ANSI) names no file that can be looked at; a directory is none. Works on
/// a file that another program holds against reading, too.
std::optional<TFileStamp> FileStamp(const std::string& path);
