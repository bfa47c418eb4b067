#pragma once

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

/// Ends the program where something does not hold.
inline void Check(bool holds, const char* file = __builtin_FILE(), int line = __builtin_LINE()) {
  if (holds) return;
  std::fprintf(stderr, "%s:%d: does not hold\n", file, line);
  std::abort();
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
    std::string text(FText.substr(0, FText.find(end)));
    FText.remove_prefix(std::min(text.size() + 1, FText.size()));
    return text;
  }
  std::string Rest() const { return std::string(FText); }

 private:
  std::string_view FText;
};
