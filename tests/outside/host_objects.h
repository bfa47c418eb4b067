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
