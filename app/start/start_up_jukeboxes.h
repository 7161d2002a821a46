// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <vector>

#include "app/start/start_up_filing.h"
#include "app/start/start_up_reopening.h"

namespace tallow {

class Jukebox;
class StartUpNotices;
class StartUpWait;
class StartUpWindows;
class Tallow;

/// Opens the jukeboxes of a start: those with unsaved changes that the user recovers, and the one
/// saved last, or the sample. With the switch `reopens_jukeboxes`, those that were open instead of
/// the one saved last.
class StartUpJukeboxes {
 public:
  /// \param tallow, windows, notices, wait must outlive this object
  StartUpJukeboxes(Tallow& tallow, StartUpWindows& windows, StartUpNotices& notices,
                   StartUpWait& wait)
      : tallow_(tallow),
        windows_(windows),
        notices_(notices),
        wait_(wait),
        filing_(tallow, windows, notices),
        reopening_(tallow, windows, notices, wait, filing_) {}

  /// Opens and shows the jukeboxes, and files the songs in them.
  void Open();

 private:
  /// \returns false when the jukebox saved last cannot be opened
  bool OpenLast(Jukebox& jukebox);
  /// \param last gets the jukebox that was recovered last, if any
  /// \returns the files of the recovered jukeboxes
  std::vector<std::string> RecoverUnsaved(Jukebox*& last);

  Tallow& tallow_;
  StartUpWindows& windows_;
  StartUpNotices& notices_;
  StartUpWait& wait_;
  StartUpFiling filing_;
  StartUpReopening reopening_;
};

}  // namespace tallow
