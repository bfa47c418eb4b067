#pragma once

#include <string_view>

#include "dialogs/base/dlg_base.h"
#include "forms/web_view.h"

/// Offers a new version, with a web page about it.
class TDlgAskDwld : public TDlgBase {
 public:
  using TDlgBase::TDlgBase;

  const char* ClassName() const override { return "TDlgAskDwld"; }

  /// Versions as shown, address of the page.
  void SetOffer(std::string_view current, std::string_view offered, std::string_view information);
  /// The user never wants to hear of this version again.
  bool Ignore() const { return FIgnore; }

 protected:
  void Bind(TFormBinder& binder) override;

 private:
  void ButtonOKClick();
  void ButtonIgnoreClick();
  void ButtonCancelClick();

  TStaticText* STVerCur = nullptr;
  TStaticText* STVerWeb = nullptr;
  TWebView* Web = nullptr;
  bool FIgnore = false;
};
