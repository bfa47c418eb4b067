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
 * instead of the main one. The result is the dialog's outcome (0 or 1); only its low byte counts.
 */
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

/* Runs the constant picker on a value: named constants of the syntax database, joined by "+".
 *   text    the value to start from
 *   result  receives the value built, or the text unchanged when the user cancelled; never null
 *           afterwards; valid until the next call of this function or VCLSyntaxHelpBox */
void ZEFEXT_API VCLSyntaxConstHelpBox(const char* text, const char** result);

/* Runs the editor of a script's variable types.
 *   text    the variables, as comma text of name=type entries
 *   result  receives the edited ones, or the text unchanged when the user cancelled; never null
 *           afterwards; valid until the next call of this function or VCLSyntaxGetNewTypes */
void ZEFEXT_API VCLSyntaxTypesBox(const char* text, const char** result);

/* Whether the variable types changed: by the last VCLSyntaxTypesBox that the user confirmed, or in
 * the last VCLSyntaxHelpBox, when the user gave an undeclared variable a type. Returns 1 or 0.
 *   result  receives all variables as comma text when they changed, else the empty text; null when
 *           none of the assistant's functions was called yet */
unsigned char ZEFEXT_API VCLSyntaxGetNewTypes(const char** result);

#ifdef __cplusplus
}
#endif

#endif
