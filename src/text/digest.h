#pragma once

#include <array>
#include <string>
#include <string_view>

using TMd5Digest = std::array<unsigned char, 16>;

/// MD5 (RFC 1321) of the bytes as they are. A fingerprint, no protection against forgery.
TMd5Digest Md5(std::string_view bytes);

/// The MD5 digest as 32 lower-case hexadecimal digits.
std::string Md5Text(std::string_view bytes);
