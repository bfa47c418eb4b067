#include "directories/rules/directory_files.h"

#include "text/collation.h"

namespace {

/// Any place that is surely not inside an accounts directory.
constexpr char kRefuge[] = "c:\\";

std::string_view WithoutEndSlashes(std::string_view path) {
  const std::string signs = MaskDoubleBytes(path);
  while (!path.empty() && signs[path.size() - 1] == '\\') path.remove_suffix(1);
  return path;
}

}  // namespace

TEntering EnterDirectory(TDirectoryFiles& files, const std::string& path) {
  if (SameText(path, files.Current())) return TEntering::AlreadyThere;
  return files.Enter(path) ? TEntering::Entered : TEntering::Failed;
}

TOpening CanOpen(const TDirectoryFiles& files, const TDirectoryList& list, int index) {
  if (index < 0) return TOpening::NothingSelected;
  return files.DirectoryExists(list.Entry(index).Path) ? TOpening::Allowed
                                                       : TOpening::DirectoryMissing;
}

std::string MovedPath(std::string_view directory, std::string_view folder) {
  directory = WithoutEndSlashes(directory);
  const auto slash = MaskDoubleBytes(directory).rfind('\\');
  const auto name = slash == std::string_view::npos ? directory : directory.substr(slash + 1);
  return std::string(WithoutEndSlashes(folder)) + "\\" + std::string(name);
}

bool IsOrLiesInside(std::string_view path, std::string_view directory) {
  directory = WithoutEndSlashes(directory);
  if (!SameText(path.substr(0, directory.size()), directory)) return false;
  return path.size() == directory.size() || path[directory.size()] == '\\';
}

std::optional<std::string> MoveDirectoryInto(TDirectoryFiles& files, const std::string& directory,
                                             const std::string& folder) {
  const std::string current = files.Current();
  const std::string target = MovedPath(directory, folder);
  if (IsOrLiesInside(target, directory) || files.DirectoryExists(target)) return std::nullopt;
  const bool leaving = directory == current;
  // The system does not let go of the directory that a process stands in.
  if (leaving) files.Enter(kRefuge);
  const bool moved = files.Move(directory, target);
  if (leaving) files.Enter(moved ? target : current);
  if (!moved) return std::nullopt;
  return target;
}
