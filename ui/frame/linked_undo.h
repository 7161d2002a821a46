// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "jukebox/edit_history.h"

namespace tallow {

class FrameMessages;
class JukeboxArea;
class frmMain;

/// Undoes and redoes moves between two jukeboxes as a whole. Such a move is a step in the history
/// of each jukebox, its halves.
class LinkedUndo {
 public:
  /// The parameters have to outlive this object.
  LinkedUndo(const JukeboxArea& jukeboxes, FrameMessages& messages)
      : jukeboxes_(jukeboxes), messages_(messages) {}

  /// Undoes or redoes the other half of a move, after a window has done so with its own. Where
  /// that is not possible, the step of the window is reverted, or the user is told that only one
  /// half was undone or redone.
  ///
  /// \param window the window that has undone or redone its half
  /// \param back   undone; otherwise redone
  void StepOther(frmMain& window, EditHistory::MoveLink link, bool back);

 private:
  const JukeboxArea& jukeboxes_;
  FrameMessages& messages_;
};

}  // namespace tallow
