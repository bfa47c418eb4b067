#pragma once

#include "text/shared_text.h"
#include "text/string_list.h"
#include "zefext.h"

/// The texts and lists that the host holds by handle. User-interface thread only.

/// The text behind a handle, or null for anything that is not a live string handle.
TSharedText* FindString(ZefString handle);
/// The list behind a handle, or null for anything that is not a live list handle.
TStringList* FindStringList(ZefStringList handle);
