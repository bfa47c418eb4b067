#pragma once

#include "dialogs/base/dlg_base.h"
#include "syntax/xml_document.h"
class TDlgSyntaxConst : public TDlgBase {
 public:
  explicit TDlgSyntaxConst(TXMLDocument&) {}
  void SetLine(std::string_view) {}
  void ShowForList(std::string_view) {}
  std::string GetResult() const { return {}; }
};
