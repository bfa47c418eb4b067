#pragma once

#include <cstdint>
#include <map>

#include "../rules/input.h"

/// By name. Each runs on one input, and does not come back when something does not hold. Targets
/// put themselves here as the program starts.
inline std::map<std::string, void (*)(TInput)> targets;

inline bool Target(const char* name, void (*run)(TInput)) {
  return targets.emplace(name, run).second;
}
