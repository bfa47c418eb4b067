#include "forms/resource.h"

#include <stdexcept>
#include <string>

#include "forms/application.h"

std::string_view LoadTextResource(const char* type, std::string_view name) {
  const std::string key(name);
  const HINSTANCE module = TApplication::Instance();
  const HRSRC found = FindResourceA(module, key.c_str(), type);
  if (!found) throw std::runtime_error("no resource " + key);
  const HGLOBAL loaded = LoadResource(module, found);
  return {static_cast<const char*>(LockResource(loaded)), SizeofResource(module, found)};
}
