#pragma once

#include <vector>

#include "forms/rules/layout.h"

/// The label laid out for a control, before it on its row or right above it, or null. A text that
/// has another control between is that one's. Both are among the form's items.
const TLayoutItem* LabelOf(const TLayoutItem& control,
                           const std::vector<const TLayoutItem*>& items);
