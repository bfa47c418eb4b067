#pragma once

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <utility>

inline void Check(bool holds) {
  if (!holds) std::abort();
}

/// Takes an input apart, byte by byte and text by text. At its end all numbers are 0 and all texts
/// empty.
class TInput {
 public:
  explicit TInput(std::string_view text) : FText(text) {}

  bool Empty() const { return FText.empty(); }
  int Byte() {
    if (FText.empty()) return 0;
    const auto byte = static_cast<unsigned char>(FText.front());
    FText.remove_prefix(1);
    return byte;
  }
  /// From 0 to the number before this one, which is not 0.
  int Below(int number) { return Byte() % number; }
  bool Bit() { return Byte() % 2 != 0; }
  /// Up to the sign that ends it.
  std::string Text(char end = '\n') {
    const std::size_t length = std::min(FText.find(end), FText.size());
    std::string text(FText.substr(0, length));
    FText.remove_prefix(std::min(length + 1, FText.size()));
    return text;
  }
  std::string Rest() { return std::string(std::exchange(FText, {})); }

 private:
  std::string_view FText;
};

// The targets: each runs on one input, and does not come back when something does not hold.

void FuzzLine(TInput input);
void FuzzLists(TInput input);
void FuzzConstants(TInput input);
void FuzzDatabase(TInput input);
void FuzzDirectories(TInput input);
void FuzzLayout(TInput input);
void FuzzWeb(TInput input);
void FuzzXml(TInput input);
