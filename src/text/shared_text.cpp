#include "text/shared_text.h"

#include <utility>

bool TSharedText::Alone() const { return FText && FText.use_count() == 1; }

std::string_view TSharedText::View() const { return FText ? std::string_view(*FText) : ""; }

const char* TSharedText::CStr() const { return FText ? FText->c_str() : ""; }

void TSharedText::Set(std::string_view text) {
  if (text.empty()) {
    FText.reset();
  } else if (Alone()) {
    FText->assign(text);
  } else {
    FText = std::make_shared<std::string>(text);
  }
}

void TSharedText::Take(std::string&& text) {
  if (text.empty()) {
    FText.reset();
  } else {
    FText = std::make_shared<std::string>(std::move(text));
  }
}

void TSharedText::Append(std::string_view text) {
  if (text.empty()) return;
  if (Alone()) {
    FText->append(text);
    return;
  }
  std::string joined;
  joined.reserve(View().size() + text.size());
  joined.append(View()).append(text);
  Take(std::move(joined));
}
