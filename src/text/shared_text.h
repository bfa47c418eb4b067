#pragma once

#include <memory>
#include <string>
#include <string_view>

/// An 8-bit text of any length. Copies share the characters until one side changes. Not
/// thread-safe, copies of one text included.
class TSharedText {
 public:
  std::string_view View() const;
  /// Zero-terminated; never null. Valid until this text changes or goes.
  const char* CStr() const;
  /// May be given a part of this text.
  void Set(std::string_view text);
  void Take(std::string&& text);
  /// May be given a part of this text.
  void Append(std::string_view text);

 private:
  /// Whether this text alone holds its characters, and so may change them in place.
  bool Alone() const;

  std::shared_ptr<std::string> FText;  ///< null is empty
};
