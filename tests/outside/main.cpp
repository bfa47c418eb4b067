#include <windows.h>

#include <commctrl.h>
#include <gtest/gtest.h>

#include <cstdio>

#include "hosts/hostility.h"
#include "user/watchdog.h"

int main(int argc, char** argv) {
  // What was said last must be on paper when the program is ended.
  std::setvbuf(stdout, nullptr, _IONBF, 0);
  testing::InitGoogleTest(&argc, argv);
  if (!BecomeHost(argc, argv)) return 2;
  // A host with a manifest keeps the common controls loaded; they lose objects when they come and
  // go.
  InitCommonControls();
  TWatchdog::Start();
  // The test framework watches each thread that traces with one more thread: this one from now on,
  // not from within a test that counts threads.
  { SCOPED_TRACE(""); }
  return RUN_ALL_TESTS();
}
