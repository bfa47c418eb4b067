#include <windows.h>

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/code_page.h"
#include "platform/file_system.h"
#include "platform/quiet_disks.h"

namespace {

class TFileHandle {
 public:
  explicit TFileHandle(HANDLE handle) : FHandle(handle) {}
  TFileHandle(TFileHandle&& other) noexcept
      : FHandle(std::exchange(other.FHandle, INVALID_HANDLE_VALUE)) {}
  TFileHandle& operator=(TFileHandle&& other) noexcept {
    std::swap(FHandle, other.FHandle);
    return *this;
  }
  ~TFileHandle() { Close(); }
  void Close() {
    if (*this) CloseHandle(std::exchange(FHandle, INVALID_HANDLE_VALUE));
  }
  HANDLE Get() const { return FHandle; }
  explicit operator bool() const { return FHandle != INVALID_HANDLE_VALUE; }

 private:
  HANDLE FHandle;
};

constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

TFileHandle OpenExisting(const std::wstring& path, DWORD access, DWORD share) {
  return TFileHandle(CreateFileW(path.c_str(), access, share, nullptr, OPEN_EXISTING,
                                 FILE_FLAG_BACKUP_SEMANTICS | FILE_FLAG_OPEN_REPARSE_POINT,
                                 nullptr));
}

/// Absolute, without an end slash, and free of the usual limit on a path's length: at the target
/// the paths of a tree may be longer. Nothing when there is no such path.
std::optional<std::wstring> LongPath(const std::string& path) {
  const std::wstring given = ToWide(path);
  std::wstring full(GetFullPathNameW(given.c_str(), 0, nullptr, nullptr), L'\0');
  const DWORD length =
      GetFullPathNameW(given.c_str(), static_cast<DWORD>(full.size()), full.data(), nullptr);
  if (length == 0 || length >= full.size()) return std::nullopt;
  full.resize(length);
  while (full.ends_with(L'\\')) full.pop_back();
  if (full.starts_with(L"\\\\?\\")) return full;
  if (full.starts_with(L"\\\\")) return L"\\\\?\\UNC" + full.substr(1);
  return L"\\\\?\\" + full;
}

/// Directories come before what they hold; the first is the tree's own, with an empty path.
struct TNode {
  std::wstring Path;  ///< below the tree's directory, with a backslash before it
  DWORD Attributes;
  bool Directory() const { return (Attributes & FILE_ATTRIBUTE_DIRECTORY) != 0; }
};

using TTree = std::vector<TNode>;

/// A copy would go where a link leads, and deleting it could as well.
bool IsLink(const WIN32_FIND_DATAW& found) {
  return (found.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0 &&
         IsReparseTagNameSurrogate(found.dwReserved0);
}

bool ListDirectory(const std::wstring& root, const std::wstring& directory, TTree& tree) {
  WIN32_FIND_DATAW found{};
  const HANDLE search = FindFirstFileW((root + directory + L"\\*").c_str(), &found);
  if (search == INVALID_HANDLE_VALUE) return false;
  bool plain = true;
  do {
    const std::wstring name = found.cFileName;
    if (name == L"." || name == L"..") continue;
    plain = !IsLink(found);
    tree.push_back({directory + L"\\" + name, found.dwFileAttributes});
  } while (plain && FindNextFileW(search, &found));
  const bool whole = plain && GetLastError() == ERROR_NO_MORE_FILES;
  FindClose(search);
  return whole;
}

std::optional<TTree> ListTree(const std::wstring& root) {
  WIN32_FIND_DATAW found{};
  const HANDLE search = FindFirstFileW(root.c_str(), &found);
  if (search == INVALID_HANDLE_VALUE) return std::nullopt;
  FindClose(search);
  if (IsLink(found)) return std::nullopt;
  TTree tree{{L"", found.dwFileAttributes}};
  for (std::size_t at = 0; at < tree.size(); ++at) {
    if (!tree[at].Directory()) continue;
    const std::wstring directory = tree[at].Path;
    if (!ListDirectory(root, directory, tree)) return std::nullopt;
  }
  return tree;
}

/// Keeps others from writing to the files of a tree until they are deleted.
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
  void Release(std::size_t node) { FHandles[node].Close(); }

 private:
  std::vector<TFileHandle> FHandles;
};

bool DeleteNode(const std::wstring& path, const TNode& node) {
  if (node.Attributes & FILE_ATTRIBUTE_READONLY) {
    SetFileAttributesW(path.c_str(), node.Attributes & ~DWORD{FILE_ATTRIBUTE_READONLY});
  }
  if (node.Directory() ? RemoveDirectoryW(path.c_str()) : DeleteFileW(path.c_str())) return true;
  SetFileAttributesW(path.c_str(), node.Attributes);
  return false;
}

/// Deletes the first nodes of a tree, what lies in a directory before it.
void DeleteNodes(const std::wstring& root, const TTree& tree, std::size_t count) {
  while (count-- > 0) DeleteNode(root + tree[count].Path, tree[count]);
}

/// The original is deleted next: its copy must not live in memory only.
bool FlushToDisk(const std::wstring& path, DWORD attributes) {
  const bool readOnly = (attributes & FILE_ATTRIBUTE_READONLY) != 0;
  if (readOnly) SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_NORMAL);
  const TFileHandle file = OpenExisting(path, GENERIC_WRITE, FILE_SHARE_READ);
  const bool flushed = file && FlushFileBuffers(file.Get());
  if (readOnly) SetFileAttributesW(path.c_str(), attributes);
  return flushed;
}

bool CopyNode(const std::wstring& from, const std::wstring& to, const TNode& node) {
  if (node.Directory()) return CreateDirectoryExW(from.c_str(), to.c_str(), nullptr) != FALSE;
  const bool copied = CopyFileExW(from.c_str(), to.c_str(), nullptr, nullptr, nullptr,
                                  COPY_FILE_FAIL_IF_EXISTS) != FALSE;
  const bool begun = copied || GetLastError() != ERROR_FILE_EXISTS;
  if (copied && FlushToDisk(to, node.Attributes)) return true;
  // Half a copy goes; a file that someone else put there stays.
  if (begun) DeleteNode(to, node);
  return false;
}

/// A whole copy, or none.
bool CopyTree(const std::wstring& from, const std::wstring& to, const TTree& tree) {
  for (std::size_t done = 0; done < tree.size(); ++done) {
    if (CopyNode(from + tree[done].Path, to + tree[done].Path, tree[done])) continue;
    DeleteNodes(to, tree, done);
    return false;
  }
  return true;
}

bool MoveToOtherVolume(const std::wstring& from, const std::wstring& to) {
  const auto tree = ListTree(from);
  THeldTree held;
  if (!tree || !held.Hold(from, *tree) || !CopyTree(from, to, *tree)) return false;
  bool deletedAny = false;
  for (std::size_t node = tree->size(); node-- > 0;) {
    const bool deleted = DeleteNode(from + (*tree)[node].Path, (*tree)[node]);
    if (!deleted && !deletedAny) {
      DeleteNodes(to, *tree, tree->size());
      return false;
    }
    // From the first deletion on the copy alone is whole: what resists later is left behind.
    deletedAny = true;
    held.Release(node);
  }
  return true;
}

}  // namespace

bool MoveDirectoryTree(const std::string& from, const std::string& to) {
  const TQuietDisks quiet;
  const auto source = LongPath(from);
  const auto target = LongPath(to);
  if (from.empty() || !source || !target || source->ends_with(L':') || !IsDirectory(from)) {
    return false;
  }
  if (GetFileAttributesW(target->c_str()) != INVALID_FILE_ATTRIBUTES) return false;
  // The system copies files to another volume, but no directories: those are copied here.
  if (MoveFileExW(source->c_str(), target->c_str(), MOVEFILE_WRITE_THROUGH)) return true;
  return GetLastError() == ERROR_NOT_SAME_DEVICE && MoveToOtherVolume(*source, *target);
}
