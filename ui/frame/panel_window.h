// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QMdiSubWindow>
#include <QObject>
#include <QPointer>

namespace tallow {

class JukeboxArea;
class frmMainWinamp;

/// The subwindow of the player panel, in front of the jukebox windows. It stays inside the area
/// when the area is resized. When it is shown or minimized, the last active jukebox becomes active.
class PanelWindow : public QObject {
  Q_OBJECT

 public:
  /// \param jukeboxes has to outlive this object; the panel is shown in the same area
  explicit PanelWindow(JukeboxArea& jukeboxes);

  /// The player panel; null when it is not open.
  frmMainWinamp* Panel() const;
  /// Shows a new panel in the lower right corner. The area owns it.
  void Open(frmMainWinamp& panel);
  /// Restores the open panel and lets it play the songs in SongsToPlay. A panel that finds no
  /// player is closed.
  void Play();
  /// Restores the open panel and lets it show the player, which it starts if there is none. A panel
  /// that finds no player is closed.
  void ShowPlayer();
  /// Closes the panel, if it is open, which also closes the player. While the panel is handing
  /// songs over, it closes afterwards.
  void Close();
  /// Deletes the panel, if there is one, at once. The player keeps running.
  void Delete();

  /// Whether the panel is the active window.
  bool IsActive() const;
  /// Minimizes the panel, if it is open.
  void Minimize();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  /// Restores the panel, and runs a function of it that returns whether the player is open.
  void Show(bool (frmMainWinamp::*open)());
  void ClampPosition(QSize before);

  JukeboxArea& jukeboxes_;
  QPointer<QMdiSubWindow> sub_;   ///< null when the panel is not open
  bool is_handing_over_ = false;  ///< the panel is handing songs over and must not close
  bool is_to_close_ = false;      ///< once the songs are handed over
};

}  // namespace tallow
