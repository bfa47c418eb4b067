#include "filter/dlg_select_typ_op.h"
#include "frame/exported.h"
#include "frame/singletons.h"
#include "frame/string_handles.h"
#include "zefext.h"

namespace {

std::vector<std::string> Lines(const TStringList& list) {
  std::vector<std::string> lines;
  lines.reserve(static_cast<std::size_t>(list.Count()));
  for (int i = 0; i < list.Count(); ++i) lines.emplace_back(list.At(i));
  return lines;
}

}  // namespace

unsigned char ZEFEXT_API VCLSelectTypOp(ZefStringList types, ZefStringList cards,
                                        ZefString selection) {
  return Exported<unsigned char>(0, [&] {
    const TStringList* typeList = FindStringList(types);
    const TStringList* cardList = FindStringList(cards);
    const TSharedText* previous = FindString(selection);
    if (!typeList || !cardList || !previous) return false;
    auto& dialog = SingletonForm<TDlgSelectTypOp>(TFormSlot::TypeFilter);
    if (dialog.Modal()) return false;
    dialog.Offer(TTypeFilter(Lines(*typeList), Lines(*cardList)), previous->View());
    if (dialog.ShowModal() != mrOk) return false;
    // Looked up again: the host may have freed it while the dialog was on screen.
    if (TSharedText* chosen = FindString(selection)) chosen->Set(dialog.ChosenValue());
    return true;
  });
}
