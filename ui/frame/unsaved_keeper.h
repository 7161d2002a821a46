// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>

class QWidget;

namespace tallow {

class FrameMessages;
class JukeboxArea;
class Tallow;

/// Saves the unsaved changes of the open jukeboxes for recovery after a crash, every minute while
/// the frame window is enabled.
class UnsavedKeeper : public QObject {
  Q_OBJECT

 public:
  /// \param frame owns the timer; all parameters have to outlive this object
  UnsavedKeeper(QWidget& frame, Tallow& tallow, const JukeboxArea& jukeboxes,
                FrameMessages& messages);

  /// Saves the unsaved changes now, and reports those that cannot be saved.
  void Keep();

 private:
  Tallow& tallow_;
  const JukeboxArea& jukeboxes_;
  FrameMessages& messages_;
};

}  // namespace tallow
