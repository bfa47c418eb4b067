#include "platform/floating_point.h"

#include <windows.h>

namespace {

constexpr unsigned short kAllMasked = 0x3F;
constexpr unsigned kAllVectorMasked = 0x1F80;

bool HasVectors() { return IsProcessorFeaturePresent(PF_XMMI_INSTRUCTIONS_AVAILABLE) != FALSE; }

void SetControl(unsigned short control) {
  // An exception still pending would strike at the next instruction, once it is unmasked.
  asm volatile("fnclex\n\tfldcw %0" : : "m"(control));
}

void SetVectorControl(unsigned control) { asm volatile("ldmxcsr %0" : : "m"(control)); }

}  // namespace

TFloatingPointMasks::TFloatingPointMasks() {
  asm volatile("fnstcw %0" : "=m"(FControl));
  SetControl(static_cast<unsigned short>(FControl | kAllMasked));
  if (!HasVectors()) return;
  asm volatile("stmxcsr %0" : "=m"(FVectorControl));
  SetVectorControl(FVectorControl | kAllVectorMasked);
}

TFloatingPointMasks::~TFloatingPointMasks() {
  SetControl(FControl);
  if (HasVectors()) SetVectorControl(FVectorControl);
}
