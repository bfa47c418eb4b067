#pragma once

#include <string>
#include <vector>

#include "outside/library.h"

/// A text that the host holds by handle, freed with this object. Texts are in the ANSI code page.
class THostString {
 public:
  explicit THostString(const TLibrary& library, const char* text = "") : FLibrary(library) {
    FLibrary.VCLAnsiStringCreate(&FHandle);
    FLibrary.VCLAnsiStringSet(FHandle, text);
  }
  THostString(const THostString&) = delete;
  THostString& operator=(const THostString&) = delete;
  ~THostString() { FLibrary.VCLAnsiStringFree(FHandle); }

  ZefString Handle() const { return FHandle; }
  const char* Characters() const {
    const char* text = nullptr;
    FLibrary.VCLAnsiStringGet(FHandle, &text);
    return text;
  }
  std::string Text() const { return Characters(); }

 private:
  const TLibrary& FLibrary;
  ZefString FHandle = nullptr;
};

/// The same for a list.
class THostList {
 public:
  explicit THostList(const TLibrary& library, const std::vector<std::string>& lines = {},
                     unsigned char tellCase = 0, unsigned char sorted = 0)
      : FLibrary(library) {
    FLibrary.VCLStringListCreate(&FHandle, true, tellCase, sorted);
    for (const auto& line : lines) Add(line);
  }
  THostList(const THostList&) = delete;
  THostList& operator=(const THostList&) = delete;
  ~THostList() { FLibrary.VCLStringListFree(FHandle); }

  ZefStringList Handle() const { return FHandle; }
  int Add(const std::string& line) const {
    return FLibrary.VCLStringListAdd(FHandle, line.c_str());
  }
  int Count() const { return FLibrary.VCLStringListCount(FHandle); }
  std::string CommaText() const {
    const THostString text(FLibrary);
    FLibrary.VCLStringListGetCommaText(FHandle, text.Handle());
    return text.Text();
  }
  void SetCommaText(const std::string& text) const {
    FLibrary.VCLStringListSetCommaText(FHandle, THostString(FLibrary, text.c_str()).Handle());
  }

 private:
  const TLibrary& FLibrary;
  ZefStringList FHandle = nullptr;
};

/// A download window as a host drives it.
class THostDownload {
 public:
  explicit THostDownload(const TLibrary& library, ZefDialog owner = nullptr) : FLibrary(library) {
    FLibrary.VCLNewURL(owner, nullptr, &FHandle);
  }
  THostDownload(const THostDownload&) = delete;
  THostDownload& operator=(const THostDownload&) = delete;
  ~THostDownload() { Do(ZEF_DOWNLOAD_DESTROY); }

  ZefDialog Handle() const { return FHandle; }
  int Do(int command, const char* text = nullptr, int* value = nullptr) const {
    return FLibrary.VCLCmdURL(FHandle, static_cast<signed char>(command), text, value);
  }
  /// In the background, or else the call returns at the end; without a file, into memory.
  int Start(const std::string& address, const char* file, int command = ZEF_DOWNLOAD_START) const {
    Do(ZEF_DOWNLOAD_SET_ADDRESS, address.c_str());
    Do(ZEF_DOWNLOAD_SET_FILE, file);
    return Do(command);
  }
  int Status() const {
    int status = 99;
    Do(ZEF_DOWNLOAD_GET_STATUS, nullptr, &status);
    return status;
  }

 private:
  const TLibrary& FLibrary;
  ZefDialog FHandle = nullptr;
};

/// What stands for no text.
constexpr char None[] = "(none)";

/// What a box that takes a text gives.
inline std::string TextFrom(void(WINAPI* box)(const char*, const char**), const char* text) {
  const char* result = nullptr;
  box(text, &result);
  return result ? result : None;
}

/// What the type filter gives, and the selection afterwards.
inline std::string FilterFrom(const TLibrary& library, const std::vector<std::string>& types,
                              const std::vector<std::string>& cards, const char* selected) {
  const THostList typeList(library, types), cardList(library, cards);
  const THostString selection(library, selected);
  const int chosen =
      library.VCLSelectTypOp(typeList.Handle(), cardList.Handle(), selection.Handle());
  return Say(chosen, selection.Text());
}
