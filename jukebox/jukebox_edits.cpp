// SPDX-License-Identifier: GPL-3.0-or-later
#include "jukebox/jukebox_edits.h"

#include <algorithm>
#include <cstddef>
#include <numeric>
#include <unordered_set>
#include <utility>

#include "jukebox/jukebox.h"
#include "jukebox/special_folders.h"
#include "jukebox/step_name.h"
#include "util/natural_order.h"
#include "util/text.h"

namespace tallow {
namespace {

std::int32_t ChildrenOf(const FolderTree& tree, const Folder* parent) {
  return parent != nullptr ? parent->Children() : tree.Children();
}

/// Returns the songs that a folder does not hold yet, without duplicates.
std::vector<SongEntry> WithoutDuplicates(const Folder& folder,
                                         const std::vector<SongEntry>& songs) {
  std::unordered_set<std::int32_t> held;
  held.reserve(folder.Items().size() + songs.size());
  for (const SongEntry& entry : folder.Items()) held.insert(entry.SubItem());
  std::vector<SongEntry> added;
  for (const SongEntry& song : songs)
    if (held.insert(song.SubItem()).second) added.push_back(song);
  return added;
}

}  // namespace

Folder* FolderToShowAfterRemoval(const Folder& folder) noexcept {
  if (Folder* const next = folder.Next()) return next;
  if (folder.Parent() == nullptr) return folder.Previous();
  return folder.Index() > 0 ? folder.Previous() : folder.Parent();
}

std::vector<std::int32_t> JukeboxEdits::ValidRows(const Folder& folder,
                                                  const std::vector<int>& rows) {
  std::vector<std::int32_t> valid;
  valid.reserve(rows.size());
  for (const int row : rows)
    if (row >= 0 && static_cast<std::size_t>(row) < folder.Items().size()) valid.push_back(row);
  return valid;
}

std::vector<SongEntry> JukeboxEdits::EntriesAt(const Folder& folder, const std::vector<int>& rows) {
  std::vector<SongEntry> entries;
  entries.reserve(rows.size());
  for (const std::int32_t row : ValidRows(folder, rows)) {
    entries.push_back(folder.Items()[static_cast<std::size_t>(row)]);
    entries.back().LabelPosition(0);
  }
  return entries;
}

Folder* JukeboxEdits::AddFolder(Folder* parent) {
  if (parent != nullptr && parent->Level() >= kMaxLevel) return nullptr;
  FolderTree& tree = jukebox_.Nodes();
  jukebox_.History().Begin(parent != nullptr ? parent : jukebox_.selectednode(), "Add Folder");
  Folder& folder =
      jukebox_.History().AddFolder(tree.NewFolder(kNewFolder), parent, ChildrenOf(tree, parent));
  jukebox_.History().End();
  return &folder;
}

Folder& JukeboxEdits::AddFolderOf(std::string_view text, const std::vector<SongEntry>& songs) {
  FolderTree& tree = jukebox_.Nodes();
  DetachedFolder folder = tree.NewFolder(text);
  folder->Items() = WithoutDuplicates(*folder, songs);
  jukebox_.History().Begin(jukebox_.selectednode(), "Add Folder");
  Folder& added = jukebox_.History().AddFolder(std::move(folder), nullptr, tree.Children());
  jukebox_.History().End();
  return added;
}

bool JukeboxEdits::Rename(Folder& folder, std::string_view text) {
  if (IsSpecialFolder(folder) || Trim(text).empty()) return false;
  if (folder.Text() == text) return true;
  const Folder* const same = jukebox_.Nodes().Find(text, folder.Parent());
  const bool is_before_special =
      same != nullptr && same->Index() > folder.Index() && IsSpecialFolder(*same);
  jukebox_.History().Begin(&folder, "Rename Folder");
  jukebox_.History().RenameFolder(folder, text);
  if (is_before_special) MoveBehind(folder, *same);
  jukebox_.History().End();
  return true;
}

void JukeboxEdits::MoveBehind(const Folder& folder, const Folder& other) {
  std::vector<std::int32_t> order(
      static_cast<std::size_t>(ChildrenOf(jukebox_.Nodes(), folder.Parent())));
  std::iota(order.begin(), order.end(), 0);
  const auto first = order.begin() + folder.Index();
  std::rotate(first, first + 1, order.begin() + other.Index() + 1);
  jukebox_.History().ReorderFolders(folder.Parent(), std::move(order));
}

void JukeboxEdits::RemoveSongs(Folder& folder, const std::vector<int>& rows,
                               std::string_view verb) {
  Positions positions = ValidRows(folder, rows);
  jukebox_.History().Begin(&folder, NameOfSongStep(verb, positions.size()));
  jukebox_.History().RemoveSongs(folder, std::move(positions));
  jukebox_.History().End();
}

void JukeboxEdits::CutSongs(Folder& folder, const std::vector<int>& rows, std::string_view verb) {
  if (ValidRows(folder, rows).empty()) return;
  CopySongs(folder, rows);
  RemoveSongs(folder, rows, verb);
}

void JukeboxEdits::CopySongs(const Folder& folder, const std::vector<int>& rows) {
  std::vector<SongEntry> songs = EntriesAt(folder, rows);
  if (!songs.empty()) clipboard_.PutSongs(std::move(songs));
}

void JukeboxEdits::CutFolder(Folder& folder) {
  CopyFolder(folder);
  RemoveFolder(folder, "Cut Folder");
}

void JukeboxEdits::CopyFolder(const Folder& folder) { clipboard_.PutFolder(folder); }

JukeboxEdits::Result JukeboxEdits::Paste(Folder* into) {
  if (const Folder* const folder = clipboard_.CopiedFolder())
    return AddCopy(*folder, into, "Paste Folder");
  if (into == nullptr) return clipboard_.Songs().empty() ? Result::kNothing : Result::kNeedsFolder;
  return AddSongs(*into, clipboard_.Songs(), "Paste");
}

JukeboxEdits::Result JukeboxEdits::AddCopy(const Folder& folder, Folder* parent,
                                           std::string_view name) {
  if (!FolderTree::FitsBelow(parent, folder)) return Result::kTooDeep;
  FolderTree& tree = jukebox_.Nodes();
  jukebox_.History().Begin(parent != nullptr ? parent : jukebox_.selectednode(), name);
  jukebox_.History().AddFolder(tree.Copy(folder), parent, ChildrenOf(tree, parent));
  jukebox_.History().End();
  return Result::kDone;
}

void JukeboxEdits::DeleteFolder(Folder& folder) { RemoveFolder(folder, "Delete Folder"); }

void JukeboxEdits::RemoveFolder(Folder& folder, std::string_view name) {
  jukebox_.History().Begin(FolderToShowAfterRemoval(folder), name);
  jukebox_.History().RemoveFolder(folder);
  jukebox_.History().End();
  jukebox_.HideRemovedFolder();
}

JukeboxEdits::Result JukeboxEdits::AddSongs(Folder& to, const std::vector<SongEntry>& songs) {
  return AddSongs(to, songs, "Add");
}

JukeboxEdits::Result JukeboxEdits::AddSongs(Folder& to, const std::vector<SongEntry>& songs,
                                            std::string_view verb) {
  if (songs.empty()) return Result::kNothing;
  std::vector<SongEntry> added = WithoutDuplicates(to, songs);
  if (added.empty()) return Result::kAlreadyThere;
  jukebox_.History().Begin(&to, NameOfSongStep(verb, added.size()));
  jukebox_.History().AddSongs(to, std::move(added));
  jukebox_.History().End();
  return Result::kDone;
}

JukeboxEdits::Result JukeboxEdits::DropSongs(JukeboxEdits& source, Folder& from,
                                             const std::vector<int>& rows, Folder& to, bool copy) {
  if (&from == &to) return Result::kNothing;
  const std::vector<SongEntry> songs = EntriesAt(from, rows);
  if (songs.empty()) return Result::kNothing;
  if (copy) return AddSongs(to, songs, "Copy");
  if (&source != this) {
    const Result added = AddSongs(to, songs, "Move");
    source.RemoveSongs(from, rows, "Move");
    if (added == Result::kDone) LinkSteps(source);
    return Result::kDone;
  }
  EditHistory& history = jukebox_.History();
  history.Begin(&from, NameOfSongStep("Move", songs.size()));
  history.AddSongs(to, WithoutDuplicates(to, songs));
  history.RemoveSongs(from, ValidRows(from, rows));
  history.End();
  return Result::kDone;
}

JukeboxEdits::SongMove JukeboxEdits::MoveSongsTo(Folder& folder, const std::vector<int>& rows,
                                                 int before) {
  const std::vector<std::int32_t> moved = ValidRows(folder, rows);
  const auto count = static_cast<std::int32_t>(folder.Items().size());
  std::vector<char> moves(static_cast<std::size_t>(count));
  for (const std::int32_t row : moved) moves[static_cast<std::size_t>(row)] = 1;
  std::vector<std::int32_t> order;
  order.reserve(moves.size());
  const auto stay = [&](std::int32_t first, std::int32_t end) {
    for (std::int32_t row = first; row < end; ++row)
      if (moves[static_cast<std::size_t>(row)] == 0) order.push_back(row);
  };
  const std::int32_t target = std::clamp(before, 0, count);
  stay(0, target);
  order.insert(order.end(), moved.begin(), moved.end());
  stay(target, count);
  return ReorderSongs(folder, std::move(order), moved.size());
}

JukeboxEdits::SongMove JukeboxEdits::MoveSongsByOne(Folder& folder, const std::vector<int>& rows,
                                                    const std::vector<int>& neighbours) {
  std::vector<std::int32_t> order(folder.Items().size());
  std::iota(order.begin(), order.end(), 0);
  for (std::size_t k = 0; k < rows.size(); ++k)
    std::swap(order.at(static_cast<std::size_t>(rows[k])),
              order.at(static_cast<std::size_t>(neighbours[k])));
  return ReorderSongs(folder, std::move(order), rows.size());
}

JukeboxEdits::SongMove JukeboxEdits::ReorderSongs(Folder& folder, std::vector<std::int32_t> order,
                                                  std::size_t moved) {
  SongMove move{.moved_to = Permutation(order)};
  move.moved_to.Invert();
  EditHistory& history = jukebox_.History();
  history.Begin(&folder, NameOfSongStep("Move", moved));
  move.is_step = history.ReorderSongs(folder, std::move(order));
  history.End();
  return move;
}

void JukeboxEdits::LinkSteps(const JukeboxEdits& source) {
  const std::uint64_t move = clipboard_.NextMove();
  jukebox_.History().LinkLastStep({move, false});
  source.jukebox_.History().LinkLastStep({move, true});
}

bool JukeboxEdits::CanDropFolder(const Folder& folder, const Folder* to, bool copy) noexcept {
  if (to != nullptr && folder.Holds(*to)) return false;
  return copy || folder.Parent() != to;
}

JukeboxEdits::Result JukeboxEdits::DropFolder(JukeboxEdits& source, Folder& folder, Folder* to,
                                              bool copy) {
  const bool same_jukebox = &source == this;
  if (same_jukebox && !CanDropFolder(folder, to, copy)) return Result::kNothing;
  if (copy || !same_jukebox) {
    const std::string_view name = copy ? "Copy Folder" : "Move Folder";
    const Result result = AddCopy(folder, to, name);
    if (result == Result::kDone && !copy) {
      source.RemoveFolder(folder, name);
      LinkSteps(source);
    }
    return result;
  }
  if (!FolderTree::FitsBelow(to, folder)) return Result::kTooDeep;
  EditHistory& history = jukebox_.History();
  history.Begin(&folder, "Move Folder");
  history.MoveFolder(folder, to, ChildrenOf(jukebox_.Nodes(), to));
  history.End();
  return Result::kDone;
}

bool JukeboxEdits::SortNodes(Folder* above) {
  bool changed = false;
  jukebox_.History().Begin(above != nullptr ? above : jukebox_.selectednode(), "Sort Folders");
  jukebox_.Nodes().ReorderMany([&] { changed = SortBelow(above); });
  jukebox_.History().End();
  return changed;
}

bool JukeboxEdits::SortBelow(Folder* above) {
  const FolderTree& tree = jukebox_.Nodes();
  const auto child = [&](std::int32_t index) -> Folder& {
    return above != nullptr ? above->ChildAt(index) : tree.ChildAt(index);
  };
  std::vector<std::int32_t> order(static_cast<std::size_t>(ChildrenOf(tree, above)));
  std::iota(order.begin(), order.end(), 0);
  std::stable_sort(order.begin(), order.end(), [&](std::int32_t a, std::int32_t b) {
    return NaturalLess(child(a).Text(), child(b).Text());
  });
  bool changed = !std::is_sorted(order.begin(), order.end());
  if (changed) jukebox_.History().ReorderFolders(above, std::move(order));
  for (std::int32_t k = 0; k < ChildrenOf(tree, above); ++k)
    changed = SortBelow(&child(k)) || changed;
  return changed;
}

}  // namespace tallow
