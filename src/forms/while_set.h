#pragma once

/// Sets a flag for as long as this lives, however that ends; then it is as it was before.
template <class TFlag>
class TWhileSet {
 public:
  explicit TWhileSet(TFlag& flag) : FFlag(flag), FBefore(flag) { FFlag = true; }
  TWhileSet(const TWhileSet&) = delete;
  TWhileSet& operator=(const TWhileSet&) = delete;
  ~TWhileSet() { FFlag = FBefore; }

 private:
  TFlag& FFlag;
  bool FBefore;
};
