#include <gtest/gtest.h>

#include <cstdio>

#include "outside/watchdog.h"

int main(int argc, char** argv) {
  // What was said last must be on paper when the program is ended.
  std::setvbuf(stdout, nullptr, _IONBF, 0);
  testing::InitGoogleTest(&argc, argv);
  TWatchdog::Start();
  return RUN_ALL_TESTS();
}
