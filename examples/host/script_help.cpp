#include "script_help.h"

#include <windows.h>

#include <msxml2.h>
#include <oleauto.h>

#include <memory>

namespace {

constexpr GUID DocumentClass = {
    0x88D96A05, 0xF192, 0x11D4, {0xA6, 0x5F, 0x00, 0x40, 0x96, 0x32, 0x51, 0xE5}};
constexpr GUID DocumentInterface = {
    0x2933BF81, 0x7B36, 0x11D2, {0xB2, 0x0E, 0x00, 0xC0, 0x4F, 0x98, 0x3E, 0x60}};

struct TReleaser {
  void operator()(IUnknown* object) const { object->Release(); }
};
template <class TInterface>
using TRef = std::unique_ptr<TInterface, TReleaser>;

struct TTextFreer {
  void operator()(wchar_t* text) const { SysFreeString(text); }
};
using TText = std::unique_ptr<wchar_t, TTextFreer>;

TText Text(const wchar_t* text) { return TText(SysAllocString(text)); }

struct TComSession {
  TComSession() : Usable(SUCCEEDED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED))) {}
  ~TComSession() {
    if (Usable) CoUninitialize();
  }
  TComSession(const TComSession&) = delete;
  TComSession& operator=(const TComSession&) = delete;
  const bool Usable;
};

TRef<IXMLDOMDocument> Load(const std::wstring& file) {
  void* made = nullptr;
  if (FAILED(CoCreateInstance(DocumentClass, nullptr, CLSCTX_INPROC_SERVER, DocumentInterface,
                              &made))) {
    return nullptr;
  }
  TRef<IXMLDOMDocument> document(static_cast<IXMLDOMDocument*>(made));
  document->put_async(VARIANT_FALSE);
  const TText path = Text(file.c_str());
  VARIANT source = {};
  source.vt = VT_BSTR;
  source.bstrVal = path.get();
  VARIANT_BOOL loaded = VARIANT_FALSE;
  document->load(source, &loaded);
  if (!loaded) document.reset();
  return document;
}

template <class TAction>
void ForEach(IXMLDOMNode& parent, const wchar_t* path, TAction action) {
  IXMLDOMNodeList* found = nullptr;
  if (parent.selectNodes(Text(path).get(), &found) != S_OK) return;
  const TRef<IXMLDOMNodeList> nodes(found);
  IXMLDOMNode* node = nullptr;
  while (nodes->nextNode(&node) == S_OK) action(*TRef<IXMLDOMNode>(node));
}

std::wstring TextOf(IXMLDOMNode& parent, const wchar_t* path) {
  std::wstring result;
  ForEach(parent, path, [&](IXMLDOMNode& node) {
    BSTR text = nullptr;
    if (node.get_text(&text) == S_OK) result = TText(text).get();
  });
  return result;
}

/// MsgBox(message, [boutons], [titre])
std::wstring CallOf(IXMLDOMNode& member, const std::wstring& name) {
  std::wstring parameters;
  ForEach(member, L"param | oparam", [&](IXMLDOMNode& parameter) {
    BSTR kind = nullptr;
    parameter.get_nodeName(&kind);
    const bool optional = *TText(kind) == L'o';
    const std::wstring text = TextOf(parameter, L"@name");
    parameters += (parameters.empty() ? L"" : L", ") + (optional ? L"[" + text + L"]" : text);
  });
  return parameters.empty() ? name : name + L"(" + parameters + L")";
}

/// As scripts do, names leave aside letter case.
std::wstring Key(std::wstring name) {
  CharLowerW(name.data());
  return name;
}

}  // namespace

TScriptHelp::TScriptHelp(const std::wstring& file) {
  const TComSession session;
  if (!session.Usable) return;
  const TRef<IXMLDOMDocument> document = Load(file);
  if (!document) return;
  const auto add = [this](const std::wstring& prefix) {
    return [this, prefix](IXMLDOMNode& member) {
      const std::wstring name = TextOf(member, L"@name");
      const std::wstring help = CallOf(member, name) + L"\n" + TextOf(member, L"comment");
      if (!name.empty()) FTexts.emplace(Key(prefix + name), help);
    };
  };
  ForEach(*document, L"/objects/method", add(L""));
  ForEach(*document, L"/objects/object/*[@name]", add(L"."));
}

std::wstring TScriptHelp::Find(const std::wstring& name) const {
  const auto found = FTexts.find(Key(name));
  return found == FTexts.end() ? std::wstring() : found->second;
}
