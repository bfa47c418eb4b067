// Opening the syntax database, against the system's XML component alone loading the same file.
// Prints lines as Google Benchmark's CSV has them.

#include <windows.h>

#include <msxml2.h>
#include <objbase.h>
#include <oleauto.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "platform/code_page.h"
#include "syntax/xml_document.h"

namespace {

constexpr GUID kDomDocument60 = {
    0x88d96a05, 0xf192, 0x11d4, {0xa6, 0x5f, 0x00, 0x40, 0x96, 0x32, 0x51, 0xe5}};
constexpr GUID kDomDocumentInterface = {
    0x2933bf81, 0x7b36, 0x11d2, {0xb2, 0x0e, 0x00, 0xc0, 0x4f, 0x98, 0x3e, 0x60}};

[[noreturn]] void Fail(const char* what) {
  std::fprintf(stderr, "%s\n", what);
  std::exit(1);
}

std::string Database(int types) {
  std::string xml = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<objects>\n";
  for (int t = 0; t < types; ++t) {
    const std::string number = std::to_string(t);
    xml += "  <object name=\"Type" + number + "\">\n    <comment>Un objet du budget</comment>\n";
    for (int m = 0; m < 8; ++m)
      xml += "    <method name=\"Ajoute" + std::to_string(m) + "\" type=\"Type" + number +
             "\">\n      <comment>Ajoute une op\xC3\xA9ration \xC3\xA0 la date</comment>\n"
             "      <return type=\"Compte\">le compte</return>\n"
             "      <param name=\"Date\" type=\"date\">la date &amp; l'heure</param>\n"
             "      <oparam name=\"Mode\" list=\"Modes\" def=\"0\">le mode</oparam>\n"
             "    </method>\n";
    xml += "  </object>\n";
  }
  return xml + "</objects>\n";
}

void LoadByComponent(const std::string& path) {
  CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
  IXMLDOMDocument* document = nullptr;
  if (FAILED(CoCreateInstance(kDomDocument60, nullptr, CLSCTX_INPROC_SERVER, kDomDocumentInterface,
                              reinterpret_cast<void**>(&document))))
    Fail("the XML component is not there");
  document->put_async(VARIANT_FALSE);
  document->put_validateOnParse(VARIANT_FALSE);
  document->put_resolveExternals(VARIANT_FALSE);
  VARIANT source = {};
  source.vt = VT_BSTR;
  source.bstrVal = SysAllocString(ToWide(path).c_str());
  VARIANT_BOOL loaded = VARIANT_FALSE;
  document->load(source, &loaded);
  SysFreeString(source.bstrVal);
  document->Release();
  CoUninitialize();
  if (!loaded) Fail("the component did not load the file");
}

void OpenOurs(const std::string& path) {
  // A new time stamp, so that the file is read and not remembered.
  static auto time = std::filesystem::last_write_time(path);
  std::filesystem::last_write_time(path, time += std::chrono::seconds(2));
  TXMLDocument document;
  document.SetFileName(path);
  const TOpenDocument open(document);
  if (document.Database()->Empty()) Fail("the file was not read");
}

void OpenAgain(const std::string& path) {
  TXMLDocument document;
  document.SetFileName(path);
  const TOpenDocument open(document);
  if (document.Database()->Empty()) Fail("the file was not read");
}

/// The best of several runs: what else the machine does only adds to the others.
void Measure(const std::string& name, int runs, void (*body)(const std::string&),
             const std::string& path) {
  double best = 1e300;
  for (int i = 0; i < runs; ++i) {
    const auto start = std::chrono::steady_clock::now();
    body(path);
    const std::chrono::duration<double, std::micro> taken =
        std::chrono::steady_clock::now() - start;
    best = std::min(best, taken.count());
  }
  std::printf("\"%s\",%d,%.2f,%.2f,us\n", name.c_str(), runs, best, best);
}

}  // namespace

int main() {
  const std::string path = (std::filesystem::temp_directory_path() / "zefext_bench.xml").string();
  // The smaller is about as large as the example database, the larger has 5 MB.
  for (const int types : {8, 1'600}) {
    std::ofstream(path, std::ios::binary) << Database(types);
    const std::string rest = "/types:" + std::to_string(types);
    Measure("DatabaseFirst/ours" + rest, 1, OpenOurs, path);
    Measure("DatabaseOpen/ours" + rest, 15, OpenOurs, path);
    Measure("DatabaseOpen/xml_component_alone" + rest, 15, LoadByComponent, path);
    Measure("DatabaseOpenUnchanged/ours" + rest, 15, OpenAgain, path);
  }
  std::filesystem::remove(path);
}
