#include "text/digest.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <random>

namespace {

TEST(Digest, PublishedSuite) {
  const struct {
    const char* Text;
    const char* Digest;
  } cases[] = {
      {"", "d41d8cd98f00b204e9800998ecf8427e"},
      {"a", "0cc175b9c0f1b6a831c399e269772661"},
      {"abc", "900150983cd24fb0d6963f7d28e17f72"},
      {"message digest", "f96b697d7cb7938d525a2f31aaf161d0"},
      {"abcdefghijklmnopqrstuvwxyz", "c3fcd3d76192e4007dfb496cca67e13b"},
      {"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789",
       "d174ab98d277d9f5a5611c2c9f419d9f"},
      {"12345678901234567890123456789012345678901234567890123456789012345678901234567890",
       "57edf4a22be3c955ac49da2e2107b67a"},
  };
  for (const auto& c : cases) EXPECT_EQ(Md5Text(c.Text), c.Digest);
}

std::string DigestOfTheMachinesTool(const std::string& bytes) {
  const std::string file = testing::TempDir() + "digest_input";
  std::FILE* out = std::fopen(file.c_str(), "wb");
  EXPECT_NE(out, nullptr);
  EXPECT_EQ(std::fwrite(bytes.data(), 1, bytes.size(), out), bytes.size());
  std::fclose(out);
  std::FILE* tool = popen(("md5sum < " + file).c_str(), "r");
  EXPECT_NE(tool, nullptr);
  char text[33] = {};
  EXPECT_EQ(std::fread(text, 1, 32, tool), 32u);
  pclose(tool);
  std::remove(file.c_str());
  return text;
}

TEST(Digest, AgreesWithAnotherImplementationAroundBlockEnds) {
  std::mt19937 random(20020711);
  for (std::size_t length :
       {1, 54, 55, 56, 57, 63, 64, 65, 118, 119, 120, 128, 1000, 65536, 99991}) {
    std::string bytes(length, '\0');
    for (char& byte : bytes) byte = static_cast<char>(random());
    EXPECT_EQ(Md5Text(bytes), DigestOfTheMachinesTool(bytes)) << length << " bytes";
  }
}

}  // namespace
