// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string_view>

namespace tallow {

/// Where the searches report how far they are: the splash window, or nothing.
///
/// The lines are set for every song. A window may paint them as rarely as a screen needs it.
class SearchProgress {
 public:
  virtual ~SearchProgress() = default;

  /// Whether the window is there. Without it no song is reported.
  virtual bool IsLoaded() const = 0;
  /// Sets the line lStatus, "Looking for Mp3s in C:\".
  virtual void SetStatus(std::string_view text) = 0;
  /// Sets the line lNoOfMP3Found, "Found 12 Mp3s".
  virtual void SetFound(std::string_view text) = 0;
  virtual void Repaint() = 0;
  /// Lets pending window messages run once. The searches call it many times in a row between two
  /// drives, so that a click on Cancel is noticed there.
  virtual void Yield() = 0;
  /// Yield for the place where one song was added: may do nothing while the screen is still up to
  /// date.
  virtual void YieldAfterSong() = 0;
  /// Lets the user cancel what follows, too, once a cancel has been obeyed.
  virtual void MayCancelAgain() {}
  /// A folder is being looked at, or with the empty text other work has gone on: a moment for the window
  /// to say so and to live.
  virtual void VisitFolder(std::string_view /*folder*/) {}
};

}  // namespace tallow
