// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string_view>

namespace tallow {

/// Receiver of the progress of the searches: the splash window, or nothing.
///
/// The lines are set for every song. A window may paint them at the refresh rate of the screen.
class SearchProgress {
 public:
  virtual ~SearchProgress() = default;

  /// Whether the window is loaded. If not, songs are not reported.
  virtual bool IsLoaded() const = 0;
  /// Sets the line lStatus, "Looking for Mp3s in C:\".
  virtual void SetStatus(std::string_view text) = 0;
  /// Sets the line lNoOfMP3Found, "Found 12 Mp3s".
  virtual void SetFound(std::string_view text) = 0;
  virtual void Repaint() = 0;
  /// Processes pending window events once. The searches call this many times in a row between two
  /// drives, so that a click on Cancel is noticed there.
  virtual void Yield() = 0;
  /// Variant of Yield, called after each added song: may do nothing while the screen is still up to
  /// date.
  virtual void YieldAfterSong() = 0;
  /// Enables Cancel for the next step, after the previous step was cancelled.
  virtual void MayCancelAgain() {}
  /// Idle callback: shows the folder being read and processes window events. With the empty text,
  /// other work has progressed.
  virtual void VisitFolder(std::string_view /*folder*/) {}
};

}  // namespace tallow
