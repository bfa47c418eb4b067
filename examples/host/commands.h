#pragma once

// Numbers of the windows and commands, stable: macros, tests and assistive tools rely on them.

#define ZEF_MAIN_WINDOW_CLASS L"ZefMainWindow"

enum {
  IDC_EDITOR = 100,
  IDC_TABS = 101,
  IDC_LOG = 102,
  IDC_STATUS = 103,

  IDM_QUIT = 200,
  IDM_ASSISTANT = 210,
  IDM_CONSTANTS = 211,
  IDM_TYPES = 212,
  IDM_CLEAR_LOG = 220,
  IDM_UPDATE = 280,
  IDM_ABOUT = 290,
};
