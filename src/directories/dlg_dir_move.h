#pragma once

#include <memory>
#include <optional>
#include <string>

#include "dialogs/base/dlg_base.h"
#include "directories/system_stores.h"
#include "platform/thread.h"

/// How a move that the user watched ended.
struct TMoveOutcome {
  std::optional<std::string> MovedTo;  ///< nothing: everything is where it was
  bool Cancelled = false;              ///< by the user, or because the library is being freed
};

/// Moves an accounts directory into a folder on a thread of its own. When that takes a while, a
/// small dialog shows how far it is and lets the user cancel.
TMoveOutcome MoveWatched(const std::string& directory, const std::string& folder);
