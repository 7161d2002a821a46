// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/frame/linked_undo.h"

#include <string>

#include "ui/frame/frame_messages.h"
#include "ui/frame/jukebox_area.h"
#include "ui/jukebox/frm_main.h"
#include "ui/jukebox/pv_explorer.h"

namespace tallow {
namespace {

/// How long a message is shown, in ms. It concerns only the last step, and the user may take the
/// next step at once.
constexpr int kShown = 20 * 1000;

}  // namespace

void LinkedUndo::StepOther(frmMain& window, EditHistory::MoveLink link, bool back) {
  using State = EditHistory::LinkedStepState;
  State other_part = State::kNone;
  messages_.ClearStatus();
  for (Jukebox* const jukebox : jukeboxes_.Open()) {
    frmMain* const other = jukeboxes_.WindowOf(*jukebox);
    if (other == &window) continue;
    if (other->PVExplorer1().StepLinked(link.move, back)) return;
    const State state = jukebox->History().StateOfLinkedStep(link.move);
    if (state != State::kNone) other_part = state;
  }
  if (other_part == (back ? State::kUndone : State::kDone)) return;
  const std::string step = back ? "undone" : "redone";
  // A step that removes content here is reverted, because the content would be in neither jukebox.
  // But a step whose other part is forgotten must not block the undo of earlier steps.
  const bool removes = link.is_source != back;
  const bool would_block = other_part == State::kNone && back;
  if (!removes || would_block)
    return messages_.ShowStatus("The move was " + step + " only in " + window.Jukebox().Caption() +
                                    ": the other jukebox has changed since, or was closed.",
                                kShown);
  window.PVExplorer1().StepLinked(link.move, !back);
  std::string why = "the other jukebox has changed since, or was closed.";
  if (other_part == State::kDone)
    why = "the other jukebox has changed since. Undo those changes first.";
  // The other jukebox has undone steps before this one.
  if (other_part == State::kUndone) why = "redo the earlier steps in the other jukebox first.";
  messages_.ShowStatus("The move between two jukeboxes was not " + step + ": " + why, kShown);
}

}  // namespace tallow
