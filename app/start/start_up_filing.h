// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <chrono>

#include "jukebox/sorting.h"

namespace tallow {

class StartUpNotices;
class StartUpWindows;
class Tallow;

/// Shows the progress of filing songs during a start in the splash window, if the filing takes
/// long. The window's Cancel button then ends the filing.
class StartUpFiling {
 public:
  /// Filing that takes longer than this is shown and can be cancelled.
  static constexpr std::chrono::milliseconds kShowAfter{500};

  /// \param tallow, windows, notices must outlive this object
  StartUpFiling(Tallow& tallow, StartUpWindows& windows, StartUpNotices& notices,
                std::chrono::milliseconds show_after = kShowAfter)
      : tallow_(tallow), windows_(windows), notices_(notices), show_after_(show_after) {}

  /// The callback for one filing; valid as long as this object.
  FilingProgress Progress();
  /// Ends the display. After a cancel, leaves the rest to the next search for new songs and adds a
  /// notice of this.
  void End();

 private:
  Tallow& tallow_;
  StartUpWindows& windows_;
  StartUpNotices& notices_;
  const std::chrono::milliseconds show_after_;
  bool is_shown_ = false;  ///< the filing takes long enough to be shown
  bool was_cancelled_ = false;
};

}  // namespace tallow
