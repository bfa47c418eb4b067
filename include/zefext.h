/* zefext.dll: the dialogs and services that ZEF does not have itself, for hosts in C and C++.
 *
 * Every function uses the standard Windows calling convention (stdcall) and an undecorated name.
 * Texts are zero-terminated and in the host's ANSI code page; positions and lengths count bytes.
 * Null pointers are accepted everywhere: a null in-text reads as empty, a null out-argument is
 * skipped. Texts handed out belong to the library and are never freed by the host. Call everything
 * from the one thread that runs the host's windows. No function raises a C++ exception.
 *
 * Order of calls: load; VCLSetMainWindowHandle; VCLSetMainHelpFile; the services, any number of
 * times; VCLFree while the main window still exists; unload.
 */
#ifndef ZEFEXT_H
#define ZEFEXT_H

#include <windows.h>

#ifdef __cplusplus
extern "C" {
#endif

#define ZEFEXT_API WINAPI

/* ---- Library ------------------------------------------------------------------------------- */

/* The interface version, 1102. May be called at any time, also first. */
unsigned long ZEFEXT_API VCLGetVersion(void);

/* The host's main window: owner of every window and message box made from then on. Windows made
 * earlier keep their owner. */
void ZEFEXT_API VCLSetMainWindowHandle(HWND mainWindow);

/* The host's help file: copied, and taken by every dialog made from then on. */
void ZEFEXT_API VCLSetMainHelpFile(const char* helpFile);

/* Destroys the windows that the library keeps between calls. May be called any number of times; a
 * later call of a service makes them afresh. Called from inside one of the library's dialogs, it
 * closes that dialog as Cancel does. */
void ZEFEXT_API VCLFree(void);

/* ---- Dialogs ------------------------------------------------------------------------------- */

/* A form of the library, held by the host. A handle that is null, stale or foreign is refused. */
typedef struct ZefDialogObject* ZefDialog;

/* Shows the base dialog until the user closes it. With a help file, its Help button opens that
 * instead of the main one. The result is the dialog's outcome (0 or 1); only its low byte counts. */
int ZEFEXT_API VCLInvokeModalDialog(const char* helpFile);

/* Shows a base dialog inside a window of the host and returns at once. The handle is the host's
 * until VCLFreeNonModalDialog; closing the dialog only hides it. */
void ZEFEXT_API VCLInvokeNonModalDialog(HWND parent, const char* helpFile, ZefDialog* dialog);

/* Destroys such a dialog. The result is its outcome (low byte), or 0 when the handle is refused. */
int ZEFEXT_API VCLFreeNonModalDialog(ZefDialog dialog);

/* ---- Visual Basic assistant ---------------------------------------------------------------- */

/* 1 when the word is a Visual Basic function, a predefined object that has text, or, written with
 * its leading dot, a member of an object of the syntax database; else 0. Letter case is ignored. */
int ZEFEXT_API VCLSyntaxIsMethod(const char* word);

/* 1 when the word is a constant of the syntax database; else 0. Letter case is ignored. */
int ZEFEXT_API VCLSyntaxIsConstant(const char* word);

/* Runs the object assistant on one script line.
 *   line    the script line; null is an empty expression
 *   cursor  in: 0-based index of the cursor in the line (null is 0); out, when the user confirmed:
 *           the index just after the edited expression
 *   result  receives the rewritten line, or the line unchanged when the user cancelled; never null
 *           afterwards; valid until the next call of this function or VCLSyntaxConstHelpBox
 *   types   comma text of name=type: the variable types declared in the script */
void ZEFEXT_API VCLSyntaxHelpBox(const char* line, int* cursor, const char** result,
                                 const char* types);

/* ---- Update -------------------------------------------------------------------------------- */

/* Asks what to do with a new version, showing a web page about it.
 *   current      version installed
 *   offered      version on the web
 *   information  address of the page; one that cannot be shown leaves its place empty
 * Returns 1: download it; 0: not now; -1: never signal this version again. */
int ZEFEXT_API VCLAskForDownload(const char* current, const char* offered,
                                 const char* information);

/* Makes a download window, hidden, and its handle. The result is 1, or 0 when it cannot be made.
 *   owner     a form of the library with which the window is destroyed; null or anything else: none
 *   helpFile  instead of the main one; may be null
 *   dialog    receives the handle, the host's until command 2 or VCLFreeNonModalDialog */
int ZEFEXT_API VCLNewURL(ZefDialog owner, const char* helpFile, ZefDialog* dialog);

/* Drives a download window. The result is 1, or 0 when the handle is refused, the command unknown
 * or its value missing; nothing is changed then.
 *
 *    1  value receives the dialog's outcome (0 or 1); needed
 *    2  destroys the window; a fetch is aborted
 *    3  value receives how the last fetch ended; needed. 0: one runs in the background; 1: the
 *       document was received; -1: none has ended, or it was aborted; -2: no connection; -3: failed;
 *       -4: the server's name is unknown
 *    4  text is the address (http: or https:) of the next fetches
 *    5  text names the file for the body of the next fetches; null: the body is kept in memory.
 *       Without this command it goes to "Default.htm", its header to "Head.txt"
 *    6  copies the body kept in memory: value holds the size of the buffer that text points to, and
 *       is lowered to the length of the body; no zero is added. Nothing when either is null. A body
 *       that did not arrive whole is not kept; there is none while a fetch runs
 *    7  starts a fetch in the background; nothing when a fetch runs already
 *    8  shows the window
 *    9  waits for the end of the fetch in the background
 *   10  fetches at once and returns when that has ended; nothing when a fetch runs already
 *   11  aborts the fetch in the background; the window can fetch again
 *
 * The file of command 5 is replaced when the whole body has arrived, and untouched else; its name
 * and the address are taken when a fetch starts. A fetch fails when nothing happens for 10 seconds.
 * While commands 9 and 10 wait, windows are repainted and messages sent by other threads answered;
 * input waits. Commands 2 and 11 return at once, whatever the network does. Should the host free
 * the library under a fetch, it stays in memory. */
int ZEFEXT_API VCLCmdURL(ZefDialog dialog, signed char command, char* text, int* value);

#ifdef __cplusplus
}
#endif

#endif
