#include "update/dlg_ask_dwld.h"

void TDlgAskDwld::Bind(TFormBinder& binder) {
  TDlgBase::Bind(binder);
  binder.Control("STVerCur", STVerCur);
  binder.Control("STVerWeb", STVerWeb);
  binder.Control("Web", Web);
  binder.Handler("ButtonOKClick", [this] { ButtonOKClick(); });
  binder.Handler("ButtonIgnoreClick", [this] { ButtonIgnoreClick(); });
  binder.Handler("ButtonCancelClick", [this] { ButtonCancelClick(); });
}

void TDlgAskDwld::SetOffer(std::string_view current, std::string_view offered,
                           std::string_view information) {
  STVerCur->SetText(current);
  STVerWeb->SetText(offered);
  Web->Navigate(information);
}

void TDlgAskDwld::ButtonOKClick() {
  FResult = true;
  FIgnore = false;
}

void TDlgAskDwld::ButtonIgnoreClick() {
  FResult = false;
  FIgnore = true;
}

void TDlgAskDwld::ButtonCancelClick() {
  FResult = false;
  FIgnore = false;
}
