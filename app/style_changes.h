// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "app/new_songs.h"
#include "app/window_interfaces.h"
#include "library/switches.h"

namespace tallow {

class Tallow;

/// What a change of the switches makes necessary, apart from showing the lists again.
struct StyleWork {
  /// Where there may be songs now that no search has brought in; no value for nowhere.
  std::optional<NewSongsPlace> search;
  /// Whether songs are filed differently now.
  bool files_differently = false;
};

/// A search of the known folders cannot find songs of other formats, or songs whose names others
/// have, in folders that hold nothing else; these need a search of the whole computer.
StyleWork WorkFor(const Switches& before, const Switches& now);

/// The windows that a change of the switches uses.
class StyleWindows : public JukeboxWindows {
 public:
  /// Searches for new songs, files them in all open jukeboxes, and shows the result.
  virtual NewSongsResult Search(NewSongsPlace place) = 0;
  /// Notice of what was done, in the place of that of the search before; see
  /// NewSongsWindows::NoticeScan.
  virtual void NoticeScan(const std::vector<std::string>& lines) = 0;
};

/// Lets the library and the open jukeboxes follow the switches of the preferences.
///
/// What is listed follows each change at once. The other work is to search for songs, and to file
/// all songs of the open jukeboxes again. FinishStyle does it when the user has chosen a whole
/// style. Single switches are often changed together, so for them it is left until Finish, which
/// asks before it files anything again.
class StyleChanges {
 public:
  /// \param tallow, windows must outlive this object
  StyleChanges(Tallow& tallow, StyleWindows& windows) : tallow_(tallow), windows_(windows) {}

  /// Follows a change of the preferences.
  /// \param before the switches before it; nothing happens when they equal those of now
  void Follow(const Switches& before);
  /// Whether changes have left work.
  bool HasWork() const noexcept { return done_.has_value(); }
  /// Does the work that the choice of a whole style, and changes before it, have left.
  void FinishStyle();
  /// Does the work that single switches have left, if any.
  void Finish();

 private:
  void Act(bool asks);
  bool MayFile(bool asks, bool is_complete);
  std::string ListedText() const;
  void Report(const NewSongsResult& found, const std::string& listed,
              const std::vector<std::string>& filed);

  Tallow& tallow_;
  StyleWindows& windows_;
  /// The switches that the last work was done for; no value when no work is left.
  std::optional<Switches> done_;
  /// Whether each song, by its row from 1, was listed with these switches.
  std::vector<bool> was_listed_;
};

}  // namespace tallow
