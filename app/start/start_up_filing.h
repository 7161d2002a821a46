// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "jukebox/sorting.h"

namespace tallow {

class StartUpNotices;
class StartUpWindows;
class Tallow;

/// The filing of songs during a start: when it takes long, the splash window shows its progress and
/// lets the user cancel it.
class StartUpFiling {
 public:
  /// \param tallow, windows, notices must outlive this object
  StartUpFiling(Tallow& tallow, StartUpWindows& windows, StartUpNotices& notices)
      : tallow_(tallow), windows_(windows), notices_(notices) {}

  /// The callback for one filing; valid as long as this object.
  FilingProgress Progress();
  /// Ends the display. After a cancel, leaves the rest to the next search for new songs and adds a
  /// notice of this.
  void End();

 private:
  Tallow& tallow_;
  StartUpWindows& windows_;
  StartUpNotices& notices_;
  bool is_shown_ = false;  ///< the filing takes long enough to be shown
  bool was_cancelled_ = false;
};

}  // namespace tallow
