#include "text/handle_table.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

TEST(HandleTable, OnlyLiveHandlesOfTheTableMeanAnObject) {
  THandleTable<std::string> texts;
  THandleTable<int> numbers;
  std::vector<std::uint32_t> live, freed;
  for (int i = 0; i < 1000; ++i) {
    const std::uint32_t handle = texts.Create(std::to_string(i));
    ASSERT_NE(handle, 0u);
    ASSERT_EQ(numbers.Find(handle), nullptr);
    ASSERT_EQ(texts.Find(numbers.Create(i)), nullptr);
    if (i % 3 == 0) {
      texts.Free(handle);
      freed.push_back(handle);
    } else {
      live.push_back(handle);
    }
    for (std::uint32_t stale : freed) ASSERT_EQ(texts.Find(stale), nullptr);
  }
  for (std::uint32_t stale : freed) texts.Free(stale);
  for (std::uint32_t handle : live) EXPECT_NE(texts.Find(handle), nullptr);
  EXPECT_EQ(*texts.Find(live.back()), "998");
  for (std::uint32_t foreign : {0u, 1u, 4u, 0x10000u, 0xFFFFFFFFu})
    EXPECT_EQ(texts.Find(foreign), nullptr);
}

}  // namespace
