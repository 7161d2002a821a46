// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>
#include <utility>

#include "app/long_work.h"
#include "player/playfile.h"
#include "player/reach_player.h"

namespace tallow {

/// Shows the progress while a player starts and songs are handed over to it, and processes window
/// events meanwhile.
class PlayerWork {
 public:
  /// \param begin may be empty: nothing is shown, and no events are processed
  explicit PlayerWork(BeginLongWork begin) : begin_(std::move(begin)) {}

  /// The callback for ReachPlayer; it must not outlive this object. The work begins with its first
  /// call, if it has not begun yet.
  WhileStarting Starting();
  /// Begins the work of handing songs over.
  /// \returns the callback for HandOver, which must not outlive this object; empty when nothing is
  ///          shown
  HandOverProgress BeginHandingOver();
  void End() { work_.reset(); }

 private:
  BeginLongWork begin_;
  std::unique_ptr<LongWork> work_;
};

}  // namespace tallow
