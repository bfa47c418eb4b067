#pragma once

/// Tells that the stack is being unwound past this object by a structured exception, one of the
/// host's for example: such an unwinding runs no destructors. For objects on the stack only, as the
/// last member or local of what is to be put back: what was made later has been told already.
class TUnwindNotice {
 public:
  /// The function is called with the object while the stack below it is still there.
  using TUnwound = void (*)(void* object);
  TUnwindNotice(TUnwound unwound, void* object);
  TUnwindNotice(const TUnwindNotice&) = delete;
  TUnwindNotice& operator=(const TUnwindNotice&) = delete;
  ~TUnwindNotice();

 private:
  struct THandler;

  // As the system wants the first two: its list of handlers runs through the stack.
  TUnwindNotice* FNext;
  void* FHandler;
  TUnwound FUnwound;
  void* FObject;
};
