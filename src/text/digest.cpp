#include "text/digest.h"

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace {

constexpr std::size_t kBlockSize = 64;

struct TState {
  std::uint32_t A = 0x67452301u;
  std::uint32_t B = 0xEFCDAB89u;
  std::uint32_t C = 0x98BADCFEu;
  std::uint32_t D = 0x10325476u;
};

using TMixer = std::uint32_t (*)(std::uint32_t, std::uint32_t, std::uint32_t);

constexpr std::uint32_t Choose(std::uint32_t x, std::uint32_t y, std::uint32_t z) {
  return z ^ (x & (y ^ z));
}
// A sum of two disjoint halves rather than an exclusive or: the half without x, the late operand,
// is ready before the other, which shortens the chain from step to step.
constexpr std::uint32_t ChooseBack(std::uint32_t x, std::uint32_t y, std::uint32_t z) {
  return (x & z) + (y & ~z);
}
constexpr std::uint32_t Parity(std::uint32_t x, std::uint32_t y, std::uint32_t z) {
  return x ^ (y ^ z);
}
constexpr std::uint32_t Skew(std::uint32_t x, std::uint32_t y, std::uint32_t z) {
  return y ^ (x | ~z);
}

template <TMixer Mix, int Shift>
inline void Step(std::uint32_t& a, std::uint32_t b, std::uint32_t c, std::uint32_t d,
                 std::uint32_t wordAndConstant) {
  a = b + std::rotl(a + wordAndConstant + Mix(b, c, d), Shift);
}

std::uint32_t LittleEndian(const unsigned char* bytes) {
  std::uint32_t word;
  std::memcpy(&word, bytes, sizeof word);
  if constexpr (std::endian::native == std::endian::big) {
    word = word >> 24 | (word >> 8 & 0xFF00u) | (word << 8 & 0xFF0000u) | word << 24;
  }
  return word;
}

// The steps are written out: as a loop they cost the speed of the machine's own tool.
void Digest(TState& state, const unsigned char* block) {
  std::uint32_t words[16];
  for (std::size_t i = 0; i < 16; ++i) words[i] = LittleEndian(block + 4 * i);
  std::uint32_t a = state.A;
  std::uint32_t b = state.B;
  std::uint32_t c = state.C;
  std::uint32_t d = state.D;

  Step<Choose, 7>(a, b, c, d, words[0] + 0xD76AA478u);
  Step<Choose, 12>(d, a, b, c, words[1] + 0xE8C7B756u);
  Step<Choose, 17>(c, d, a, b, words[2] + 0x242070DBu);
  Step<Choose, 22>(b, c, d, a, words[3] + 0xC1BDCEEEu);
  Step<Choose, 7>(a, b, c, d, words[4] + 0xF57C0FAFu);
  Step<Choose, 12>(d, a, b, c, words[5] + 0x4787C62Au);
  Step<Choose, 17>(c, d, a, b, words[6] + 0xA8304613u);
  Step<Choose, 22>(b, c, d, a, words[7] + 0xFD469501u);
  Step<Choose, 7>(a, b, c, d, words[8] + 0x698098D8u);
  Step<Choose, 12>(d, a, b, c, words[9] + 0x8B44F7AFu);
  Step<Choose, 17>(c, d, a, b, words[10] + 0xFFFF5BB1u);
  Step<Choose, 22>(b, c, d, a, words[11] + 0x895CD7BEu);
  Step<Choose, 7>(a, b, c, d, words[12] + 0x6B901122u);
  Step<Choose, 12>(d, a, b, c, words[13] + 0xFD987193u);
  Step<Choose, 17>(c, d, a, b, words[14] + 0xA679438Eu);
  Step<Choose, 22>(b, c, d, a, words[15] + 0x49B40821u);

  Step<ChooseBack, 5>(a, b, c, d, words[1] + 0xF61E2562u);
  Step<ChooseBack, 9>(d, a, b, c, words[6] + 0xC040B340u);
  Step<ChooseBack, 14>(c, d, a, b, words[11] + 0x265E5A51u);
  Step<ChooseBack, 20>(b, c, d, a, words[0] + 0xE9B6C7AAu);
  Step<ChooseBack, 5>(a, b, c, d, words[5] + 0xD62F105Du);
  Step<ChooseBack, 9>(d, a, b, c, words[10] + 0x02441453u);
  Step<ChooseBack, 14>(c, d, a, b, words[15] + 0xD8A1E681u);
  Step<ChooseBack, 20>(b, c, d, a, words[4] + 0xE7D3FBC8u);
  Step<ChooseBack, 5>(a, b, c, d, words[9] + 0x21E1CDE6u);
  Step<ChooseBack, 9>(d, a, b, c, words[14] + 0xC33707D6u);
  Step<ChooseBack, 14>(c, d, a, b, words[3] + 0xF4D50D87u);
  Step<ChooseBack, 20>(b, c, d, a, words[8] + 0x455A14EDu);
  Step<ChooseBack, 5>(a, b, c, d, words[13] + 0xA9E3E905u);
  Step<ChooseBack, 9>(d, a, b, c, words[2] + 0xFCEFA3F8u);
  Step<ChooseBack, 14>(c, d, a, b, words[7] + 0x676F02D9u);
  Step<ChooseBack, 20>(b, c, d, a, words[12] + 0x8D2A4C8Au);

  Step<Parity, 4>(a, b, c, d, words[5] + 0xFFFA3942u);
  Step<Parity, 11>(d, a, b, c, words[8] + 0x8771F681u);
  Step<Parity, 16>(c, d, a, b, words[11] + 0x6D9D6122u);
  Step<Parity, 23>(b, c, d, a, words[14] + 0xFDE5380Cu);
  Step<Parity, 4>(a, b, c, d, words[1] + 0xA4BEEA44u);
  Step<Parity, 11>(d, a, b, c, words[4] + 0x4BDECFA9u);
  Step<Parity, 16>(c, d, a, b, words[7] + 0xF6BB4B60u);
  Step<Parity, 23>(b, c, d, a, words[10] + 0xBEBFBC70u);
  Step<Parity, 4>(a, b, c, d, words[13] + 0x289B7EC6u);
  Step<Parity, 11>(d, a, b, c, words[0] + 0xEAA127FAu);
  Step<Parity, 16>(c, d, a, b, words[3] + 0xD4EF3085u);
  Step<Parity, 23>(b, c, d, a, words[6] + 0x04881D05u);
  Step<Parity, 4>(a, b, c, d, words[9] + 0xD9D4D039u);
  Step<Parity, 11>(d, a, b, c, words[12] + 0xE6DB99E5u);
  Step<Parity, 16>(c, d, a, b, words[15] + 0x1FA27CF8u);
  Step<Parity, 23>(b, c, d, a, words[2] + 0xC4AC5665u);

  Step<Skew, 6>(a, b, c, d, words[0] + 0xF4292244u);
  Step<Skew, 10>(d, a, b, c, words[7] + 0x432AFF97u);
  Step<Skew, 15>(c, d, a, b, words[14] + 0xAB9423A7u);
  Step<Skew, 21>(b, c, d, a, words[5] + 0xFC93A039u);
  Step<Skew, 6>(a, b, c, d, words[12] + 0x655B59C3u);
  Step<Skew, 10>(d, a, b, c, words[3] + 0x8F0CCC92u);
  Step<Skew, 15>(c, d, a, b, words[10] + 0xFFEFF47Du);
  Step<Skew, 21>(b, c, d, a, words[1] + 0x85845DD1u);
  Step<Skew, 6>(a, b, c, d, words[8] + 0x6FA87E4Fu);
  Step<Skew, 10>(d, a, b, c, words[15] + 0xFE2CE6E0u);
  Step<Skew, 15>(c, d, a, b, words[6] + 0xA3014314u);
  Step<Skew, 21>(b, c, d, a, words[13] + 0x4E0811A1u);
  Step<Skew, 6>(a, b, c, d, words[4] + 0xF7537E82u);
  Step<Skew, 10>(d, a, b, c, words[11] + 0xBD3AF235u);
  Step<Skew, 15>(c, d, a, b, words[2] + 0x2AD7D2BBu);
  Step<Skew, 21>(b, c, d, a, words[9] + 0xEB86D391u);

  state.A += a;
  state.B += b;
  state.C += c;
  state.D += d;
}

void PutLittleEndian(unsigned char* to, std::uint64_t value, std::size_t bytes) {
  for (std::size_t i = 0; i < bytes; ++i) to[i] = static_cast<unsigned char>(value >> (8 * i));
}

}  // namespace

TMd5Digest Md5(std::string_view bytes) {
  TState state;
  const auto* data = reinterpret_cast<const unsigned char*>(bytes.data());
  const std::size_t whole = bytes.size() / kBlockSize * kBlockSize;
  for (std::size_t at = 0; at < whole; at += kBlockSize) Digest(state, data + at);

  // The rest, a one bit, zeros, and the length in bits at the end of a block.
  unsigned char tail[2 * kBlockSize] = {};
  const std::size_t rest = bytes.size() - whole;
  if (rest != 0) std::memcpy(tail, data + whole, rest);
  tail[rest] = 0x80;
  const std::size_t tailSize = rest + 9 <= kBlockSize ? kBlockSize : 2 * kBlockSize;
  PutLittleEndian(tail + tailSize - 8, std::uint64_t{bytes.size()} * 8, 8);
  for (std::size_t at = 0; at < tailSize; at += kBlockSize) Digest(state, tail + at);

  TMd5Digest digest;
  const std::uint32_t words[] = {state.A, state.B, state.C, state.D};
  for (std::size_t i = 0; i < 4; ++i) PutLittleEndian(digest.data() + 4 * i, words[i], 4);
  return digest;
}

std::string Md5Text(std::string_view bytes) {
  constexpr char digits[] = "0123456789abcdef";
  std::string text;
  for (unsigned char byte : Md5(bytes)) {
    text += digits[byte >> 4];
    text += digits[byte & 15];
  }
  return text;
}
