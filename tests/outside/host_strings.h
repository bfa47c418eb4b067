#pragma once

#include <string>
#include <vector>

#include "outside/library.h"

/// A text that the host holds by handle, freed with this object. Texts are in the ANSI code page.
class THostString {
 public:
  explicit THostString(const TLibrary& library, const char* text = nullptr) : FLibrary(library) {
    FLibrary.VCLAnsiStringCreate(&FHandle);
    if (text) Set(text);
  }
  THostString(const THostString&) = delete;
  THostString& operator=(const THostString&) = delete;
  ~THostString() { FLibrary.VCLAnsiStringFree(FHandle); }

  ZefString Handle() const { return FHandle; }
  void Set(const char* text) { FLibrary.VCLAnsiStringSet(FHandle, text); }
  const char* Characters() const {
    const char* text = nullptr;
    FLibrary.VCLAnsiStringGet(FHandle, &text);
    return text;
  }
  std::string Text() const {
    const char* text = Characters();
    return text ? text : "(null)";
  }

 private:
  const TLibrary& FLibrary;
  ZefString FHandle = nullptr;
};

enum class TSorting { InOrderOfArrival, Sorted };
enum class TLetterCase { Ignored, Told };

/// The same for a list.
class THostList {
 public:
  explicit THostList(const TLibrary& library, TSorting sorting = TSorting::InOrderOfArrival,
                     TLetterCase letterCase = TLetterCase::Ignored, bool duplicates = false)
      : FLibrary(library) {
    FLibrary.VCLStringListCreate(&FHandle, duplicates, letterCase == TLetterCase::Told,
                                 sorting == TSorting::Sorted);
  }
  THostList(const TLibrary& library, const std::vector<std::string>& lines) : THostList(library) {
    for (const auto& line : lines) Add(line);
  }
  THostList(const THostList&) = delete;
  THostList& operator=(const THostList&) = delete;
  ~THostList() { FLibrary.VCLStringListFree(FHandle); }

  ZefStringList Handle() const { return FHandle; }
  int Add(const std::string& line) { return FLibrary.VCLStringListAdd(FHandle, line.c_str()); }
  int Count() const { return FLibrary.VCLStringListCount(FHandle); }
  std::string CommaText() const {
    const THostString text(FLibrary);
    FLibrary.VCLStringListGetCommaText(FHandle, text.Handle());
    return text.Text();
  }
  void SetCommaText(const std::string& text) {
    const THostString in(FLibrary, text.c_str());
    FLibrary.VCLStringListSetCommaText(FHandle, in.Handle());
  }

 private:
  const TLibrary& FLibrary;
  ZefStringList FHandle = nullptr;
};
