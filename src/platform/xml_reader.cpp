#include "platform/xml_reader.h"

#include <msxml2.h>
#include <objbase.h>
#include <windows.h>

#include <exception>
#include <new>
#include <optional>
#include <utility>
#include <vector>

#include "platform/code_page.h"
#include "platform/com_ptr.h"
#include "platform/com_session.h"
#include "platform/system_library.h"
#include "text/xml_text.h"

namespace {

// The system's headers of this toolchain declare these, but no import library defines them.
constexpr GUID kSaxXmlReader60 = {
    0x88d96a0c, 0xf192, 0x11d4, {0xa6, 0x5f, 0x00, 0x40, 0x96, 0x32, 0x51, 0xe5}};
constexpr GUID kSaxXmlReaderInterface = {
    0xa4f96ed0, 0xf829, 0x476e, {0x81, 0xc0, 0xcd, 0xc7, 0xbd, 0x2a, 0x08, 0x02}};
constexpr GUID kSaxContentHandlerInterface = {
    0x1545cdfa, 0x9e4e, 0x4497, {0xa8, 0xa4, 0x2b, 0xf7, 0xd0, 0x11, 0x2c, 0x44}};
constexpr GUID kSaxLexicalHandlerInterface = {
    0x7f85d5f5, 0x47a8, 0x4497, {0xbd, 0xa5, 0x84, 0xba, 0x04, 0x81, 0x9e, 0xa6}};

/// Passes the component's events to the sink. Lives on the stack of the reading, which outlives
/// the component's references, so counting those is no use.
class THandler final : public ISAXContentHandler, public ISAXLexicalHandler {
 public:
  explicit THandler(TXmlSink& sink) : FSink(sink) {}
  THandler(const THandler&) = delete;
  THandler& operator=(const THandler&) = delete;

  void RethrowFailure() const {
    if (FFailure) std::rethrow_exception(FFailure);
  }

  HRESULT WINAPI QueryInterface(REFIID iid, void** object) override {
    if (IsEqualGUID(iid, kSaxContentHandlerInterface) || IsEqualGUID(iid, IID_IUnknown))
      *object = static_cast<ISAXContentHandler*>(this);
    else if (IsEqualGUID(iid, kSaxLexicalHandlerInterface))
      *object = static_cast<ISAXLexicalHandler*>(this);
    else
      *object = nullptr;
    return *object ? S_OK : E_NOINTERFACE;
  }
  ULONG WINAPI AddRef() override { return 1; }
  ULONG WINAPI Release() override { return 1; }

  HRESULT WINAPI startElement(const wchar_t*, int, const wchar_t*, int, const wchar_t* name,
                              int length, ISAXAttributes* attributes) override {
    return Guarded([&] {
      EndText();
      return PassElement(View(name, length), *attributes);
    });
  }
  HRESULT WINAPI endElement(const wchar_t*, int, const wchar_t*, int, const wchar_t*,
                            int) override {
    return Guarded([&] {
      EndText();
      FSink.EndElement();
      return S_OK;
    });
  }
  HRESULT WINAPI characters(const wchar_t* text, int length) override {
    return Guarded([&] {
      FWide.append(View(text, length));
      return S_OK;
    });
  }
  HRESULT WINAPI ignorableWhitespace(const wchar_t*, int) override { return S_OK; }
  HRESULT WINAPI startCDATA() override {
    return Guarded([&] {
      EndText();
      return S_OK;
    });
  }
  HRESULT WINAPI endCDATA() override {
    return Guarded([&] {
      FSink.CDataSection(TakeText());
      return S_OK;
    });
  }
  HRESULT WINAPI comment(const wchar_t*, int) override { return PassOther(); }
  HRESULT WINAPI processingInstruction(const wchar_t*, int, const wchar_t*, int) override {
    return PassOther();
  }

  // A document type is none that was read over already, and nothing may come of it.
  HRESULT WINAPI startDTD(const wchar_t*, int, const wchar_t*, int, const wchar_t*, int) override {
    return E_ABORT;
  }
  HRESULT WINAPI skippedEntity(const wchar_t*, int) override { return E_ABORT; }
  HRESULT WINAPI endDTD() override { return S_OK; }
  HRESULT WINAPI startEntity(const wchar_t*, int) override { return S_OK; }
  HRESULT WINAPI endEntity(const wchar_t*, int) override { return S_OK; }

  HRESULT WINAPI putDocumentLocator(ISAXLocator* locator) override {
    FLocator = locator;
    return S_OK;
  }
  HRESULT WINAPI startDocument() override { return S_OK; }
  HRESULT WINAPI endDocument() override { return S_OK; }
  HRESULT WINAPI startPrefixMapping(const wchar_t*, int, const wchar_t*, int) override {
    return S_OK;
  }
  HRESULT WINAPI endPrefixMapping(const wchar_t*, int) override { return S_OK; }

 private:
  static std::wstring_view View(const wchar_t* text, int length) {
    return length > 0 ? std::wstring_view(text, static_cast<std::size_t>(length))
                      : std::wstring_view();
  }

  // No C++ exception may cross the component's frames: it is kept until the component is left.
  template <class TBody>
  HRESULT Guarded(TBody body) noexcept {
    try {
      return body();
    } catch (...) {
      FFailure = std::current_exception();
      return E_ABORT;
    }
  }

  void TellLine() {
    int line = 0;
    if (FLocator && SUCCEEDED(FLocator->getLineNumber(&line))) FSink.AtLine(line);
  }

  HRESULT PassOther() {
    return Guarded([&] {
      EndText();
      FSink.OtherNode();
      return S_OK;
    });
  }

  HRESULT PassElement(std::wstring_view name, ISAXAttributes& attributes) {
    int count = 0;
    HRESULT result = attributes.getLength(&count);
    // The views are taken last: the text that they lie in moves while it grows.
    FAnsi.clear();
    FEnds.clear();
    const auto add = [&](std::wstring_view text) {
      AppendAnsi(FAnsi, text);
      FEnds.push_back(FAnsi.size());
    };
    add(name);
    const wchar_t* text = nullptr;
    int length = 0;
    for (int i = 0; i < count && SUCCEEDED(result); ++i) {
      result = attributes.getQName(i, &text, &length);
      if (FAILED(result)) break;
      add(View(text, length));
      result = attributes.getValue(i, &text, &length);
      if (SUCCEEDED(result)) add(View(text, length));
    }
    if (FAILED(result)) return result;
    const auto part = [&](std::size_t i) {
      const std::size_t start = i == 0 ? 0 : FEnds[i - 1];
      return std::string_view(FAnsi).substr(start, FEnds[i] - start);
    };
    FAttributes.clear();
    for (std::size_t i = 1; i + 1 < FEnds.size(); i += 2)
      FAttributes.emplace_back(part(i), part(i + 1));
    TellLine();
    FSink.StartElement(part(0), FAttributes);
    return S_OK;
  }

  /// What the component gave piece by piece, as one text: a character may lie across two pieces.
  std::string_view TakeText() {
    FAnsi.clear();
    AppendAnsi(FAnsi, FWide);
    FWide.clear();
    return FAnsi;
  }

  void EndText() {
    if (!FWide.empty()) FSink.Characters(TakeText());
  }

  TXmlSink& FSink;
  ISAXLocator* FLocator = nullptr;  ///< the component's, there while it reads
  std::exception_ptr FFailure;
  std::wstring FWide;
  std::string FAnsi;
  std::vector<std::size_t> FEnds;
  std::vector<TXmlSink::TAttribute> FAttributes;
};

std::optional<std::string> ReadBytes(const std::string& path) {
  const TKernelHandle file(CreateFileW(ToWide(path).c_str(), GENERIC_READ,
                                       FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                       nullptr, OPEN_EXISTING, FILE_FLAG_SEQUENTIAL_SCAN, nullptr));
  if (!file) return std::nullopt;
  LARGE_INTEGER size;
  if (!GetFileSizeEx(file.Get(), &size) || size.QuadPart > MAXLONG) return std::nullopt;
  std::string bytes(static_cast<std::size_t>(size.QuadPart), '\0');
  DWORD read = 0;
  if (!ReadFile(file.Get(), bytes.data(), static_cast<DWORD>(bytes.size()), &read, nullptr) ||
      read != bytes.size())
    return std::nullopt;
  return bytes;
}

/// Nothing when the bytes are not text of that encoding, or the system does not know it. A mark of
/// the byte order goes before the text.
std::optional<std::u16string> Decode(std::string_view bytes, const TXmlEncoding& encoding) {
  if (encoding.CodePage == TXmlEncoding::Unknown) return std::nullopt;
  bytes.remove_prefix(encoding.MarkSize);
  std::u16string text;
  if (encoding.CodePage == TXmlEncoding::Utf16 ||
      encoding.CodePage == TXmlEncoding::Utf16BigEndian) {
    const std::size_t low = encoding.CodePage == TXmlEncoding::Utf16 ? 0 : 1;
    text.resize(bytes.size() / 2);
    for (std::size_t i = 0; i < text.size(); ++i)
      text[i] = static_cast<char16_t>(static_cast<unsigned char>(bytes[2 * i + low]) |
                                      static_cast<unsigned char>(bytes[2 * i + 1 - low]) << 8);
    return text;
  }
  // No encoding has a character of more UTF-16 units than bytes.
  const int length = static_cast<int>(bytes.size());
  text.resize(bytes.size());
  const int used = MultiByteToWideChar(encoding.CodePage, MB_ERR_INVALID_CHARS, bytes.data(),
                                       length, reinterpret_cast<wchar_t*>(text.data()), length);
  if (used == 0) return std::nullopt;
  text.resize(static_cast<std::size_t>(used));
  return text;
}

/// A stream of the text with its mark, or null.
TComPtr<IStream> StreamOf(const TSystemLibrary& library, std::u16string text) {
  const auto create = library.Function<IStream*(WINAPI*)(const BYTE*, UINT)>("SHCreateMemStream");
  if (!create) return nullptr;
  text.insert(text.begin(), u'\xFEFF');
  return TComPtr<IStream>(create(reinterpret_cast<const BYTE*>(text.data()),
                                 static_cast<UINT>(text.size() * sizeof(char16_t))));
}

void SetUp(ISAXXMLReader& reader, THandler& handler) {
  reader.putContentHandler(&handler);
  VARIANT lexical = {};
  lexical.vt = VT_UNKNOWN;
  lexical.punkVal = static_cast<ISAXLexicalHandler*>(&handler);
  reader.putProperty(L"http://xml.org/sax/properties/lexical-handler", lexical);
  // Not every version knows every one of these, and the text has nothing left for them.
  reader.putFeature(L"prohibit-dtd", VARIANT_TRUE);
  reader.putFeature(L"http://xml.org/sax/features/external-general-entities", VARIANT_FALSE);
  reader.putFeature(L"http://xml.org/sax/features/external-parameter-entities", VARIANT_FALSE);
}

}  // namespace

TXmlReading ReadXmlFile(const std::string& path, TXmlSink& sink) {
  std::optional<std::string> bytes = ReadBytes(path);
  if (!bytes) return TXmlReading::NoFile;
  std::optional<std::u16string> text = Decode(*bytes, XmlEncodingOf(*bytes));
  bytes.reset();
  if (!text) return TXmlReading::Broken;
  switch (PrepareXmlText(*text)) {
    case TXmlText::DefinesEntities:
      return TXmlReading::Refused;
    case TXmlText::Broken:
      return TXmlReading::Broken;
    case TXmlText::Ready:
      break;
  }

  THandler handler(sink);
  const TComSession com(TComSession::TKind::Com);
  const auto reader = com.Make<ISAXXMLReader>(kSaxXmlReader60, kSaxXmlReaderInterface);
  if (!reader) return TXmlReading::NoComponent;
  SetUp(*reader, handler);
  const TSystemLibrary streams(L"shlwapi.dll");
  const TComPtr<IStream> stream = StreamOf(streams, *std::exchange(text, std::nullopt));
  if (!stream) return TXmlReading::NoComponent;

  VARIANT input = {};
  input.vt = VT_UNKNOWN;
  input.punkVal = stream.get();
  const HRESULT result = reader->parse(input);
  handler.RethrowFailure();
  if (result == E_OUTOFMEMORY) throw std::bad_alloc();
  return SUCCEEDED(result) ? TXmlReading::Done : TXmlReading::Broken;
}
