/* One short example for each export, whole as it stands, shown in docs/host-reference.md. Compiled
 * and linked with the library's import library by the build, so that none of them can rot. */
#include <stdio.h>
#include <windows.h>

#include "zefext.h"
#include "zefext_load.h"

static HWND mainWindow;
static HWND page;

static void Library(void) {
  /* VCLGetVersion */
  if (VCLGetVersion() < ZEF_VERSION) puts("zefext.dll est trop ancienne");
  /* VCLSetMainWindowHandle */
  VCLSetMainWindowHandle(mainWindow); /* once the window is there, before any dialog */
  /* VCLSetMainHelpFile */
  VCLSetMainHelpFile("C:\\ZEF\\ZEF.HLP");
  /* VCLFree */
  VCLFree(); /* in WM_CLOSE, before DestroyWindow and FreeLibrary */
}

static void Dialogs(void) {
  /* VCLInvokeNonModalDialog */
  ZefDialog dialog;
  VCLInvokeNonModalDialog(page, NULL, &dialog);
  if (!dialog) puts("pas de boîte");
  /* VCLFreeNonModalDialog */
  VCLFreeNonModalDialog(dialog);
  /* VCLInvokeModalDialog */
  if (VCLInvokeModalDialog(NULL) & 0xFF) puts("OK");
  /* end */
}

/* These two have the names of C++ compilers: bound at run time. */
static void Views(const ZefExt* zef, void* services) {
  /* CreateExampleView */
  ZefDialog view; /* declared as an interface in C++; it is a handle */
  HWND window = zef->CreateExampleView(page, NULL, &view);
  if (!window) puts("pas de vue");
  /* VCLExDlgDlwdGive */
  zef->VCLExDlgDlwdGive(services, view);
  /* VCLDialogShow */
  VCLDialogShow(view);
  /* VCLDialogHasChanged */
  if (VCLDialogHasChanged(view) == 1) puts("à enregistrer");
  /* VCLDialogClearHasChanged */
  VCLDialogClearHasChanged(view);
  /* end */
}

static void HintsAndTraces(POINT mouse) {
  /* VCLShowHint */
  HWND owner = CreateWindowA("STATIC", "", WS_POPUP, 0, 0, 0, 0, mainWindow, NULL, NULL, NULL);
  VCLShowHint(owner, "Solde du compte à une date", mouse.x, mouse.y + 20, 300);
  DestroyWindow(owner); /* takes the bubble away */
  /* VCLHideHint */
  VCLHideHint(); /* does not hide: destroy the bubble's window instead */
  /* VCLShowDebugText */
  VCLShowDebugText("dossier ouvert");
  /* end */
}

static void Strings(void) {
  /* VCLAnsiStringCreate */
  ZefString name;
  ZefString copy;
  const char* text;
  VCLAnsiStringCreate(&name);
  VCLAnsiStringCreate(&copy);
  /* VCLAnsiStringSet */
  VCLAnsiStringSet(name, "Livret");
  /* VCLAnsiStringCopy */
  VCLAnsiStringCopy(copy, name);
  /* VCLAnsiStringConcat */
  VCLAnsiStringConcat(copy, name); /* "LivretLivret" */
  /* VCLAnsiStringGet */
  VCLAnsiStringGet(copy, &text);
  puts(text); /* before the string changes again */
  /* VCLAnsiStringFree */
  VCLAnsiStringFree(copy);
  VCLAnsiStringFree(name);
  /* end */
}

static void Lists(ZefString name, ZefString value) {
  int last;
  /* VCLStringListCreate */
  ZefStringList list;
  VCLStringListCreate(&list, 0, 0, 1); /* letter case ignored, sorted */
  /* VCLStringListAdd */
  VCLStringListAdd(list, "courant=Compte");
  VCLStringListAdd(list, "budget=Budget"); /* 0: it stands first */
  /* VCLStringListCount */
  last = VCLStringListCount(list) - 1;
  /* VCLStringListGet */
  if (last > 0) VCLStringListGet(list, last, value); /* line 0 cannot be read */
  /* VCLStringListGetParam */
  VCLAnsiStringSet(name, "courant");
  VCLStringListGetParam(list, name, value); /* "Compte" */
  /* VCLStringListSetParam */
  VCLAnsiStringSet(value, "");
  VCLStringListSetParam(list, name, value); /* removes the line */
  /* VCLStringListSetCommaText */
  VCLAnsiStringSet(value, "Carte,\"Chèquier n° 102\"");
  VCLStringListSetCommaText(list, value);
  /* VCLStringListGetCommaText */
  VCLStringListGetCommaText(list, value);
  /* VCLStringListClear */
  VCLStringListClear(list);
  /* VCLStringListFree */
  VCLStringListFree(list);
  /* end */
}

static void Settings(void) {
  /* GetRegConf */
  char path[260];
  if (GetRegConf(path, sizeof path, "DernierDossier", 1) != ERROR_SUCCESS) path[0] = '\0';
  /* SetRegConf */
  if (SetRegConf("DernierDossier", path, 1) != ERROR_SUCCESS) puts("réglage non enregistré");
  /* end */
}

static void Digest(void) {
  /* MD5 */
  char digest[33];
  MD5(digest, "abc"); /* 900150983cd24fb0d6963f7d28e17f72 */
  puts(digest);
  /* end */
}

static void Assistant(char* line) {
  /* VCLSyntaxIsMethod */
  if (VCLSyntaxIsMethod("MsgBox") || VCLSyntaxIsMethod(".SoldeAu")) puts("une méthode");
  /* VCLSyntaxIsConstant */
  if (VCLSyntaxIsConstant("vbYesNo")) puts("une constante");
  /* VCLSyntaxHelpBox */
  {
    const char* result;
    int cursor = 7;
    VCLSyntaxHelpBox("compte.SoldeAu(Date)", &cursor, &result, "compte=Cpt");
    if (result) lstrcpynA(line, result, 1000); /* a copy: the text is the library's */
  }
  /* VCLSyntaxGetNewTypes */
  {
    const char* types;
    if (VCLSyntaxGetNewTypes(&types)) puts(types); /* to declare in the script */
  }
  /* VCLSyntaxConstHelpBox */
  {
    const char* value;
    VCLSyntaxConstHelpBox("vbYesNo + vbQuestion", &value);
    if (value) puts(value);
  }
  /* VCLSyntaxTypesBox */
  {
    const char* types;
    VCLSyntaxTypesBox("compte=Cpt,budget=Budget", &types);
    if (types) puts(types);
  }
  /* end */
}

static void Directories(void) {
  /* VCLSelectDirList */
  unsigned char cancelled;
  if (VCLSelectDirList("", 0, &cancelled)) puts("fichiers à rouvrir"); /* the default one */
  /* end */
}

static void Filter(ZefStringList types, ZefStringList cards, ZefString selection) {
  /* VCLSelectTypOp */
  const char* chosen = NULL;
  if (VCLSelectTypOp(types, cards, selection)) VCLAnsiStringGet(selection, &chosen);
  if (chosen) puts(chosen);
  /* end */
}

static void Update(void) {
  /* VCLAskForDownload */
  int answer = VCLAskForDownload("11.02", "11.03", "http://127.0.0.1/nouveautes.html");
  if (answer == ZEF_OFFER_DOWNLOAD) puts("à recevoir");
  /* end */
}

static ZefDialog download;

static void Download(void) {
  /* VCLNewURL */
  if (!VCLNewURL(NULL, NULL, &download)) puts("pas de téléchargement");
  /* VCLCmdURL */
  VCLCmdURL(download, ZEF_DOWNLOAD_SET_ADDRESS, "http://127.0.0.1/zef.bin", NULL);
  VCLCmdURL(download, ZEF_DOWNLOAD_SET_FILE, "C:\\ZEF\\zef-nouveau.bin", NULL);
  VCLCmdURL(download, ZEF_DOWNLOAD_SHOW, NULL, NULL);
  VCLCmdURL(download, ZEF_DOWNLOAD_START, NULL, NULL);
  SetTimer(mainWindow, 1, 200, NULL); /* nobody tells of the end: ask for it */
  /* end */
}

static void DownloadTimer(void) {
  /* VCLCmdURL */
  int status; /* in the window's WM_TIMER */
  VCLCmdURL(download, ZEF_DOWNLOAD_GET_STATUS, NULL, &status);
  if (status != ZEF_DOWNLOAD_RUNNING) {
    KillTimer(mainWindow, 1);
    VCLCmdURL(download, ZEF_DOWNLOAD_DESTROY, NULL, NULL);
    if (status != ZEF_DOWNLOAD_RECEIVED) puts("le fichier précédent est intact");
  }
  /* end */
}

int main(void) {
  char line[1000];
  POINT mouse = {0, 0};
  ZefExt zef;
  Strings();
  Settings();
  Digest();
  if (VCLGetVersion() == 0) { /* the others show windows: compiled and linked, not run */
    Library();
    Dialogs();
    if (!ZefExtLoad(&zef, "zefext.dll")) Views(&zef, NULL);
    HintsAndTraces(mouse);
    Lists(NULL, NULL);
    Assistant(line);
    Directories();
    Filter(NULL, NULL, NULL);
    Update();
    Download();
    DownloadTimer();
  }
  return 0;
}
