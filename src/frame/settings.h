#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/registry.h"

/// The library's and the host's settings: texts in the registry, below the host's own key, in the
/// current user's hive or else the machine's. Texts are in the process's ANSI code page.

/// Reads a setting into a buffer and returns the system's error code: 0, 2 while it was never
/// written, 234 when it does not fit with its terminating zero, 87 for a null buffer or name. The
/// text is terminated when the size, in bytes, is not 0, and empty when the reading fails.
long QuerySetting(char* buffer, std::uint32_t size, const char* name, bool currentUser);

/// Writes a setting, making the host's key when it is not there, and returns the system's error
/// code; 87 for a null name. A null value is empty.
long StoreSetting(const char* name, const char* value, bool currentUser);

/// The settings for one round of many readings or writings: the key is opened once for each.
class TSettings {
 public:
  explicit TSettings(bool currentUser);

  /// The text whatever its length; empty when it cannot be read. While the key is not there when
  /// this object is made, nothing is seen of it until this object writes.
  std::string Read(const std::string& name) const;
  /// Whether a text that is there could not be read, for another reason than its absurd length.
  bool ReadFailed() const { return FReadFailed; }
  /// Every name that is there all the time that this takes, in no special order.
  std::vector<std::string> Names() const { return FReading.ValueNames(); }
  /// False when the setting could not be written, and is as before.
  bool Write(const std::string& name, const std::string& value);
  /// False when the setting is still there.
  bool Remove(const std::string& name);
  /// The system's code of the last reading or change that failed; 0 while none has.
  long Error() const { return FError; }

 private:
  void OpenForReading();
  template <class TChange>
  bool Change(TChange change);

  void NoteReading(long result) const;

  bool FCurrentUser;
  mutable long FError = 0;
  mutable bool FReadFailed = false;
  TRegistryKey FReading;
  TRegistryKey FWriting;
};
