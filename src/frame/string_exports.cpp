#include <memory>

#include "frame/exported.h"
#include "frame/string_handles.h"
#include "platform/kept.h"
#include "text/handle_table.h"

namespace {

THandleTable<TSharedText>& Strings() { return Kept<THandleTable<TSharedText>>(); }

THandleTable<TStringList>& Lists() { return Kept<THandleTable<TStringList>>(); }

template <class THandle>
std::uint32_t NumberOf(THandle handle) {
  return static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(handle));
}

template <class THandle>
THandle HandleOf(std::uint32_t number) {
  return reinterpret_cast<THandle>(static_cast<std::uintptr_t>(number));
}

}  // namespace

TSharedText* FindString(ZefString handle) {
  return Known(Strings().Find(NumberOf(handle)), handle);
}

TStringList* FindStringList(ZefStringList handle) {
  return Known(Lists().Find(NumberOf(handle)), handle);
}

void ZEFEXT_API VCLAnsiStringCreate(ZefString* handle) {
  if (!handle) return;
  *handle = nullptr;
  Exported([&] { *handle = HandleOf<ZefString>(Strings().Create()); });
}

void ZEFEXT_API VCLAnsiStringCopy(ZefString destination, ZefString source) {
  Exported([&] {
    TSharedText* to = FindString(destination);
    const TSharedText* from = FindString(source);
    if (to && from) *to = *from;
  });
}

void ZEFEXT_API VCLAnsiStringFree(ZefString handle) {
  Exported([&] {
    if (FindString(handle)) Strings().Free(NumberOf(handle));
  });
}

void ZEFEXT_API VCLAnsiStringSet(ZefString handle, const char* text) {
  Exported([&] {
    if (TSharedText* string = FindString(handle)) string->Set(OrEmpty(text));
  });
}

void ZEFEXT_API VCLAnsiStringGet(ZefString handle, const char** text) {
  if (!text) return;
  *text = nullptr;
  Exported([&] {
    if (const TSharedText* string = FindString(handle)) *text = string->CStr();
  });
}

void ZEFEXT_API VCLAnsiStringConcat(ZefString destination, ZefString source) {
  Exported([&] {
    TSharedText* to = FindString(destination);
    const TSharedText* from = FindString(source);
    if (to && from) to->Append(from->View());
  });
}

void ZEFEXT_API VCLStringListCreate(ZefStringList* list, unsigned char /*allowDuplicates*/,
                                    unsigned char caseSensitive, unsigned char sorted) {
  if (!list) return;
  *list = nullptr;
  Exported([&] {
    const TStringList::TOptions options{.Sorted = sorted != 0, .CaseSensitive = caseSensitive != 0};
    *list = HandleOf<ZefStringList>(Lists().Create(options));
  });
}

void ZEFEXT_API VCLStringListFree(ZefStringList list) {
  Exported([&] {
    if (FindStringList(list)) Lists().Free(NumberOf(list));
  });
}

int ZEFEXT_API VCLStringListAdd(ZefStringList list, const char* text) {
  return Exported(-1, [&] {
    TStringList* lines = FindStringList(list);
    return lines ? lines->Add(OrEmpty(text)) : -1;
  });
}

void ZEFEXT_API VCLStringListClear(ZefStringList list) {
  Exported([&] {
    if (TStringList* lines = FindStringList(list)) lines->Clear();
  });
}

int ZEFEXT_API VCLStringListCount(ZefStringList list) {
  return Exported(-1, [&] {
    const TStringList* lines = FindStringList(list);
    return lines ? lines->Count() : -1;
  });
}

void ZEFEXT_API VCLStringListGet(ZefStringList list, int index, ZefString line) {
  const bool within = Exported(true, [&] {
    const TStringList* lines = FindStringList(list);
    TSharedText* out = FindString(line);
    if (!lines || !out || index <= 0) return true;
    if (index >= lines->Count()) return false;
    out->Set(lines->At(index));
    return true;
  });
  // Here nothing is left to destroy: the host's handler need not come back.
  if (!within) RaiseException(EXCEPTION_ARRAY_BOUNDS_EXCEEDED, 0, 0, nullptr);
}

void ZEFEXT_API VCLStringListGetParam(ZefStringList list, ZefString name, ZefString value) {
  Exported([&] {
    const TStringList* lines = FindStringList(list);
    const TSharedText* key = FindString(name);
    TSharedText* out = FindString(value);
    if (lines && key && out) out->Set(lines->Value(key->View()));
  });
}

void ZEFEXT_API VCLStringListSetParam(ZefStringList list, ZefString name, ZefString value) {
  Exported([&] {
    TStringList* lines = FindStringList(list);
    const TSharedText* key = FindString(name);
    const TSharedText* text = FindString(value);
    if (lines && key && text) lines->SetValue(key->View(), text->View());
  });
}

void ZEFEXT_API VCLStringListGetCommaText(ZefStringList list, ZefString text) {
  Exported([&] {
    const TStringList* lines = FindStringList(list);
    TSharedText* out = FindString(text);
    if (lines && out) out->Take(lines->CommaText());
  });
}

void ZEFEXT_API VCLStringListSetCommaText(ZefStringList list, ZefString text) {
  Exported([&] {
    TStringList* lines = FindStringList(list);
    const TSharedText* in = FindString(text);
    if (lines && in) lines->SetCommaText(in->View());
  });
}
