/* zefext.dll bound at run time, in C (also C89) and C++. Include it in one source or in many.
 *
 *     ZefExt zef;
 *     const char* missing = ZefExtLoad(&zef, "zefext.dll");
 *     if (missing) ...                       the file or the function that is not there
 *     zef.VCLSetMainWindowHandle(window);
 *     ...
 *     ZefExtUnload(&zef);
 */
#ifndef ZEFEXT_LOAD_H
#define ZEFEXT_LOAD_H

#include <string.h>

#include "zefext.h"

/* Every export of an undecorated name: X(result, name, parameters). */
#define ZEFEXT_FUNCTIONS(X)                                                                      \
  X(unsigned long, VCLGetVersion, (void))                                                        \
  X(void, VCLSetMainWindowHandle, (HWND mainWindow))                                             \
  X(void, VCLSetMainHelpFile, (const char* helpFile))                                            \
  X(void, VCLFree, (void))                                                                       \
  X(int, VCLInvokeModalDialog, (const char* helpFile))                                           \
  X(void, VCLInvokeNonModalDialog, (HWND parent, const char* helpFile, ZefDialog* dialog))       \
  X(int, VCLFreeNonModalDialog, (ZefDialog dialog))                                              \
  X(void, VCLDialogShow, (ZefDialog view))                                                       \
  X(int, VCLDialogHasChanged, (ZefDialog view))                                                  \
  X(void, VCLDialogClearHasChanged, (ZefDialog view))                                            \
  X(void, VCLShowHint, (HWND window, const char* text, int x, int y, int maxWidth))              \
  X(void, VCLHideHint, (void))                                                                   \
  X(void, VCLShowDebugText, (const char* text))                                                  \
  X(void, VCLAnsiStringCreate, (ZefString * handle))                                             \
  X(void, VCLAnsiStringCopy, (ZefString destination, ZefString source))                          \
  X(void, VCLAnsiStringFree, (ZefString handle))                                                 \
  X(void, VCLAnsiStringSet, (ZefString handle, const char* text))                                \
  X(void, VCLAnsiStringGet, (ZefString handle, const char** text))                               \
  X(void, VCLAnsiStringConcat, (ZefString destination, ZefString source))                        \
  X(void, VCLStringListCreate,                                                                   \
    (ZefStringList * list, unsigned char allowDuplicates, unsigned char caseSensitive,           \
     unsigned char sorted))                                                                      \
  X(void, VCLStringListFree, (ZefStringList list))                                               \
  X(int, VCLStringListAdd, (ZefStringList list, const char* text))                               \
  X(void, VCLStringListClear, (ZefStringList list))                                              \
  X(int, VCLStringListCount, (ZefStringList list))                                               \
  X(void, VCLStringListGet, (ZefStringList list, int index, ZefString line))                     \
  X(void, VCLStringListGetParam, (ZefStringList list, ZefString name, ZefString value))          \
  X(void, VCLStringListSetParam, (ZefStringList list, ZefString name, ZefString value))          \
  X(void, VCLStringListGetCommaText, (ZefStringList list, ZefString text))                       \
  X(void, VCLStringListSetCommaText, (ZefStringList list, ZefString text))                       \
  X(long, GetRegConf,                                                                            \
    (char* buffer, unsigned long size, const char* name, unsigned char currentUser))             \
  X(long, SetRegConf, (const char* name, const char* value, unsigned char currentUser))          \
  X(void, MD5, (char* digest, const char* text))                                                 \
  X(int, VCLSyntaxIsMethod, (const char* word))                                                  \
  X(int, VCLSyntaxIsConstant, (const char* word))                                                \
  X(void, VCLSyntaxHelpBox,                                                                      \
    (const char* line, int* cursor, const char** result, const char* types))                     \
  X(void, VCLSyntaxConstHelpBox, (const char* text, const char** result))                        \
  X(void, VCLSyntaxTypesBox, (const char* text, const char** result))                            \
  X(unsigned char, VCLSyntaxGetNewTypes, (const char** result))                                  \
  X(int, VCLSelectDirList, (const char* name, unsigned char showList, unsigned char* cancelled)) \
  X(unsigned char, VCLSelectTypOp,                                                               \
    (ZefStringList types, ZefStringList cards, ZefString selection))                             \
  X(int, VCLAskForDownload, (const char* current, const char* offered, const char* information)) \
  X(int, VCLNewURL, (ZefDialog owner, const char* helpFile, ZefDialog* dialog))                  \
  X(int, VCLCmdURL, (ZefDialog dialog, signed char command, const char* text, int* value))

/* The two exports of C++ names, as C sees them: X(result, name, parameters, exported name). */
#define ZEFEXT_DECORATED_FUNCTIONS(X)                                               \
  X(HWND, CreateExampleView, (void* parent, const char* helpFile, ZefDialog* view), \
    "@CreateExampleView$qqspvxpxcrp8IUnknown")                                      \
  X(void*, VCLExDlgDlwdGive, (void* exClass, void* view), "@VCLExDlgDlwdGive$qqsp9IExClass1pv")

/* The library and its exports; all null while none is loaded. */
typedef struct ZefExt {
  HMODULE Module;
#define ZEFEXT_MEMBER(result, name, parameters) result(ZEFEXT_API* name) parameters;
#define ZEFEXT_DECORATED_MEMBER(result, name, parameters, exported) \
  ZEFEXT_MEMBER(result, name, parameters)
  ZEFEXT_FUNCTIONS(ZEFEXT_MEMBER)
  ZEFEXT_DECORATED_FUNCTIONS(ZEFEXT_DECORATED_MEMBER)
#undef ZEFEXT_DECORATED_MEMBER
#undef ZEFEXT_MEMBER
} ZefExt;

#if defined(__cplusplus)
#define ZEFEXT_LOCAL inline
#elif defined(__GNUC__)
#define ZEFEXT_LOCAL static __attribute__((unused))
#else
#define ZEFEXT_LOCAL static
#endif

/* Binds every export of a library that the host loaded itself. The result is null when all are
 * there, else the name of the first that is missing; the others are bound nevertheless. */
ZEFEXT_LOCAL const char* ZefExtBind(ZefExt* zef, HMODULE module) {
  const char* missing = NULL;
  FARPROC address;
  zef->Module = module;
#define ZEFEXT_BIND_AS(name, exported)        \
  address = GetProcAddress(module, exported); \
  if (!address && !missing) missing = #name;  \
  memcpy(&zef->name, &address, sizeof address);
#define ZEFEXT_BIND(result, name, parameters) ZEFEXT_BIND_AS(name, #name)
#define ZEFEXT_BIND_DECORATED(result, name, parameters, exported) ZEFEXT_BIND_AS(name, exported)
  ZEFEXT_FUNCTIONS(ZEFEXT_BIND)
  ZEFEXT_DECORATED_FUNCTIONS(ZEFEXT_BIND_DECORATED)
#undef ZEFEXT_BIND_DECORATED
#undef ZEFEXT_BIND
#undef ZEFEXT_BIND_AS
  return missing;
}

/* Frees the library's windows and unloads it. Call while the main window exists and from outside of
 * every function of the library. Nothing when none is loaded. */
ZEFEXT_LOCAL void ZefExtUnload(ZefExt* zef) {
  if (!zef->Module) return;
  if (zef->VCLFree) zef->VCLFree();
  FreeLibrary(zef->Module);
  memset(zef, 0, sizeof *zef);
}

/* Loads the library and binds every export. The result is null when all went well, else the file or
 * the name of the export that is missing; nothing is loaded then. Give the full path of the file
 * beside your program: a bare name is also looked for elsewhere. */
ZEFEXT_LOCAL const char* ZefExtLoad(ZefExt* zef, const char* file) {
  const char* missing;
  HMODULE module;
  memset(zef, 0, sizeof *zef);
  module = LoadLibraryA(file);
  if (!module) return file;
  missing = ZefExtBind(zef, module);
  if (!missing) return NULL;
  FreeLibrary(module);
  memset(zef, 0, sizeof *zef);
  return missing;
}

#endif
