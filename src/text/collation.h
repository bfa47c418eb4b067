#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

/// How texts of the host's ANSI code page compare: one set of rules for every list and look-up.
///
/// Two texts are the same ignoring case when their upper-cased bytes are the same. The order is the
/// user's locale's order of the upper-cased texts, and byte order where that finds no difference,
/// so that "equal in order" and "same text" never disagree.
struct TCollation {
  /// Upper case of each byte. Code pages of several bytes a character fold ASCII letters only.
  std::array<unsigned char, 256> Upper;
  /// The locale's order of two texts (negative, 0, positive), or null for plain byte order.
  int (*LocaleOrder)(std::string_view a, std::string_view b) = nullptr;
};

/// The rules in force. Windows-1252 upper case and byte order until SetUserCollation is called.
const TCollation& UserCollation();

/// Takes the user's rules; called once as the library loads, before any list is made.
void SetUserCollation(const TCollation& collation);

inline unsigned char UpperByte(char c) {
  return UserCollation().Upper[static_cast<unsigned char>(c)];
}

std::string UpperText(std::string_view text);

/// Same text ignoring letter case. Allocates nothing.
bool SameText(std::string_view a, std::string_view b);

/// Total order (negative, 0, positive); 0 exactly when the texts are the same under the case rule.
int CompareText(std::string_view a, std::string_view b, bool caseSensitive);

/// Equal for texts that are the same under the case rule. Allocates nothing.
std::size_t HashText(std::string_view text, bool caseSensitive);
