#include "directories/rules/directory_move.h"

#include <vector>

#include "directories/rules/directory_list.h"
#include "text/collation.h"
#include "text/comma_text.h"

namespace {

/// Any place that is surely not inside an accounts directory.
constexpr char kRefuge[] = "c:\\";
/// The note of what is under way.
constexpr char kNote[] = "DirAliasMove";
/// In a note: there is a whole copy, and from here on only the renaming makes it disappear.
constexpr char kCopied[] = "copied";
constexpr char kBegun[] = "begun";

struct TMove {
  std::string From;
  std::string To;
  std::string Mark;
  bool Copied = false;

  std::string Copy() const { return To + Mark; }
  std::string Aside() const { return From + Mark; }
};

bool WriteNote(TSettingsStore& store, const TMove& move) {
  std::string text;
  for (const std::string& line : {move.From, move.To, move.Mark}) {
    AppendCommaEntry(text, line);
    text += ',';
  }
  return store.Write(kNote, text + (move.Copied ? kCopied : kBegun));
}

std::optional<TMove> ReadNote(const TSettingsStore& store) {
  const std::string text = store.Read(kNote);
  std::vector<std::string> lines;
  TCommaReader reader(text);
  while (const auto line = reader.Next()) lines.emplace_back(*line);
  if (lines.size() != 4) return std::nullopt;
  // Whatever became of the note: without these there is no name that is ours alone.
  for (const auto& line : lines) {
    if (line.empty()) return std::nullopt;
  }
  return TMove{lines[0], lines[1], lines[2], lines[3] == kCopied};
}

std::string FolderOf(const std::string& path) {
  // With its backslash: a drive's root has no name without.
  return path.substr(0, MaskDoubleBytes(path).rfind('\\') + 1);
}

/// Deletes the original after the list has left it. What resists, or appeared in it during the
/// move, stays under the old name.
void GiveUpOriginal(TDirectoryFiles& files, const TMove& move) {
  if (!files.RemoveCopied(move.Aside(), move.To)) files.Rename(move.Aside(), move.From);
}

/// From a whole copy under its final name to the end, or as far as the next opening can go on.
void Finish(TDirectoryFiles& files, TSettingsStore& store, const TMove& move) {
  if (files.Rename(move.From, move.Aside()) != TRenaming::Done) return;
  GiveUpOriginal(files, move);
  store.Remove(kNote);
}

/// Deletes a copy and the note of it; the note stays while the copy does.
void DropCopy(TDirectoryFiles& files, TSettingsStore& store, const TMove& move) {
  if (!files.DirectoryExists(move.Copy()) || files.Remove(move.Copy())) store.Remove(kNote);
}

/// The list cannot be written: the stored entries shall go on pointing to the original.
bool TakeBack(TDirectoryFiles& files, TSettingsStore& store, const TMove& move,
              const std::string& to) {
  return TDirectoryList::Repoint(store, move.To, move.From) &&
         files.Rename(move.To, to) == TRenaming::Done;
}

bool MoveByCopy(TDirectoryFiles& files, TSettingsStore& store, TMove move) {
  {
    const auto held = files.Copy(move.From, move.Copy());
    const auto list = store.Hold();
    move.Copied = true;
    if (!held || !list || !WriteNote(store, move) ||
        files.Rename(move.Copy(), move.To) != TRenaming::Done) {
      DropCopy(files, store, move);
      return false;
    }
    if (!TDirectoryList::Repoint(store, move.From, move.To)) {
      if (TakeBack(files, store, move, move.Copy())) DropCopy(files, store, move);
      return false;
    }
  }
  Finish(files, store, move);
  return true;
}

bool Move(TDirectoryFiles& files, TSettingsStore& store, const TMove& move) {
  const auto alone = files.HoldMoves();
  if (!alone || !WriteNote(store, move)) return false;
  auto list = store.Hold();
  const auto renaming = list ? files.Rename(move.From, move.To) : TRenaming::Refused;
  if (renaming == TRenaming::OtherVolume) {
    list.reset();
    return MoveByCopy(files, store, move);
  }
  if (renaming == TRenaming::Refused) {
    store.Remove(kNote);
    return false;
  }
  const bool moved = TDirectoryList::Repoint(store, move.From, move.To);
  // What cannot be taken back is moved all the same: the next opening tells the list.
  if (!moved && !TakeBack(files, store, move, move.From)) return true;
  store.Remove(kNote);
  return moved;
}

void SettleRenaming(TDirectoryFiles& files, TSettingsStore& store, const TMove& move) {
  if (files.DirectoryExists(move.From)) return DropCopy(files, store, move);
  if (files.DirectoryExists(move.To) && !TDirectoryList::Repoint(store, move.From, move.To)) return;
  store.Remove(kNote);
}

void SettleCopy(TDirectoryFiles& files, TSettingsStore& store, const TMove& move) {
  if (files.DirectoryExists(move.Copy())) return DropCopy(files, store, move);
  if (files.DirectoryExists(move.Aside())) {
    GiveUpOriginal(files, move);
  } else if (files.DirectoryExists(move.From) && files.IsCopied(move.From, move.To)) {
    if (TDirectoryList::Repoint(store, move.From, move.To)) Finish(files, store, move);
    return;
  }
  // An original that was worked in since stays, and so does what the list says.
  store.Remove(kNote);
}

}  // namespace

std::string MovedPath(std::string_view directory, std::string_view folder) {
  directory = WithoutEndSlashes(directory);
  const auto slash = MaskDoubleBytes(directory).rfind('\\');
  const auto name = slash == std::string_view::npos ? directory : directory.substr(slash + 1);
  return std::string(WithoutEndSlashes(folder)) + "\\" + std::string(name);
}

std::optional<std::string> MoveDirectoryInto(TDirectoryFiles& files, TSettingsStore& store,
                                             const std::string& directory,
                                             const std::string& folder) {
  const std::string from(WithoutEndSlashes(directory));
  const std::string current = files.Current();
  const std::string target = MovedPath(directory, folder);
  if (from.empty() || IsOrLiesInside(target, from) || files.DirectoryExists(target)) {
    return std::nullopt;
  }
  SettleMove(files, store);
  // The note of an earlier move may be what cannot be read.
  if (store.ReadFailed()) return std::nullopt;
  const bool leaving = IsOrLiesInside(current, from);
  // The system does not let go of the directory that a process stands in.
  if (leaving) files.Enter(kRefuge);
  const bool moved = Move(files, store, {from, target, files.NewMark()});
  if (leaving && !files.Enter(moved ? target + current.substr(from.size()) : current) && moved) {
    files.Enter(target);
  }
  if (!moved) return std::nullopt;
  return target;
}

void SettleMove(TDirectoryFiles& files, TSettingsStore& store) {
  if (!ReadNote(store)) return;
  const auto alone = files.HoldMoves();
  const auto move = ReadNote(store);
  if (!alone || !move) return;
  if (!files.DirectoryExists(FolderOf(move->From)) || !files.DirectoryExists(FolderOf(move->To))) {
    return;
  }
  if (move->Copied) {
    SettleCopy(files, store, *move);
  } else {
    SettleRenaming(files, store, *move);
  }
}
