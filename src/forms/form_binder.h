#pragma once

#include <windows.h>

#include <functional>
#include <map>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

#include "forms/control.h"

class TForm;

/// Ties a loaded layout to a form's class: its controls to fields, its event names to handlers.
class TFormBinder {
 public:
  using TCloseQueryEvent = std::function<bool()>;
  /// Command and data of a help request; sets callHelp to have the help system asked. The result
  /// says that the request was dealt with.
  using THelpEvent = std::function<bool(UINT command, int data, bool& callHelp)>;
  /// The event behind a property of the layout, or null.
  using TFindEvent = std::function<TNotifyEvent*(std::string_view property)>;

  explicit TFormBinder(TForm& form) : FForm(form) {}

  /// Throws std::logic_error when the layout has no such control or one of another kind.
  template <class T>
  void Control(const char* name, T*& field) {
    field = dynamic_cast<T*>(Find(name));
    if (!field) throw std::logic_error(std::string("no such control: ") + name);
  }
  void Handler(const std::string& name, TNotifyEvent handler) {
    FHandlers[name] = std::move(handler);
  }
  void CloseQueryHandler(const std::string& name, TCloseQueryEvent handler) {
    FCloseQueryHandlers[name] = std::move(handler);
  }
  void HelpHandler(const std::string& name, THelpEvent handler) {
    FHelpHandlers[name] = std::move(handler);
  }

  /// Puts the handlers that an item of the layout names behind its events. Throws std::logic_error
  /// when a handler is unknown or no event stands behind a property.
  void BindEvents(const TLayoutItem& item, const TFindEvent& findEvent) const;

 private:
  TControl* Find(std::string_view name) const;

  TForm& FForm;
  std::map<std::string, TNotifyEvent> FHandlers;
  std::map<std::string, TCloseQueryEvent> FCloseQueryHandlers;
  std::map<std::string, THelpEvent> FHelpHandlers;
};
