// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <utility>
#include <vector>

#include <QHash>
#include <QObject>
#include <QRect>

#include "app/open_jukeboxes.h"

class QMdiSubWindow;

namespace tallow {

class FrameMessages;
class JukeboxArea;
class Tallow;
class frmMain;

/// Stores which jukeboxes are open and where their windows are, for the next start, and moves the
/// windows of a start to their places. Stores only with the switch `reopens_jukeboxes`.
class JukeboxPlaces : public QObject {
  Q_OBJECT

 public:
  /// The parameters have to outlive this object.
  JukeboxPlaces(Tallow& tallow, JukeboxArea& jukeboxes, FrameMessages& messages);

  /// Follows the place of a new window, and stores when it is closed.
  void Follow(frmMain& window);
  /// Stores after a window was shown.
  void WindowShown();

  /// Stores the open jukeboxes. Reports an error once.
  void Store();
  /// Stores once the pending events are processed.
  void StoreLater();

  /// A window that is shown, and its place.
  using Placed = std::pair<frmMain*, WindowPlace>;
  /// Moves windows to their places, and makes one of them the active one. A place outside of the
  /// area is moved into it.
  void Restore(const std::vector<Placed>& placed, frmMain& front);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  WindowPlace PlaceOf(const QMdiSubWindow& sub) const;

  Tallow& tallow_;
  JukeboxArea& jukeboxes_;
  FrameMessages& messages_;
  /// The places of the windows when they were last neither maximized nor minimized.
  QHash<const QObject*, QRect> normal_;
  bool is_ending_ = false;   ///< all windows are closing, because the program ends
  bool is_waiting_ = false;  ///< StoreLater was called
  std::string problem_;      ///< the error that was reported last
};

}  // namespace tallow
