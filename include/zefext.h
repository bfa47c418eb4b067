/* zefext.dll: the dialogs and services that ZEF does not have itself, for hosts in C and C++.
 *
 * Calling. Every function uses the standard Windows calling convention (stdcall) and an undecorated
 * name; two use the names of C++ compilers (CreateExampleView). No function raises a C++ exception;
 * one raises a structured one (VCLStringListGet). zefext_load.h binds all of them at run time.
 *
 * Order. Load; VCLSetMainWindowHandle; VCLSetMainHelpFile; the services, any number of times;
 * VCLFree while the main window still exists; unload. A close that reaches the main window while a
 * dialog is open (it is disabled then) is best ignored. A host that lets go of the library while
 * one of its dialogs is on screen unloads it a moment after the dialog has been closed.
 *
 * Thread. Call everything from the one thread that runs the host's windows. While the library has a
 * window, a call from another thread than the window's is refused: it does nothing and gives what a
 * refused handle or a cancelled dialog would. Once that thread has ended, its windows are forgotten
 * and made anew for the next caller. VCLGetVersion, GetRegConf, SetRegConf and MD5 may be called
 * from any thread.
 *
 * Texts are zero-terminated and in the process's ANSI code page; positions and lengths count bytes.
 * Null pointers are accepted everywhere: a null in-text reads as empty, a null out-argument is
 * skipped. Texts handed out belong to the library and are never freed by the host; copy them, each
 * function says how long they live.
 *
 * Results. Of the dialogs' results only the low byte counts where a function says so; a one-byte
 * result (unsigned char) leaves the rest of the register undefined.
 *
 * Message loop. Windows that the library leaves open (debug window, modeless dialogs, views,
 * download window) need a loop that translates and dispatches every message of the thread. They see
 * their own dialog keys before the loop does; accelerators must be kept to the host's own windows.
 * Modal functions run a loop of their own: timers and messages reach the host's windows meanwhile,
 * and any function may be called from there. WM_QUIT met there is posted again for the host.
 *
 * Syntax database. VBSZEF.XML is looked for beside the file ZEF.EXE, and that where the system
 * looks for programs: the folder of the running program, the current one, the system's, the PATH's.
 * A program of another name needs a file ZEF.EXE beside it (an empty one will do). Without the file
 * the assistant opens with empty lists.
 *
 * What goes wrong unseen (an error inside the library, no database, a call or a handle that was
 * refused, a file or a setting that cannot be written) is told to the debugger's output, one line
 * that begins with "zefext: " and names the function that was called.
 *
 * Other languages. Visual Basic: declare booleans As Byte, out-texts As Long, and copy them with
 * lstrlenA and RtlMoveMemory; strings given ByVal As String are converted to the ANSI code page by
 * the language. Pascal: stdcall; PAnsiChar; Byte for booleans. C#: CharSet.Ansi, CallingConvention
 * StdCall; IntPtr for handles and out-texts (Marshal.PtrToStringAnsi), byte for booleans; the
 * thread must be STAThread. In every language: a single-threaded apartment, or none.
 */
#ifndef ZEFEXT_H
#define ZEFEXT_H

#include <windows.h>

#ifdef __cplusplus
extern "C" {
#endif

#define ZEFEXT_API WINAPI

/* The interface version that this header describes: 1102 is 11.02. A library whose VCLGetVersion is
 * lower lacks something of it; a higher one has it all. */
#define ZEF_VERSION 1102

/* ---- Library ------------------------------------------------------------------------------- */

/* The interface version, to be compared with ZEF_VERSION. May be called at any time, also first. */
unsigned long ZEFEXT_API VCLGetVersion(void);

/* The host's main window: owner of every window and message box made from then on. Windows made
 * earlier keep their owner. */
void ZEFEXT_API VCLSetMainWindowHandle(HWND mainWindow);

/* The host's help file: copied, and taken by every dialog made from then on. The Help buttons and
 * F1 ask WinHelp for their contexts, or HTML Help when the file's name ends in ".chm": Windows 10
 * and 11 show nothing for WinHelp. */
void ZEFEXT_API VCLSetMainHelpFile(const char* helpFile);

/* Destroys the windows that the library keeps between calls: the hint bubble, the debug window, the
 * assistant, the type filter and the directory list, in that order. May be called any number of
 * times; a later call of a service makes them afresh. Called from inside one of these dialogs, it
 * closes that dialog as Cancel does. All others are untouched: the base dialog and the offer close
 * with their call, modeless dialogs, views and downloads live until the host frees them or unloads
 * the library. */
void ZEFEXT_API VCLFree(void);

/* ---- Dialogs ------------------------------------------------------------------------------- */

/* A form of the library, held by the host. A handle that is null, stale or foreign is refused; none
 * is ever given out twice while the library is loaded. */
typedef struct ZefDialogObject* ZefDialog;

/* Shows the base dialog until the user closes it. With a help file, its Help button opens that
 * instead of the main one. The result is the dialog's outcome (0 or 1); only its low byte counts.
 */
int ZEFEXT_API VCLInvokeModalDialog(const char* helpFile);

/* Shows a base dialog inside a window of the host and returns at once. The handle is the host's
 * until VCLFreeNonModalDialog; closing the dialog only hides it. It takes the focus only where the
 * user can see it, and gives it back as it goes to the window of the host that had it before: made
 * in a hidden window, it gets the focus when the host passes it on (SetFocus to the child). */
void ZEFEXT_API VCLInvokeNonModalDialog(HWND parent, const char* helpFile, ZefDialog* dialog);

/* Destroys such a dialog. The result is its outcome (low byte), or 0 when the handle is refused. */
int ZEFEXT_API VCLFreeNonModalDialog(ZefDialog dialog);

/* Shows a view (see CreateExampleView) in its window; the focus goes as with the dialog above. */
void ZEFEXT_API VCLDialogShow(ZefDialog view);

/* 1 when the user changed anything in a view since it was made or cleared; 0 when not, or when the
 * handle is no view. */
int ZEFEXT_API VCLDialogHasChanged(ZefDialog view);

/* From now on a view counts as unchanged. */
void ZEFEXT_API VCLDialogClearHasChanged(ZefDialog view);

#ifdef __cplusplus
}

struct IUnknown;
/* An interface of the host's own. */
struct IExClass1;

/* The two functions below are exported under the decorated names of three C++ compilers, so that
 * old hosts link. C, and whoever binds at run time, takes one of the names in zefext_load.h: the
 * view's variable is then a ZefDialog*.
 *
 * Makes a view, still hidden, inside a window of the host, and returns its window, or null when it
 * cannot be made. The handle, for the VCLDialog functions, goes into a variable that is declared as
 * an interface pointer but receives none. The view lives until the host destroys the window around
 * it; the handle is stale from then on. The host may show and hide that window by itself. It keeps
 * the size and places of its own layout, whatever the size of the parent.
 *
 * In the host's message loop a view takes the keys that it has a use for: Tab, arrows and mnemonics
 * of its controls, Enter and Escape where a control or a button of it answers them. Tab beyond
 * either end is the host's; where the host does not navigate, it goes round in the view.
 *
 * A parent that is no window gives a hidden window of its own. A help file that is not null becomes
 * the main one, as by VCLSetMainHelpFile. */
HWND ZEFEXT_API CreateExampleView(void* parent, const char* const helpFile, IUnknown*& view);

/* Gives such a view an interface of the host's, which it keeps, uncounted and uncalled. Returns the
 * view, or null when the handle is refused. */
void* ZEFEXT_API VCLExDlgDlwdGive(IExClass1* exClass, void* view);

extern "C" {
#endif

/* ---- Hints and traces ---------------------------------------------------------------------- */

/* Shows a bubble that belongs to a window of the host: its left top at x, y (pixels of the screen)
 * if it fits on the monitor there. It takes neither focus nor activation. It stays until the next
 * call replaces it, its window goes, or VCLFree: to take it away, give it a small hidden window of
 * its own and destroy that.
 *   maxWidth  of the whole bubble, in pixels: the text is wrapped, long words are broken. 0, less
 *             than 0 or more than the monitor's work area has: as wide as that. Less than a letter
 *             takes: a letter a line
 * Text too high for the work area is cut and ends in "...". */
void ZEFEXT_API VCLShowHint(HWND window, const char* text, int x, int y, int maxWidth);

/* Kept for old hosts: leaves the bubble on the screen. */
void ZEFEXT_API VCLHideHint(void);

/* Adds a numbered line to the debug window, and shows the window when it is hidden, other than with
 * a minimised main window; it has the focus then. The line is on the screen when the call returns;
 * only a flood of lines, more than the window can draw in a fifth of a second, waits until the host
 * serves messages. */
void ZEFEXT_API VCLShowDebugText(const char* text);

/* ---- Strings and string lists -------------------------------------------------------------- */

/* A text of any length, and an ordered list of such texts, both made and freed by the host and kept
 * by the library. A handle that is null, freed or foreign is refused: the function then does
 * nothing (counts and indexes are -1). Texts may hold any byte but zero. */
typedef struct ZefStringObject* ZefString;
typedef struct ZefStringListObject* ZefStringList;

/* Makes an empty string; *handle is null when there is no memory for it. */
void ZEFEXT_API VCLAnsiStringCreate(ZefString* handle);

/* Gives the destination the source's text. The characters are shared until one side changes. */
void ZEFEXT_API VCLAnsiStringCopy(ZefString destination, ZefString source);

/* Gives a string back; its handle is refused from then on. */
void ZEFEXT_API VCLAnsiStringFree(ZefString handle);

/* Copies the text into the string. */
void ZEFEXT_API VCLAnsiStringSet(ZefString handle, const char* text);

/* *text receives the string's characters, never null for a live handle; valid until the string is
 * next changed or freed. A refused handle gives null. */
void ZEFEXT_API VCLAnsiStringGet(ZefString handle, const char** text);

/* Appends the source's text to the destination. */
void ZEFEXT_API VCLAnsiStringConcat(ZefString destination, ZefString source);

/* Makes an empty list; *list is null when there is no memory for it.
 *   allowDuplicates  ignored: no list ever holds two equal lines
 *   caseSensitive    0: letter case is ignored when lines or names are compared
 *   sorted           0: lines stand in order of arrival; else in the order of the user's locale,
 *                    from the first line on: nothing sorts a list later */
void ZEFEXT_API VCLStringListCreate(ZefStringList* list, unsigned char allowDuplicates,
                                    unsigned char caseSensitive, unsigned char sorted);

/* Gives a list back; its handle is refused from then on. */
void ZEFEXT_API VCLStringListFree(ZefStringList list);

/* The 0-based index of the line that now holds the text: a new one, or the equal one that was there
 * already. */
int ZEFEXT_API VCLStringListAdd(ZefStringList list, const char* text);

/* Removes every line. */
void ZEFEXT_API VCLStringListClear(ZefStringList list);

/* The number of lines. */
int ZEFEXT_API VCLStringListCount(ZefStringList list);

/* Copies a line into a string. Only indexes from 1 on are read: index 0, the first line, and
 * negative ones leave the string as it was. An index past the last line raises the system's
 * structured exception EXCEPTION_ARRAY_BOUNDS_EXCEEDED, which few languages catch: ask
 * VCLStringListCount first. VCLStringListGetCommaText tells the first line with the others. */
void ZEFEXT_API VCLStringListGet(ZefStringList list, int index, ZefString line);

/* value receives what follows the first "=" of the first line that has the name before it; an empty
 * text when there is none. */
void ZEFEXT_API VCLStringListGetParam(ZefStringList list, ZefString name, ZefString value);

/* Changes the value of the first line of that name, or adds the line name=value. An empty value
 * removes the line. In a sorted list the line moves to its place, and from then on it is the one
 * that its name reads, until it is removed, also where that is behind another line of the name. */
void ZEFEXT_API VCLStringListSetParam(ZefStringList list, ZefString name, ZefString value);

/* text receives the lines, separated by commas; a line that holds a blank, a control character, a
 * comma or a double quote stands between double quotes, its own ones doubled, and so does an empty
 * line that is the only one. */
void ZEFEXT_API VCLStringListGetCommaText(ZefStringList list, ZefString text);

/* Replaces the lines by those of a comma text. Outside double quotes, blanks and control characters
 * part lines like commas, but several in a row make no empty line. A double quote opens at the
 * start of a line only, and need not be closed. A comma at the end makes a last, empty line. */
void ZEFEXT_API VCLStringListSetCommaText(ZefStringList list, ZefString text);

/* ---- Settings and digest ------------------------------------------------------------------- */

/* Reads a text that SetRegConf wrote into the same hive.
 *   buffer       receives the text with its terminating zero; an empty text when reading fails
 *   size         of the buffer in bytes
 *   currentUser  0: the machine's settings; else the current user's
 * The result is the system's error code: 0; 2 while nothing was written; 87 when buffer or name is
 * null; 234 when the buffer is too small. */
long ZEFEXT_API GetRegConf(char* buffer, unsigned long size, const char* name,
                           unsigned char currentUser);

/* Writes a text. The result is the system's error code: 0; 5 without the right to write; 87 when
 * name is null. */
long ZEFEXT_API SetRegConf(const char* name, const char* value, unsigned char currentUser);

/* digest receives the MD5 digest of the text's bytes: 32 lower-case hexadecimal digits and a zero,
 * 33 bytes. */
void ZEFEXT_API MD5(char* digest, const char* text);

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
 *   result  receives the rewritten line, or the line unchanged when the user cancelled; null when
 *           the assistant could not be made; valid until the next call of this function or
 *           VCLSyntaxConstHelpBox
 *   types   comma text of name=type: the variable types declared in the script
 * Cancelling leaves the cursor alone, confirming sets it: when both line and cursor come back as
 * they were, there is nothing to do, whichever it was. A call from another thread gets null. */
void ZEFEXT_API VCLSyntaxHelpBox(const char* line, int* cursor, const char** result,
                                 const char* types);

/* Runs the constant picker on a value: named constants of the syntax database, joined by "+". Its
 * list is empty until the user picks a category.
 *   text    the value to start from
 *   result  receives the value built, or the text unchanged when the user cancelled; null when the
 *           picker could not be made; valid until the next call of this function or
 *           VCLSyntaxHelpBox */
void ZEFEXT_API VCLSyntaxConstHelpBox(const char* text, const char** result);

/* Runs the editor of a script's variable types.
 *   text    the variables, as comma text of name=type entries
 *   result  receives the edited ones, or the text unchanged when the user cancelled; null when the
 *           editor could not be made; valid until the next call of this function or
 *           VCLSyntaxGetNewTypes */
void ZEFEXT_API VCLSyntaxTypesBox(const char* text, const char** result);

/* Whether the variable types changed: by the last VCLSyntaxTypesBox that the user confirmed, or in
 * the last VCLSyntaxHelpBox, when the user gave an undeclared variable a type. Returns 1 or 0.
 *   result  receives all variables as comma text when they changed, else the empty text; null when
 *           none of the assistant's functions was called yet */
unsigned char ZEFEXT_API VCLSyntaxGetNewTypes(const char** result);

/* ---- Accounts directories ------------------------------------------------------------------- */

/* Opens one of the user's accounts directories: makes it the process's current directory. Without
 * showing anything when it can, else in a dialog where the user chooses, adds, renames, removes and
 * moves directories. The list is the current user's, in the settings (SetRegConf).
 *   name       the entry to open; empty or null is the default one
 *   showList   1 to show the dialog in any case
 *   cancelled  receives 1 when the user left the dialog without choosing, else 0
 * Returns 1 when the current directory has changed, so that files must be opened anew, else 0. The
 * directory may have changed although the user cancelled: a move of the current one is not undone,
 * and its new place is stored at once. A move that was broken off, by a crash say, is finished or
 * undone first. A call while the dialog is open is answered as cancelled, and so is one during
 * which the library is freed. */
int ZEFEXT_API VCLSelectDirList(const char* name, unsigned char showList, unsigned char* cancelled);

/* ---- Filter -------------------------------------------------------------------------------- */

/* Lets the user choose the operation type to filter entries by, and for the type "CB/Chq" a card or
 * cheque book.
 *   types, cards  what there is to choose from, in their order
 *   selection     in: what was chosen before, or empty; out, when the user confirmed: the type, for
 *                 "CB/Chq" the card or cheque book; empty when nothing was chosen
 * Returns 1 when the user confirmed, else 0: the filter is then to be removed. A null or unknown
 * handle gives 0 at once. */
unsigned char ZEFEXT_API VCLSelectTypOp(ZefStringList types, ZefStringList cards,
                                        ZefString selection);

/* ---- Update -------------------------------------------------------------------------------- */

/* What the user wants done with a new version. */
enum ZefOfferAnswer {
  ZEF_OFFER_IGNORE = -1, /* never signal this version again */
  ZEF_OFFER_LATER = 0,   /* not now */
  ZEF_OFFER_DOWNLOAD = 1
};

/* Asks what to do with a new version, showing a web page about it. Returns a ZefOfferAnswer.
 *   current      version installed
 *   offered      version on the web
 *   information  address of the page, http: or https:; one that cannot be shown leaves its place
 *                empty
 * The page is shown by the system's web browser control, without active controls, new windows,
 * downloads, messages and context menu. The control takes it for a page of its oldest days, unless
 * the page's head asks for the newest mode as its first line:
 *   <meta http-equiv="X-UA-Compatible" content="IE=edge"> */
int ZEFEXT_API VCLAskForDownload(const char* current, const char* offered, const char* information);

/* Makes a download window, hidden, and its handle. The result is 1, or 0 when it cannot be made.
 *   owner     a form of the library with which the window is destroyed; null or anything else: none
 *   helpFile  instead of the main one; may be null
 *   dialog    receives the handle, the host's until command 2 or VCLFreeNonModalDialog */
int ZEFEXT_API VCLNewURL(ZefDialog owner, const char* helpFile, ZefDialog* dialog);

/* The commands of VCLCmdURL, with their arguments. */
enum ZefDownloadCommand {
  /* value receives the dialog's outcome (0 or 1); needed. */
  ZEF_DOWNLOAD_GET_RESULT = 1,
  /* Destroys the window; a fetch is aborted. */
  ZEF_DOWNLOAD_DESTROY = 2,
  /* value receives a ZefDownloadStatus; needed. Also moves the bar of a window that is shown, for a
   * host that asks again and again instead of serving its messages. */
  ZEF_DOWNLOAD_GET_STATUS = 3,
  /* text is the address (http: or https:) of the next fetches. Blanks around it are ignored; one
   * that names a user is refused. */
  ZEF_DOWNLOAD_SET_ADDRESS = 4,
  /* text names the file for the body of the next fetches; null: the body is kept in memory. Without
   * this command it goes to "Default.htm", its header to "Head.txt", both or neither, in the
   * directory that is the current one when the fetch starts. A relative name is taken there as
   * well; there is no header file then. */
  ZEF_DOWNLOAD_SET_FILE = 5,
  /* Copies the body kept in memory: value holds the size of the buffer that text points to, and is
   * lowered to the length of the body; no zero is added. Nothing when either is null. The length
   * is not told by itself: take a larger buffer while value comes back unchanged. A body that
   * did not arrive whole, or is larger than 256 MB, is not kept; there is none while a fetch runs.
   */
  ZEF_DOWNLOAD_COPY_BODY = 6,
  /* Starts a fetch in the background; nothing when a fetch runs already. The host is not told of
   * its end: ask GET_STATUS from time to time. */
  ZEF_DOWNLOAD_START = 7,
  ZEF_DOWNLOAD_SHOW = 8,
  /* Waits for the end of the fetch in the background. */
  ZEF_DOWNLOAD_WAIT = 9,
  /* Fetches at once and returns when that has ended; nothing when a fetch runs already. */
  ZEF_DOWNLOAD_FETCH = 10,
  /* Aborts the fetch in the background; the window can fetch again. */
  ZEF_DOWNLOAD_ABORT = 11
};

/* How the last fetch of a download window ended. */
enum ZefDownloadStatus {
  ZEF_DOWNLOAD_RUNNING = 0,        /* one runs in the background */
  ZEF_DOWNLOAD_RECEIVED = 1,       /* the document was received */
  ZEF_DOWNLOAD_NONE = -1,          /* none has ended, or it was aborted */
  ZEF_DOWNLOAD_NO_CONNECTION = -2, /* the connection could not be made */
  ZEF_DOWNLOAD_FAILED = -3,        /* what came was not the document, or not all of it */
  ZEF_DOWNLOAD_UNKNOWN_HOST = -4   /* the server's name is unknown */
};

/* Drives a download window by a ZefDownloadCommand. The result is 1, or 0 when the handle is
 * refused, the command unknown or its value missing; nothing is changed then.
 *
 * The file named is replaced when the whole body has arrived, and untouched else; the new one has
 * the access rights of the old one, and a read-only one stays. Its name and the address are taken
 * when a fetch starts. A fetch fails when nothing happens for 10 seconds. While WAIT and FETCH
 * wait, windows are repainted and messages sent by other threads answered; input waits. DESTROY and
 * ABORT return at once, whatever the network does. Should the host free the library under a fetch,
 * it stays in memory until that has ended. */
int ZEFEXT_API VCLCmdURL(ZefDialog dialog, signed char command, const char* text, int* value);

#ifdef __cplusplus
}
#endif

#endif
