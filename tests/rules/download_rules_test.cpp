#include <gtest/gtest.h>

#include <cwchar>
#include <limits>
#include <string>

#include "platform/rules/temporary_name.h"
#include "update/rules/body_buffer.h"
#include "update/rules/download_progress.h"
#include "update/rules/fetch_outcome.h"
#include "update/rules/response_head.h"
#include "update/rules/web_address.h"

TEST(DownloadProgress, CountsIn32Bits) {
  constexpr auto kLeast = std::numeric_limits<std::int32_t>::min();
  const struct {
    std::uint64_t Received, Total;
    std::optional<std::int32_t> Percent;
  } cases[] = {
      {5, 0, std::nullopt},
      {21474837, 21474837, -99},          // the product wraps
      {42949673, 42949673, 0},            // once round
      {5, 4294967296, std::nullopt},      // a total that 32 bits take for none
      {2'200'000'000, 2'200'000'000, 0},  // both wrap
      {0x80000000, 0xFFFFFFFF, 0},
      {(std::uint64_t{1} << 31) / 4, 1000, -2'147'483},
      {(std::uint64_t{1} << 31) / 4, 0xFFFFFFFF, kLeast},  // the least number by -1
  };
  for (const auto& c : cases)
    EXPECT_EQ(PercentReceived(c.Received, c.Total), c.Percent) << c.Received << " of " << c.Total;
}

TEST(FetchOutcome, FollowsErrorAndPhase) {
  using enum TFetchOutcome;
  using enum THttpPhase;
  const struct {
    unsigned long Error;
    THttpPhase Phase;
    TFetchOutcome Outcome;
  } cases[] = {{12007, Resolving, InvalidHost},       {12029, Connecting, ConnectionFailed},
               {12002, Connecting, ConnectionFailed}, {12002, Resolving, Failure},
               {12002, Receiving, Failure},           {12005, Starting, Failure}};
  for (const auto& each : cases)
    EXPECT_EQ(OutcomeOf(each.Error, each.Phase), each.Outcome) << each.Error;
}

/// As "scheme host port target"; empty when there is none.
std::string Shown(const std::optional<TWebAddress>& address) {
  if (!address) return "";
  return std::string(address->Secure ? "https " : "http ") + address->Host + " " +
         std::to_string(address->Port) + " " + address->Target;
}

TEST(WebAddress, IsReadOrRefused) {
  const struct {
    const char *Text, *Shown;
  } cases[] = {
      {" \tHTTPS://Host:8443/a/../b?c/../d#e \r\n", "https Host 8443 /a/../b?c/../d"},
      {"http://host?q=1", "http host 80 /?q=1"},
      {"http://host#part", "http host 80 /"},
      {"http://host:/x", "http host 80 /x"},
      {"http://[::1]:8080/x", "http [::1] 8080 /x"},
      {"https://[09afAF::1.2.3.4]", "https [09afAF::1.2.3.4] 443 /"},
      {"http://host/a b\"%41\\\xC3\x80?x=@{1}", "http host 80 /a%20b%22%41%5C%C3%80?x=@%7B1%7D"},
      {"http://h\xC3\xB4te/", "http h\xC3\xB4te 80 /"},
      {"http://host:65535", "http host 65535 /"},
  };
  for (const auto& each : cases)
    EXPECT_EQ(Shown(ParseWebAddress(each.Text)), each.Shown) << each.Text;
  for (const char* refused : {"//host/", "host", "ftp://host/", "://host/", " ", "http:/host"})
    EXPECT_FALSE(ParseWebAddress(refused)) << refused;
  for (const char* refused :
       {"host:65536", "host:0", "host:8x", "host:-1", "me:pw@host/", "me@host", "a b/", "a%41/",
        "a:b:80/", "[::1", "[]/", "[::g]/", "ho\nst/", "host/\x7F", ":80/", "/x", ""})
    EXPECT_FALSE(ParseWebAddress(std::string("http://") + refused)) << refused;
}

TEST(WebAddress, FollowsARedirection) {
  const struct {
    const char *Location, *Shown;
  } cases[] = {{"//other/x", "other 443 /x"}, {"https://other:1/x", "other 1 /x"},
               {"/x?y", "host 444 /x?y"},     {"../../../x", "host 444 /x"},
               {" x ", "host 444 /a/x"},      {"x//y/", "host 444 /a/x//y/"},
               {"..", "host 444 /"},          {"?z", "host 444 /a/b?z"},
               {"x/.", "host 444 /a/x/"},     {"a b:c", "host 444 /a/a%20b:c"},
               {"#z", "host 444 /a/b?c=/d"},  {"../x/./y/../z?../q", "host 444 /x/z?../q"}};
  const TWebAddress from = *ParseWebAddress("https://host:444/a/b?c=/d");
  for (const auto& [location, shown] : cases)
    EXPECT_EQ(Shown(FollowLocation(from, location)), std::string("https ") + shown) << location;
  for (const char* refused : {"x:y", "", "azAZ+09-.:y", "http://o/", "https://me@o/", "/x\ny"})
    EXPECT_FALSE(FollowLocation(from, refused)) << refused;
  EXPECT_EQ(Shown(FollowLocation(*ParseWebAddress("http://host"), "https://x")), "https x 443 /");
}

TEST(ResponseHead, TellsStatusLengthAndLocation) {
  // Of the lines after the first: length and location.
  const std::pair<std::string, const char*> cases[] = {
      {"", "? "},
      {"Content-Length: 12\r\n", "12 "},
      {"content-length:12 \r\nCONTENT-LENGTH: 12, 12\r\n", "12 "},
      {"Content-Length: 18446744073709551615\r\n", "18446744073709551615 "},
      {"X-Content-Length: 12\r\n", "? "},
      {"Location:  /a:b \n", "? /a:b"},
      {"Content-Length: 12\r\nTransfer-Encoding: chunked\r\n", "? "}};
  for (const char* first : {"HTTP/1.1 302\r\n", "HTTP/1.0 302 Found\n"})
    for (const auto& [lines, shown] : cases) {
      const std::string whole = first + lines + (lines.ends_with("\r\n") ? "\r\n" : "\n");
      const auto head = ParseResponseHead(whole);
      ASSERT_TRUE(head && head->Status == 302) << whole;
      EXPECT_EQ((head->Length ? std::to_string(*head->Length) : "?") + " " + head->Location, shown);
      EXPECT_EQ(ParseResponseHead(first + std::string(lines)).has_value(), !lines.empty()) << whole;
    }
  for (const char* length :
       {"18446744073709551616", "-1", "+1", "1x", "", "1, 2", "1\r\nContent-Length: 2"})
    EXPECT_FALSE(
        ParseResponseHead(std::string("HTTP/1.1 200 OK\r\nContent-Length: ") + length + "\r\n\r\n"))
        << length;
  for (const char* lines :
       {"HTTP/1.1 two OK\r\n\r\n", "HTTP/1.1\r\n\r\n", "Content-Length: 12\r\n\r\n", "",
        "HTTP/1.1 200 OK", "HTTP/1.1 200 OK\r\nContent-Le", "HTTP/1.1 200 OK\r\nA: b\r\nLoc"})
    EXPECT_FALSE(ParseResponseHead(lines)) << lines;
  std::string documents, redirections;
  for (int status = 0; status < 1000; ++status) {
    const TAnswer answer = AnswerOf(status);
    if (answer == TAnswer::Document) documents += std::to_string(status) + " ";
    if (answer == TAnswer::Redirection) redirections += std::to_string(status) + " ";
  }
  EXPECT_EQ(documents, "200 203 ");
  EXPECT_EQ(redirections, "301 302 303 307 308 ");
}

TEST(TemporaryName, IsShortAndKnownAgainAndNoOtherIs) {
  for (const std::wstring& file : {std::wstring(L"azote.bin"), L"az" + std::wstring(253, L'a')}) {
    const std::wstring name = TemporaryName(file, {0x01234567, 0x89abcdef, 0, 0xffffffff});
    EXPECT_TRUE(name.size() < 64 && name.ends_with(L"-0123456789abcdef00000000ffffffff.part"));
    EXPECT_TRUE(IsTemporaryName(name, file) && IsTemporaryName(name, L"AZ" + file.substr(2)));
    EXPECT_FALSE(IsTemporaryName(name, file.substr(1) + L"b") || IsTemporaryName(file, file));
    // With a sign too many, or one of those that it must have changed.
    EXPECT_FALSE(IsTemporaryName(std::wstring(name).insert(20, L"0"), file));
    for (const std::size_t place : {0u, 4u, 12u, 13u, 44u, 45u, 49u}) {
      std::wstring other = name;
      other[place] = L'g';
      EXPECT_FALSE(IsTemporaryName(other, file)) << place;
    }
  }
  // Letters whose halves are alike.
  const auto start = TemporaryNameStart(L"\x161");
  EXPECT_TRUE(start != TemporaryNameStart(L"a") && start != TemporaryNameStart(L"\x141"));
  const std::wstring rest(257, L'a');
  for (const std::wstring& path : {L"C:\\" + rest, L"\\\\server\\" + rest}) {
    const std::wstring any = PathOfAnyLength(path);
    EXPECT_TRUE(any == (path[0] == L'C' ? L"\\\\?\\" + path : L"\\\\?\\UNC" + path.substr(1)));
    EXPECT_TRUE(PathOfAnyLength(any) == any && PathOfAnyLength(L"C:\\a") == L"C:\\a");
  }
  EXPECT_TRUE(IsOneFile(L"C:\\a b\\azote.bin") && IsOneFile(L"\\\\?\\C:\\azote.bin"));
  for (const wchar_t* pattern :
       {L"", L"*", L"C:\\a?", L"\\\\?\\C:\\a*", L"a<", L"a>", L"a|b", L"\"a\""})
    EXPECT_FALSE(IsOneFile(pattern)) << wcslen(pattern);
}

TEST(BodyBuffer, GivesBackWhatItTook) {
  TBodyBuffer buffer;
  EXPECT_TRUE(buffer.Append(std::string_view("an earlier one")));
  buffer.Clear();
  std::string all;
  // Sizes around those of its blocks, and one packet larger than any of them.
  for (const std::size_t size : {1u, 4095u, 1u, 4096u, 8193u, 70000u, 1048577u, 3000000u}) {
    std::string packet(size, '\0');
    for (char& byte : packet) byte = static_cast<char>(all.size() + (&byte - packet.data()) * 7);
    EXPECT_TRUE(buffer.Append(packet));
    all += packet;
    ASSERT_EQ(buffer.Size(), all.size());
  }
  for (const std::size_t size : {std::size_t{0}, std::size_t{4097}, all.size(), all.size() + 10}) {
    std::string copy(size, '?');
    const std::size_t count = std::min(size, all.size());
    EXPECT_EQ(buffer.CopyTo(copy), count);
    EXPECT_TRUE(copy == all.substr(0, count) + std::string(size - count, '?')) << size;
  }
  TBodyBuffer small(5);
  EXPECT_TRUE(small.Append(std::string_view("abc")));
  EXPECT_FALSE(small.Append(std::string_view("def")));
  EXPECT_TRUE(small.Append(std::string_view("de")));
  EXPECT_EQ(small.Size(), 5u);
}
