// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <vector>

#include <QObject>

#include "jukebox/jukebox.h"
#include "ui/jukebox/explorer/shown_songs.h"

namespace tallow {

class FolderTreeView;

/// Undo and redo in the explorer control: undoes or redoes a step, and then shows the folder that
/// the step concerns and selects the songs that it has restored, or those next to the songs that it
/// has removed.
class ExplorerSteps : public QObject {
  Q_OBJECT

 public:
  /// \param jukebox, tree, songs must outlive this object
  ExplorerSteps(Jukebox& jukebox, FolderTreeView& tree, ShownSongs& songs);

  void Undo();
  void Redo();
  /// Undoes or redoes this window's part of a move between two windows, without emitting
  /// LinkedStepDone.
  /// \param move identifies the move
  /// \param back whether to undo
  /// \returns false if that part is not the next step in this window
  bool StepLinked(std::uint64_t move, bool back);

 signals:
  /// This window's part of a move between two windows was undone or redone.
  void LinkedStepDone(tallow::EditHistory::MoveLink link, bool back);
  /// A step has changed the ranks of songs; the library is not saved yet.
  void RanksChanged(const std::vector<std::int32_t>& songs);

 private:
  EditHistory::MoveLink NextLink(bool back);
  std::vector<std::int32_t> Step(bool back);
  void StepAndEmit(bool back);
  bool ShowFolderOf(const Jukebox::StepResult& result);

  Jukebox& jukebox_;
  FolderTreeView& tree_;
  ShownSongs& songs_;
};

}  // namespace tallow
