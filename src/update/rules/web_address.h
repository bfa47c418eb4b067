#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/// Where a document is to be had over HTTP or HTTPS.
struct TWebAddress {
  bool Secure = false;
  std::string Host;  ///< UTF-8; an IPv6 address in its brackets
  std::uint16_t Port = 0;
  std::string Target = "/";  ///< path and query as the server is asked for them: ASCII, escaped

  bool operator==(const TWebAddress&) const = default;
};

/// Reads an address (UTF-8), blanks around it ignored. Nothing when it is no http: or https: one,
/// is spoilt, or names a user: a password sent in the clear, or dropped, would both be a surprise.
std::optional<TWebAddress> ParseWebAddress(std::string_view text);

/// Where a redirection from an address leads; its location may be relative. Nothing when it is no
/// such address, or would leave https: for http:.
std::optional<TWebAddress> FollowLocation(const TWebAddress& from, std::string_view location);
