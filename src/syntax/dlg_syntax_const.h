#pragma once

#include "dialogs/base/dlg_base.h"
#include "syntax/xml_document.h"
