// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "app/style_changes.h"
#include "ui/frame/frame_windows_base.h"

namespace tallow {

class NewSongSearch;
class Tallow;

/// Files the songs of the jukebox windows again: by the menu, and when the preferences change.
class FrameFiling : private FrameWindows<StyleWindows> {
 public:
  /// The parameters have to outlive this object.
  /// \param notice_scan shows the result of a search
  FrameFiling(Tallow& tallow, JukeboxArea& jukeboxes, FrameMessages& messages, BusyFrame& busy,
              NewSongSearch& search,
              std::function<void(const std::vector<std::string>&)> notice_scan);

  /// The command "File Again By Tags", see SongsToFileAgain.
  void FileAgain();
  /// The preferences have changed, see StyleChanges.
  void Follow(const Switches& before);
  /// The user has chosen a whole style.
  void FinishStyle();
  /// The user has closed the preferences dialog.
  void Finish();

 private:
  NewSongsResult Search(NewSongsPlace place) override;
  void NoticeScan(const std::vector<std::string>& lines) override { notice_scan_(lines); }
  void KeepFocus(const std::function<void()>& act) const;
  void KeepPlaces(const std::function<void()>& act) const;

  Tallow& tallow_;
  NewSongSearch& search_;
  std::function<void(const std::vector<std::string>&)> notice_scan_;
  StyleChanges changes_;
};

}  // namespace tallow
