#pragma once

#include <memory>
#include <string>
#include <vector>

/// Named texts that outlive the program, in the host's ANSI code page. Names ignore the case of
/// ASCII letters.
class TSettingsStore {
 public:
  TSettingsStore() = default;
  TSettingsStore(const TSettingsStore&) = delete;
  TSettingsStore& operator=(const TSettingsStore&) = delete;
  virtual ~TSettingsStore() = default;

  /// The whole text, or an empty one when there is none or it cannot be read.
  virtual std::string Read(const std::string& name) const = 0;
  /// Whether this object has met a text that is there and cannot be read. What it has read is not
  /// all that there is then, and nothing is to be written by it.
  virtual bool ReadFailed() const = 0;
  /// Every name that is there all the time that this takes, whatever others write meanwhile; in no
  /// special order.
  virtual std::vector<std::string> Names() const = 0;
  /// One text is written wholly or not at all; false when it was not.
  virtual bool Write(const std::string& name, const std::string& value) = 0;
  /// False when it is still there.
  virtual bool Remove(const std::string& name) = 0;
  /// Keeps the library's other processes from reading or changing what belongs together, while the
  /// result lives. Null when one of them does not let go in time.
  virtual std::shared_ptr<void> Hold() = 0;
};
