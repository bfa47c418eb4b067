#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

using TNotifyEvent = std::function<void()>;

/// A named object that owns others: they are destroyed with it, last made first.
class TComponent {
 public:
  explicit TComponent(std::string name = {}) : FName(std::move(name)) {}
  TComponent(const TComponent&) = delete;
  TComponent& operator=(const TComponent&) = delete;
  virtual ~TComponent() {
    while (!FComponents.empty()) FComponents.pop_back();
  }

  const std::string& Name() const { return FName; }

  /// Owned components in the order they were made.
  const std::vector<std::unique_ptr<TComponent>>& Components() const { return FComponents; }

  template <class T>
  T& Adopt(std::unique_ptr<T> component) {
    T& adopted = *component;
    FComponents.push_back(std::move(component));
    return adopted;
  }

 private:
  std::string FName;
  std::vector<std::unique_ptr<TComponent>> FComponents;
};
