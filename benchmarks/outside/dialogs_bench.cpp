// Each dialog from the call until it is painted, against a bare native dialog made of the same
// controls.

#include <fstream>

#include "bench.h"
#include "painted.h"
#include "zefext_load.h"

namespace {

void Measure(const std::string& subject, const wchar_t* className,
             const std::function<void()>& open) {
  PrintAgainstBare(subject, 40, className, open);
}

const TBenchGroup group("dialogs", [] {
  std::ofstream(ProgramFolder() + "VBSZEF.XML", std::ios::binary)
      << "<objects><object name=\"Compte\"><data name=\"Nom\"/></object>"
         "<list name=\"Liste\"><listconst name=\"zefUn\"/></list></objects>";
  ZefExt zef;
  if (const char* missing = ZefExtLoad(&zef, (ProgramFolder() + "zefext.dll").c_str())) {
    Fail(std::string("no ") + missing);
  }
  const char* result = nullptr;
  Measure("BaseShown", L"TDlgBase", [&] { zef.VCLInvokeModalDialog(nullptr); });
  Measure("ConstantsShown", L"TDlgSyntaxConst",
          [&] { zef.VCLSyntaxConstHelpBox("zefUn", &result); });
  Measure("TypesShown", L"TDlgSyntaxTypes", [&] { zef.VCLSyntaxTypesBox("c=Compte", &result); });
  Measure("DirectoriesShown", L"TDlgDirSelect", [&] { zef.VCLSelectDirList("", 1, nullptr); });
  ZefStringList names = nullptr;
  ZefString chosen = nullptr;
  zef.VCLStringListCreate(&names, 0, 0, 0);
  zef.VCLAnsiStringCreate(&chosen);
  zef.VCLStringListAdd(names, "Virement");
  Measure("FilterShown", L"TDlgSelectTypOp", [&] { zef.VCLSelectTypOp(names, names, chosen); });
  Measure("OfferShown", L"TDlgAskDwld", [&] { zef.VCLAskForDownload("1", "2", ""); });
  ZefExtUnload(&zef);
});

}  // namespace
