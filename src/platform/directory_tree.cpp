#include "platform/directory_tree.h"

#include <windows.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/code_page.h"
#include "platform/full_path.h"
#include "platform/handle.h"
#include "platform/quiet_disks.h"

namespace {

/// What a file costs beside its bytes, in bytes, where progress is told.
constexpr std::uint64_t kCostOfFile = 20000;
/// How long what the system does not let go of is tried again, in ms.
constexpr DWORD kPatience = 1500;
constexpr DWORD kPause = 25;
/// Of file times, in units of 100 ns: file systems differ in how exactly they keep them.
constexpr std::int64_t kSameTime = std::int64_t{2} * 10'000'000;

constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

TKernelHandle OpenExisting(const std::wstring& path, DWORD access, DWORD share) {
  return TKernelHandle(CreateFileW(path.c_str(), access, share, nullptr, OPEN_EXISTING,
                                   FILE_FLAG_BACKUP_SEMANTICS | FILE_FLAG_OPEN_REPARSE_POINT,
                                   nullptr));
}

/// Absolute, without an end slash, and free of the usual limit on a path's length: at the target
/// the paths of a tree may be longer. Nothing when there is no such path.
std::optional<std::wstring> LongPath(const std::string& path) {
  std::wstring full = FullPath(path);
  if (full.empty()) return std::nullopt;
  while (full.ends_with(L'\\')) full.pop_back();
  if (full.starts_with(L"\\\\?\\")) return full;
  if (full.starts_with(L"\\\\")) return L"\\\\?\\UNC" + full.substr(1);
  return L"\\\\?\\" + full;
}

/// Directories come before what they hold; the first is the tree's own, with an empty path.
struct TNode {
  std::wstring Path;  ///< below the tree's directory, with a backslash before it
  DWORD Attributes;
  std::uint64_t Size;      ///< bytes
  std::int64_t LastWrite;  ///< 100 ns units
  bool Directory() const { return (Attributes & FILE_ATTRIBUTE_DIRECTORY) != 0; }
};

using TTree = std::vector<TNode>;

/// A copy would go where a link leads, and deleting it could as well.
bool IsLink(const WIN32_FIND_DATAW& found) {
  return (found.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0 &&
         IsReparseTagNameSurrogate(found.dwReserved0);
}

std::int64_t Join(DWORD high, DWORD low) {
  return static_cast<std::int64_t>(std::uint64_t{high} << 32 | low);
}

/// Of WIN32_FIND_DATAW or WIN32_FILE_ATTRIBUTE_DATA.
template <class TData>
TNode NodeOf(std::wstring path, const TData& data) {
  return {std::move(path), data.dwFileAttributes,
          static_cast<std::uint64_t>(Join(data.nFileSizeHigh, data.nFileSizeLow)),
          Join(data.ftLastWriteTime.dwHighDateTime, data.ftLastWriteTime.dwLowDateTime)};
}

bool ListDirectory(const std::wstring& root, const std::wstring& directory, TTree& tree) {
  WIN32_FIND_DATAW found{};
  const TSearchHandle search(FindFirstFileW((root + directory + L"\\*").c_str(), &found));
  if (!search) return false;
  bool plain = true;
  do {
    const std::wstring name = found.cFileName;
    if (name == L"." || name == L"..") continue;
    plain = !IsLink(found);
    tree.push_back(NodeOf(directory + L"\\" + name, found));
  } while (plain && FindNextFileW(search.Get(), &found));
  return plain && GetLastError() == ERROR_NO_MORE_FILES;
}

std::optional<TTree> ListTree(const std::wstring& root) {
  WIN32_FIND_DATAW found{};
  const TSearchHandle search(FindFirstFileW(root.c_str(), &found));
  if (!search || IsLink(found)) return std::nullopt;
  TTree tree{NodeOf(L"", found)};
  if (!tree[0].Directory()) return std::nullopt;
  for (std::size_t at = 0; at < tree.size(); ++at) {
    if (!tree[at].Directory()) continue;
    const std::wstring directory = tree[at].Path;
    if (!ListDirectory(root, directory, tree)) return std::nullopt;
  }
  return tree;
}

/// Keeps others from writing to the files of a tree.
class THeldTree {
 public:
  /// False when something in it is in use or may not be deleted.
  bool Hold(const std::wstring& root, const TTree& tree) {
    for (const TNode& node : tree) {
      const std::wstring path = root + node.Path;
      if (!OpenExisting(path, DELETE, kShareAll)) return false;
      const DWORD access = node.Directory() ? FILE_LIST_DIRECTORY : GENERIC_READ;
      const DWORD share = node.Directory() ? kShareAll : FILE_SHARE_READ | FILE_SHARE_DELETE;
      FHandles.push_back(OpenExisting(path, access, share));
      if (!FHandles.back()) return false;
    }
    return true;
  }

 private:
  std::vector<TKernelHandle> FHandles;
};

bool DeleteNode(const std::wstring& path, const TNode& node) {
  if (node.Attributes & FILE_ATTRIBUTE_READONLY) {
    SetFileAttributesW(path.c_str(), node.Attributes & ~DWORD{FILE_ATTRIBUTE_READONLY});
  }
  if (node.Directory() ? RemoveDirectoryW(path.c_str()) : DeleteFileW(path.c_str())) return true;
  SetFileAttributesW(path.c_str(), node.Attributes);
  return false;
}

/// What may be deleted of a tree; the rest keeps the directories that it lies in.
template <class TCondition>
bool DeleteTree(const std::wstring& root, const TTree& tree, TCondition mayGo) {
  DWORD waited = 0;
  std::set<std::wstring_view> kept;
  for (auto node = tree.rbegin(); node != tree.rend(); ++node) {
    bool gone = !kept.contains(node->Path) && mayGo(*node);
    if (gone) {
      // Somebody may be looking at it at this very moment, and what was deleted in it goes only
      // when the last one who looks at that has left.
      while (!(gone = DeleteNode(root + node->Path, *node)) && waited < kPatience) {
        Sleep(kPause);
        waited += kPause;
      }
    }
    if (gone) continue;
    const std::wstring_view path = node->Path;
    if (!path.empty()) kept.insert(path.substr(0, path.rfind(L'\\')));
    if (path.empty()) return false;
  }
  return true;
}

/// The original is deleted later: its copy must not live in memory only.
bool FlushToDisk(const std::wstring& path, DWORD attributes) {
  const bool readOnly = (attributes & FILE_ATTRIBUTE_READONLY) != 0;
  if (readOnly) SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_NORMAL);
  const TKernelHandle file = OpenExisting(path, GENERIC_WRITE, FILE_SHARE_READ);
  const bool flushed = file && FlushFileBuffers(file.Get());
  if (readOnly) SetFileAttributesW(path.c_str(), attributes);
  return flushed;
}

/// Copies one node after the other and tells how far it is.
class TCopying {
 public:
  TCopying(const TTree& tree, TCopyProgress* progress) : FProgress(progress) {
    for (const TNode& node : tree) FTotal += node.Size + kCostOfFile;
  }

  bool Copy(const std::wstring& from, const std::wstring& to, const TNode& node) {
    if (Cancelled()) return false;
    const bool copied = node.Directory()
                            ? CreateDirectoryExW(from.c_str(), to.c_str(), nullptr) != FALSE
                            : CopyFileExW(from.c_str(), to.c_str(), OnProgress, this, nullptr,
                                          COPY_FILE_FAIL_IF_EXISTS) != FALSE &&
                                  FlushToDisk(to, node.Attributes);
    FDone += node.Size + kCostOfFile;
    Tell(0);
    return copied;
  }

 private:
  static DWORD CALLBACK OnProgress(LARGE_INTEGER, LARGE_INTEGER transferred, LARGE_INTEGER,
                                   LARGE_INTEGER, DWORD, DWORD, HANDLE, HANDLE, void* self) {
    auto* copying = static_cast<TCopying*>(self);
    copying->Tell(static_cast<std::uint64_t>(transferred.QuadPart));
    return copying->Cancelled() ? PROGRESS_CANCEL : PROGRESS_CONTINUE;
  }
  bool Cancelled() const { return FProgress && FProgress->Cancelled; }
  void Tell(std::uint64_t ofThisFile) {
    // A file that grew while it was looked at must not show more than the whole.
    const std::uint64_t done = std::min(FDone + ofThisFile, FTotal);
    if (FProgress) FProgress->Percent = static_cast<int>(done * 100 / FTotal);
  }

  TCopyProgress* FProgress;
  std::uint64_t FTotal = 0;
  std::uint64_t FDone = 0;
};

bool IsCopied(const TNode& node, const std::wstring& other) {
  WIN32_FILE_ATTRIBUTE_DATA data{};
  if (!GetFileAttributesExW((other + node.Path).c_str(), GetFileExInfoStandard, &data))
    return false;
  const TNode twin = NodeOf(L"", data);
  if (node.Directory() || twin.Directory()) return node.Directory() && twin.Directory();
  return node.Size == twin.Size && std::abs(node.LastWrite - twin.LastWrite) <= kSameTime;
}

}  // namespace

TTreeRenaming RenameDirectory(const std::string& from, const std::string& to) {
  const TQuietDisks quiet;
  const auto source = LongPath(from);
  const auto target = LongPath(to);
  if (!source || !target || source->ends_with(L':')) return TTreeRenaming::Refused;
  const DWORD attributes = GetFileAttributesW(source->c_str());
  if (attributes == INVALID_FILE_ATTRIBUTES || !(attributes & FILE_ATTRIBUTE_DIRECTORY) ||
      GetFileAttributesW(target->c_str()) != INVALID_FILE_ATTRIBUTES) {
    return TTreeRenaming::Refused;
  }
  if (MoveFileExW(source->c_str(), target->c_str(), MOVEFILE_WRITE_THROUGH)) {
    return TTreeRenaming::Done;
  }
  return GetLastError() == ERROR_NOT_SAME_DEVICE ? TTreeRenaming::OtherVolume
                                                 : TTreeRenaming::Refused;
}

std::shared_ptr<void> CopyDirectory(const std::string& from, const std::string& to,
                                    TCopyProgress* progress) {
  const TQuietDisks quiet;
  const auto source = LongPath(from);
  const auto target = LongPath(to);
  const auto tree = source && target ? ListTree(*source) : std::nullopt;
  const auto held = std::make_shared<THeldTree>();
  if (!tree || !held->Hold(*source, *tree)) return nullptr;
  TCopying copying(*tree, progress);
  for (const TNode& node : *tree) {
    if (!copying.Copy(*source + node.Path, *target + node.Path, node)) return nullptr;
  }
  return held;
}

bool RemoveDirectoryTree(const std::string& path) {
  const TQuietDisks quiet;
  const auto root = LongPath(path);
  const auto tree = root ? ListTree(*root) : std::nullopt;
  return tree && DeleteTree(*root, *tree, [](const TNode&) { return true; });
}

bool IsCopiedDirectory(const std::string& path, const std::string& other) {
  const TQuietDisks quiet;
  const auto root = LongPath(path);
  const auto twin = LongPath(other);
  const auto tree = root && twin ? ListTree(*root) : std::nullopt;
  return tree &&
         std::ranges::all_of(*tree, [&](const TNode& node) { return IsCopied(node, *twin); });
}

bool RemoveCopiedDirectory(const std::string& path, const std::string& other) {
  const TQuietDisks quiet;
  const auto root = LongPath(path);
  const auto twin = LongPath(other);
  const auto tree = root && twin ? ListTree(*root) : std::nullopt;
  return tree && DeleteTree(*root, *tree, [&](const TNode& node) { return IsCopied(node, *twin); });
}
