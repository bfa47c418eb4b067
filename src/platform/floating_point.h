#pragma once

/// Floating-point exceptions are masked for as long as this lives: hosts of some compilers unmask
/// them, and the web control and the shell's extensions divide by zero as a matter of course. The
/// host's own state is put back as it was. Per thread.
class TFloatingPointMasks {
 public:
  TFloatingPointMasks();
  TFloatingPointMasks(const TFloatingPointMasks&) = delete;
  TFloatingPointMasks& operator=(const TFloatingPointMasks&) = delete;
  ~TFloatingPointMasks();

 private:
  unsigned short FControl = 0;
  unsigned FVectorControl = 0;
};
