// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/jukebox/explorer/explorer_steps.h"

#include <cstddef>
#include <cstdint>
#include <vector>

#include "ui/jukebox/folder_tree_view.h"

namespace tallow {

ExplorerSteps::ExplorerSteps(Jukebox& jukebox, FolderTreeView& tree, ShownSongs& songs)
    : jukebox_(jukebox), tree_(tree), songs_(songs) {}

void ExplorerSteps::Undo() { StepAndEmit(true); }

void ExplorerSteps::Redo() { StepAndEmit(false); }

bool ExplorerSteps::StepLinked(std::uint64_t move, bool back) {
  if (NextLink(back).move != move) return false;
  Step(back);
  return true;
}

/// Returns which move between two windows the next step is part of; the `move` of the result is 0
/// if it is part of none.
EditHistory::MoveLink ExplorerSteps::NextLink(bool back) {
  const EditHistory& history = jukebox_.History();
  return back ? history.LinkToUndo() : history.LinkToRedo();
}

void ExplorerSteps::StepAndEmit(bool back) {
  const EditHistory::MoveLink link = NextLink(back);
  const std::vector<std::int32_t> ranked = Step(back);
  if (link.move != 0) emit LinkedStepDone(link, back);
  // Last, because a message that the ranks cannot be saved waits for the user, who may close this
  // window meanwhile.
  if (!ranked.empty()) emit RanksChanged(ranked);
}

/// \returns the record numbers of the songs whose ranks the step has changed
std::vector<std::int32_t> ExplorerSteps::Step(bool back) {
  ShownSongs::Place before = songs_.PlaceInFolder();
  const Jukebox::StepResult result = back ? jukebox_.Undo() : jukebox_.Redo();
  if (!result.done) return {};
  const EditHistory& history = jukebox_.History();
  // Before the list is refilled, which removes songs whose files are gone.
  if (const Folder* const shown = jukebox_.selectednode();
      shown != nullptr && history.LastSongChange(*shown).IsReorder())
    songs_.Move(before, [&](std::size_t index) { return history.MovedByLast(*shown, index); });
  // The list has to show what the step has changed.
  if (result.list_changed || result.concerned != nullptr) songs_.HideHits();
  if (result.list_changed) {
    songs_.Refill();
    jukebox_.ResetSort();
  }
  const bool other_folder = ShowFolderOf(result);
  if (jukebox_.selectednode() == nullptr) return result.ranked;
  // Read after the list was refilled, which removes songs whose files are gone from the list and
  // from the step.
  const EditHistory::SongChange change = history.LastSongChange(*jukebox_.selectednode());
  if (songs_.Select(change.added)) return result.ranked;
  if (change.first_removed_at >= 0) {
    songs_.SelectNear(change.first_removed_at);
  } else if (change.any && !other_folder) {
    // A sort or a move was undone or redone: the entries hold different songs now.
    songs_.Follow(before);
  }
  return result.ranked;
}

/// Shows the folder that a step concerns or, if none is on show any more, the first folder.
/// \returns whether another folder is shown than before
bool ExplorerSteps::ShowFolderOf(const Jukebox::StepResult& result) {
  const Folder* const shown = jukebox_.selectednode();
  if (result.concerned != nullptr && result.concerned != shown)
    tree_.SelectFolder(*result.concerned);
  else if (shown == nullptr && jukebox_.Nodes().Children() > 0)
    tree_.SelectFolder(jukebox_.Nodes().ChildAt(0));
  else
    return false;
  return true;
}

}  // namespace tallow
