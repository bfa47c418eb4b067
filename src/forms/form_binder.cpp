#include "forms/form_binder.h"

#include "forms/form.h"
#include "forms/rules/layout_words.h"

namespace {

template <class TMap>
typename TMap::mapped_type HandlerOf(const TMap& handlers, const std::string& name) {
  const auto found = handlers.find(name);
  if (found == handlers.end()) throw std::logic_error("unknown handler " + name);
  return found->second;
}

}  // namespace

TControl* TFormBinder::Find(std::string_view name) const { return FForm.FindControl(name); }

void TFormBinder::BindEvents(const TLayoutItem& item, const TFindEvent& findEvent) const {
  for (const auto& property : item.Properties) {
    if (!FindLayoutWord(property.Name)->Event) continue;
    const std::string& handler = property.Values[0];
    if (property.Name == "close-query") {
      FForm.OnCloseQuery = HandlerOf(FCloseQueryHandlers, handler);
    } else if (property.Name == "help-event") {
      FForm.OnHelp = HandlerOf(FHelpHandlers, handler);
    } else if (TNotifyEvent* event = findEvent(property.Name)) {
      *event = HandlerOf(FHandlers, handler);
    } else {
      throw std::logic_error("no event behind " + property.Name);
    }
  }
}
