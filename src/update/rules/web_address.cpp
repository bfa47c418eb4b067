#include "update/rules/web_address.h"

#include <algorithm>
#include <vector>

#include "text/ascii.h"
#include "text/trimmed.h"

namespace {

constexpr char kHexDigits[] = "0123456789ABCDEF";

bool IsControl(char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7F; }

bool IsLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

bool IsHexDigit(char c) {
  return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}

/// The scheme before its colon; empty when the text has none.
std::string_view SchemeOf(std::string_view text) {
  const auto end = std::find_if_not(text.begin(), text.end(), [](char c) {
    return IsLetter(c) || (c >= '0' && c <= '9') || c == '+' || c == '-' || c == '.';
  });
  if (end == text.end() || *end != ':' || !IsLetter(text.front())) return {};
  return text.substr(0, static_cast<std::size_t>(end - text.begin()));
}

/// What may not stand in a request as it is; escapes that are there already stay.
std::string Escaped(std::string_view text) {
  constexpr std::string_view unsafe = " \"<>\\^`{|}";
  std::string escaped;
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte < 0x80 && unsafe.find(c) == std::string_view::npos) {
      escaped += c;
    } else {
      escaped += {'%', kHexDigits[byte >> 4], kHexDigits[byte & 15]};
    }
  }
  return escaped;
}

/// Path and query of a request; what follows "#" is the reader's affair, not the server's.
std::string TargetOf(std::string_view text) {
  text = text.substr(0, text.find('#'));
  return (text.starts_with('/') ? "" : "/") + Escaped(text);
}

bool IsHost(std::string_view host) {
  if (host.starts_with('[')) {
    host.remove_prefix(1);
    if (!host.ends_with(']')) return false;
    host.remove_suffix(1);
    return host.find(':') != std::string_view::npos &&
           std::ranges::all_of(host, [](char c) { return IsHexDigit(c) || c == ':' || c == '.'; });
  }
  return !host.empty() && host.find_first_of(" \"<>\\^`{|}%[]:") == std::string_view::npos;
}

bool ReadAuthority(std::string_view text, TWebAddress& address) {
  if (text.find('@') != std::string_view::npos) return false;
  // The colons of an IPv6 address stand in its brackets.
  const auto colon = text.find(':', text.starts_with('[') ? text.find(']') : 0);
  address.Host = text.substr(0, colon);
  address.Port = address.Secure ? 443 : 80;
  text.remove_prefix(address.Host.size());
  if (text.size() > 1 && (!ReadNumber(text.substr(1), address.Port) || address.Port == 0)) {
    return false;
  }
  return IsHost(address.Host);
}

/// The part of an address that begins with "//".
std::optional<TWebAddress> ParseFromAuthority(bool secure, std::string_view text) {
  if (!text.starts_with("//")) return std::nullopt;
  text.remove_prefix(2);
  const auto end = std::min(text.find_first_of("/?#"), text.size());
  TWebAddress address;
  address.Secure = secure;
  if (!ReadAuthority(text.substr(0, end), address)) return std::nullopt;
  address.Target = TargetOf(text.substr(end));
  return address;
}

/// Resolves "." and ".." in the path of a target.
std::string WithoutDots(std::string_view target) {
  const auto query = std::min(target.find('?'), target.size());
  std::string_view path = target.substr(0, query);
  std::vector<std::string_view> kept;
  bool folder = false;
  while (!path.empty()) {
    path.remove_prefix(1);
    const auto end = std::min(path.find('/'), path.size());
    const auto part = path.substr(0, end);
    path.remove_prefix(end);
    folder = part == "." || part == "..";
    if (!folder) kept.push_back(part);
    if (part == ".." && !kept.empty()) kept.pop_back();
  }
  std::string resolved;
  for (const auto part : kept) resolved.append("/").append(part);
  if (folder || resolved.empty()) resolved += '/';
  return resolved.append(target.substr(query));
}

}  // namespace

std::optional<TWebAddress> ParseWebAddress(std::string_view text) {
  text = Trimmed(text);
  if (std::ranges::any_of(text, IsControl)) return std::nullopt;
  const auto scheme = SchemeOf(text);
  const std::string lowered = LoweredAscii(scheme);
  if (lowered != "http" && lowered != "https") return std::nullopt;
  return ParseFromAuthority(lowered == "https", text.substr(scheme.size() + 1));
}

std::optional<TWebAddress> FollowLocation(const TWebAddress& from, std::string_view location) {
  location = Trimmed(location);
  if (location.empty() || std::ranges::any_of(location, IsControl)) return std::nullopt;
  std::optional<TWebAddress> next;
  if (!SchemeOf(location).empty()) {
    next = ParseWebAddress(location);
  } else if (location.starts_with("//")) {
    next = ParseFromAuthority(from.Secure, location);
  } else {
    const std::string_view path = std::string_view(from.Target).substr(0, from.Target.find('?'));
    next = from;
    if (location.starts_with('/')) {
      next->Target = WithoutDots(TargetOf(location));
    } else if (location.starts_with('?')) {
      next->Target = TargetOf(std::string(path).append(location));
    } else if (!location.starts_with('#')) {
      const auto folder = path.substr(0, path.rfind('/') + 1);
      next->Target = WithoutDots(TargetOf(std::string(folder).append(location)));
    }
  }
  if (next && from.Secure && !next->Secure) return std::nullopt;
  return next;
}
