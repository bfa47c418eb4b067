#include "text/handle_table.h"

#include <gtest/gtest.h>

#include <map>

TEST(HandleTable, OnlyLiveHandlesOfTheTableMeanAnObject) {
  THandleTable<int> table, other;
  std::map<std::uint32_t, int> made;
  for (int i = 0; i < 1000; ++i) {
    const std::uint32_t handle = table.Create(i);
    ASSERT_TRUE(handle != 0 && made.emplace(handle, i).second);
    ASSERT_TRUE(!other.Find(handle) && !table.Find(other.Create(i)));
    for (int twice = 0; i % 3 == 0 && twice < 2; ++twice) table.Free(handle);
  }
  for (const auto& [handle, i] : made)
    EXPECT_TRUE(i % 3 == 0 ? !table.Find(handle) : *table.Find(handle) == i) << i;
  for (const std::uint32_t foreign : {0u, 1u, 4u, 0x10000u, 0xFFFFFFFFu})
    EXPECT_FALSE(table.Find(foreign));
}
