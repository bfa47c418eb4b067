#pragma once

// Numbers of the windows and commands, stable: macros, tests and assistive tools rely on them.

#define ZEF_MAIN_WINDOW_CLASS L"ZefMainWindow"
#define ZEF_GUEST_WINDOW_CLASS L"ZefGuestWindow"
#define ZEF_ENTRIES_WINDOW_CLASS L"ZefEntriesWindow"

enum {
  IDC_EDITOR = 100,
  IDC_TABS = 101,
  IDC_LOG = 102,
  IDC_STATUS = 103,
  IDC_ENTRIES = 104,

  IDM_QUIT = 200,
  IDM_DIRECTORIES = 201,
  IDM_ASSISTANT = 210,
  IDM_CONSTANTS = 211,
  IDM_TYPES = 212,
  IDM_CLEAR_LOG = 220,
  IDM_TRACE = 221,
  IDM_FILTER = 222,
  IDM_MODAL = 230,
  IDM_MODELESS = 231,
  IDM_VIEW = 232,
  IDM_VIEW_CHANGED = 240,
  IDM_VIEW_CLEAR = 241,
  IDM_UPDATE = 280,
  IDM_FIRST_STEPS = 281,
  IDM_ABOUT = 290,
};
