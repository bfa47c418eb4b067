#pragma once

#include "platform/unwind_notice.h"

/// Sets a flag for as long as this lives, however that ends; then it is as it was before.
template <class TFlag>
class TWhileSet {
 public:
  explicit TWhileSet(TFlag& flag) : FFlag(flag), FBefore(flag) { FFlag = true; }
  TWhileSet(const TWhileSet&) = delete;
  TWhileSet& operator=(const TWhileSet&) = delete;
  ~TWhileSet() { PutBack(); }

 private:
  void PutBack() { FFlag = FBefore; }

  TFlag& FFlag;
  bool FBefore;
  TUnwindNotice FNotice{[](void* self) { static_cast<TWhileSet*>(self)->PutBack(); }, this};
};
