// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "jukebox/edit_history.h"

namespace tallow {

class FrameMessages;
class JukeboxArea;
class frmMain;

/// Undoes and redoes moves between two jukeboxes as a whole. Such a move has two parts: one step in
/// the history of each jukebox.
class LinkedUndo {
 public:
  /// The parameters have to outlive this object.
  LinkedUndo(const JukeboxArea& jukeboxes, FrameMessages& messages)
      : jukeboxes_(jukeboxes), messages_(messages) {}

  /// Undoes or redoes the other part of a move, after a window has undone or redone its own part.
  /// Where that is not possible, the step of the window is reverted, or a message says that only
  /// one part was undone or redone.
  ///
  /// \param window the window that has undone or redone its part
  /// \param back   undone; otherwise redone
  void StepOther(frmMain& window, EditHistory::MoveLink link, bool back);

 private:
  const JukeboxArea& jukeboxes_;
  FrameMessages& messages_;
};

}  // namespace tallow
