#include "platform/kept.h"

namespace {
TKept* last = nullptr;
}

void AddKept(TKept& kept) {
  kept.Next = last;
  last = &kept;
}

void ReleaseKept() {
  while (last) std::exchange(last, last->Next)->Release();
}
