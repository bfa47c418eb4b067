#include <gtest/gtest.h>

#include <limits>
#include <string>

#include "update/rules/body_buffer.h"
#include "update/rules/download_progress.h"
#include "update/rules/fetch_outcome.h"

TEST(DownloadProgress, CountsIn32Bits) {
  constexpr auto kLeast = std::numeric_limits<std::int32_t>::min();
  const struct {
    std::uint64_t Received, Total;
    std::optional<std::int32_t> Percent;
  } cases[] = {
      {0, 200, 0},
      {199, 200, 99},
      {200, 200, 100},
      {5, 0, std::nullopt},
      {21474836, 21474836, 100},
      {21474837, 21474837, -99},          // the product wraps
      {42949673, 42949673, 0},            // once round
      {5, 4294967296, std::nullopt},      // a total that 32 bits take for none
      {2'200'000'000, 2'200'000'000, 0},  // both wrap
      {0x80000000, 0xFFFFFFFF, 0},
      {(std::uint64_t{1} << 31) / 4, 0xFFFFFFFF, kLeast},  // the least number by -1
  };
  for (const auto& each : cases) {
    EXPECT_EQ(PercentReceived(each.Received, each.Total), each.Percent)
        << each.Received << " of " << each.Total;
  }
}

TEST(FetchOutcome, FollowsErrorPhaseAndLength) {
  using enum TFetchOutcome;
  const auto result = [](unsigned long error, THttpPhase phase) {
    THttpResult made;
    made.Error = error;
    made.Phase = phase;
    return made;
  };
  const auto body = [](std::optional<std::uint64_t> length, std::uint64_t received) {
    THttpResult made;
    made.Status = 200;
    made.Length = length;
    made.Received = received;
    return made;
  };
  THttpResult refused = body(10, 10);
  refused.Refused = true;
  THttpResult cancelled = result(12002, THttpPhase::Connecting);
  cancelled.Cancelled = true;
  const struct {
    THttpResult Result;
    TFetchOutcome Outcome;
  } cases[] = {
      {body(10, 10), Success},
      {body(10, 9), Failure},
      {body(std::nullopt, 9), Success},
      {refused, Failure},
      {cancelled, None},
      {result(12007, THttpPhase::Resolving), InvalidHost},
      {result(12029, THttpPhase::Connecting), ConnectionFailed},
      {result(12002, THttpPhase::Connecting), ConnectionFailed},
      {result(12002, THttpPhase::Resolving), Failure},
      {result(12002, THttpPhase::Receiving), Failure},
      {result(12005, THttpPhase::Starting), Failure},
      {result(12030, THttpPhase::Receiving), Failure},
  };
  for (const auto& each : cases) {
    EXPECT_EQ(OutcomeOf(each.Result), each.Outcome)
        << each.Result.Error << " in phase " << static_cast<int>(each.Result.Phase);
  }
  EXPECT_TRUE(BodyWanted(204));
  EXPECT_FALSE(BodyWanted(400));
}

TEST(BodyBuffer, GivesBackWhatItTook) {
  TBodyBuffer buffer;
  std::string all;
  // Sizes around those of its blocks, and one packet larger than any of them.
  for (const std::size_t size : {1u, 4095u, 1u, 4096u, 8193u, 70000u, 1048577u, 3000000u}) {
    std::string packet(size, '\0');
    for (char& byte : packet) byte = static_cast<char>(all.size() + (&byte - packet.data()) * 7);
    buffer.Append(packet);
    all += packet;
    ASSERT_EQ(buffer.Size(), all.size());
  }
  for (const std::size_t size :
       {std::size_t{0}, std::size_t{5}, std::size_t{4097}, all.size(), all.size() + 10}) {
    std::string copy(size, '?');
    const std::size_t count = std::min(size, all.size());
    EXPECT_EQ(buffer.CopyTo(copy), count);
    EXPECT_TRUE(copy == all.substr(0, count) + std::string(size - count, '?')) << size;
  }
  buffer.Clear();
  EXPECT_EQ(buffer.Size(), 0u);
}
