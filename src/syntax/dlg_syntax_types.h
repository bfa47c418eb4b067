#pragma once

#include "dialogs/base/dlg_base.h"
#include "syntax/xml_document.h"
class TDlgSyntaxTypes : public TDlgBase {
 public:
  explicit TDlgSyntaxTypes(TXMLDocument&) {}
  void ClearTypesChanged() {}
  void ReplaceVariables(std::string_view) {}
};
