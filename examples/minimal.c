/* The smallest useful host of zefext.dll: a line of script; F1 opens the object assistant on it.
 *
 * zefext.dll stands beside this program. So do VBSZEF.XML and ZEF.EXE: the library looks for its
 * syntax database beside a file of that name. */
#include <windows.h>

#include "zefext_load.h"

static ZefExt zef;
static HWND edit;

static void Assist(void) {
  char line[4096];
  int cursor;
  const char* result;
  GetWindowTextA(edit, line, sizeof line);
  SendMessageA(edit, EM_GETSEL, 0, (LPARAM)&cursor);
  zef.VCLSyntaxHelpBox(line, &cursor, &result, "compte=Cpt,budget=Budget");
  if (!result) return;          /* there is no assistant: want of memory, say */
  SetWindowTextA(edit, result); /* the same line when the user cancelled */
  SendMessageA(edit, EM_SETSEL, cursor, cursor);
}

static LRESULT CALLBACK WindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_SIZE:
      MoveWindow(edit, 8, 8, LOWORD(lParam) - 16, 24, TRUE);
      return 0;
    case WM_SETFOCUS:
      SetFocus(edit);
      return 0;
    case WM_CLOSE:
      if (!IsWindowEnabled(window)) return 0; /* a dialog of the library is open */
      ZefExtUnload(&zef);                     /* while the window still exists */
      DestroyWindow(window);
      return 0;
    case WM_DESTROY:
      PostQuitMessage(0);
      return 0;
  }
  return DefWindowProcA(window, message, wParam, lParam);
}

int WINAPI WinMain(HINSTANCE instance, HINSTANCE previous, LPSTR commandLine, int show) {
  WNDCLASSA windowClass;
  MSG message;
  HWND window;
  const char* missing = ZefExtLoad(&zef, "zefext.dll");
  (void)previous;
  (void)commandLine;
  if (missing || zef.VCLGetVersion() < ZEF_VERSION) {
    MessageBoxA(NULL, missing ? missing : "zefext.dll", "Introuvable ou trop ancien", MB_ICONERROR);
    return 1;
  }
  memset(&windowClass, 0, sizeof windowClass);
  windowClass.lpfnWndProc = WindowProc;
  windowClass.hInstance = instance;
  windowClass.hCursor = LoadCursor(NULL, IDC_ARROW);
  windowClass.hbrBackground = (HBRUSH)(COLOR_BTNFACE + 1);
  windowClass.lpszClassName = "Minimal";
  RegisterClassA(&windowClass);
  window = CreateWindowA("Minimal", "F1 : assistant objet", WS_OVERLAPPEDWINDOW, CW_USEDEFAULT,
                         CW_USEDEFAULT, 640, 120, NULL, NULL, instance, NULL);
  edit = CreateWindowA("EDIT", "compte.SoldeAu(Date)", WS_CHILD | WS_VISIBLE | WS_BORDER, 8, 8, 600,
                       24, window, NULL, instance, NULL);
  zef.VCLSetMainWindowHandle(window);
  ShowWindow(window, show);
  SendMessageA(edit, EM_SETSEL, 8, 8);
  while (GetMessageA(&message, NULL, 0, 0) > 0) {
    if (message.message == WM_KEYDOWN && message.wParam == VK_F1 && message.hwnd == edit) {
      Assist();
      continue;
    }
    TranslateMessage(&message);
    DispatchMessageA(&message);
  }
  return 0;
}
