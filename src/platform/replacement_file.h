#pragma once

#include <span>
#include <string>
#include <string_view>

#include "platform/owned.h"

/// A new content for a file, written beside it and put in its place only when it is whole. Until
/// then the old content stays, and an object that is given up, or whose process dies, leaves
/// nothing behind. One thread at a time.
class TReplacementFile {
 public:
  /// The full path of the file to replace or make, of any length.
  explicit TReplacementFile(std::wstring_view target);
  TReplacementFile(const TReplacementFile&) = delete;
  TReplacementFile& operator=(const TReplacementFile&) = delete;
  ~TReplacementFile();

  /// Starts the new content, with the access rights of the old one, and clears away what a machine
  /// that lost its power left. False when there can be no file: the path is a pattern, the old file
  /// is read-only or a directory.
  bool Create();
  bool Write(std::span<const char> data);
  /// Has the system write to the disk all that it holds back; may take its time.
  bool Flush();
  /// Puts the new content in place.
  bool Replace();

 private:
  friend bool ReplaceBoth(TReplacementFile& first, TReplacementFile& second);
  bool Exists() const;
  bool TakeRights() const;
  bool CopyOld();

  std::wstring FTarget;
  std::wstring FPath;  ///< of the new content; empty when there is none
  TKernelHandle FHandle;
};

/// Puts two contents in place, or neither.
bool ReplaceBoth(TReplacementFile& first, TReplacementFile& second);
