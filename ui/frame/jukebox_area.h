// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include <QObject>

class QMdiArea;
class QMdiSubWindow;

namespace tallow {

class Jukebox;
class frmMain;

/// The jukebox windows in the area of the frame window: which are open, which is active, and what
/// happens to the others when one is minimized or restored.
///
/// Either all jukebox windows are maximized or none: a maximized window behind the others would put
/// its title and buttons into the frame. When a window is minimized, another one becomes active,
/// because otherwise commands would change a jukebox that the user does not see.
class JukeboxArea : public QObject {
  Q_OBJECT

 public:
  /// \param area has to outlive this object; may hold other windows, too
  explicit JukeboxArea(QMdiArea& area) : area_(area) {}

  QMdiArea& Area() const noexcept { return area_; }

  /// Adds a new window, which is not shown yet. The area owns it.
  void Add(frmMain& window);
  /// Shows a window maximized and gives it the keyboard focus.
  void Show(frmMain& window);
  /// Returns a caption for the new jukebox of the window added last: "JukeBox" and the number of
  /// the window, or the next number whose caption no open jukebox has. A recovered jukebox may have
  /// such a caption from an earlier run.
  std::string NewCaption();

  /// The open jukeboxes, in the order they were opened.
  std::vector<Jukebox*> Open() const;
  /// Calls a function for the window of each open jukebox.
  void ForEachWindow(const std::function<void(frmMain& window)>& act) const;
  /// The window of an open jukebox; null when the jukebox is not open.
  frmMain* WindowOf(const Jukebox& jukebox) const;
  /// Whether a visible window of any kind has this caption, in any letter case.
  bool HasCaption(std::string_view caption) const;

  /// The jukebox window that commands act on: the active window or, while another kind of window is
  /// active, the jukebox window that was active last; null for none.
  frmMain* ActiveWindow() const;
  /// The jukebox of ActiveWindow(); null for none.
  Jukebox* ActiveJukebox() const;
  /// The visible jukebox window that was active last; a minimized one only where all are minimized;
  /// null for none.
  frmMain* LastActive() const;
  bool IsActive(const frmMain& window) const;
  void Activate(const frmMain& window);
  /// Activates LastActive().
  void ActivateLast();

  /// Calls `act`, which refills the lists of all jukeboxes, and then restores each list's selection
  /// and scroll position. Hides the folders that are set aside now.
  void KeepPlaces(const std::function<void()>& act) const;

  /// Closes all jukebox windows, once the user has answered whether to save each of them.
  /// \returns false when a jukebox has to stay open; no window is closed then
  bool CloseAll();

 signals:
  /// A new window was added, see Add.
  void Added(tallow::frmMain& window);
  /// CloseAll is about to close all jukebox windows; the user has answered all questions.
  void ClosingAll();

 private:
  void FollowState(QMdiSubWindow& sub, frmMain& window);
  void ActivateUnminimized();
  void RestoreAll();
  void FitInside(QMdiSubWindow& sub, int number) const;

  QMdiArea& area_;
  int number_ = 0;  ///< of the window added last, from 1; NewCaption() may skip numbers
};

}  // namespace tallow
