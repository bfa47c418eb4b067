#include "platform/owned.h"

#include <windows.h>

void TCloseHandle::operator()(void* handle) const { CloseHandle(handle); }
