#include "directories/rules/directory_files.h"

#include <algorithm>

#include "text/collation.h"

std::string_view WithoutEndSlashes(std::string_view path) {
  const std::string signs = MaskDoubleBytes(path);
  while (!path.empty() && signs[path.size() - 1] == '\\') path.remove_suffix(1);
  return path;
}

bool SameDirectory(std::string_view a, std::string_view b) {
  return SameText(WithoutEndSlashes(a), WithoutEndSlashes(b));
}

TEntering EnterDirectory(TDirectoryFiles& files, const std::string& path) {
  if (SameText(path, files.Current())) return TEntering::AlreadyThere;
  return files.Enter(path) ? TEntering::Entered : TEntering::Failed;
}

TOpening CanOpen(const TDirectoryFiles& files, const TDirectoryList& list, int index) {
  if (index < 0) return TOpening::NothingSelected;
  return files.DirectoryExists(list.Entry(index).Path) ? TOpening::Allowed
                                                       : TOpening::DirectoryMissing;
}

bool IsOrLiesInside(std::string_view path, std::string_view directory) {
  directory = WithoutEndSlashes(directory);
  if (!SameText(path.substr(0, directory.size()), directory)) return false;
  return path.size() == directory.size() || path[directory.size()] == '\\';
}

/// Whether "." or ".." is one of the names in a path.
static bool HasStepBack(std::string_view path) {
  std::string names = MaskDoubleBytes(path) + "\\";
  std::ranges::replace(names, '/', '\\');
  return names.find("\\.\\") != std::string::npos || names.find("\\..\\") != std::string::npos;
}

std::optional<std::string> FollowedPath(std::string_view path, std::string_view from,
                                        std::string_view to) {
  if (SameDirectory(path, from)) return std::string(to);
  from = WithoutEndSlashes(from);
  if (!IsOrLiesInside(path, from)) return std::nullopt;
  const auto below = path.substr(from.size());
  // One that climbs out again lies wherever it ends.
  if (HasStepBack(below)) return std::nullopt;
  return std::string(WithoutEndSlashes(to)).append(below);
}
