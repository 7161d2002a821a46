// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>
#include <string_view>

#include <QPointer>
#include <QWidget>

#include "app/long_work.h"

namespace tallow {

class JukeboxArea;
class Tallow;
class UnsavedKeeper;

/// Disables the frame window while work runs, and restores the keyboard focus afterwards.
class BusyFrame {
 public:
  /// The parameters have to outlive this object.
  BusyFrame(QWidget& frame, Tallow& tallow, JukeboxArea& jukeboxes, UnsavedKeeper& unsaved);

  /// Disables the frame for a search, or enables it again. A disabled frame accepts neither clicks
  /// nor keys. Unsaved changes are saved before, because they are not saved during the search.
  void EnableFrame(bool enabled);

  /// Begins work that may take long, see LongWork.
  std::unique_ptr<LongWork> BeginWork(std::string_view text);

  /// Gives the keyboard focus to the active jukebox if no control has it.
  void FocusJukebox();

 private:
  void SetEnabled(bool enabled);

  QWidget& frame_;
  Tallow& tallow_;
  JukeboxArea& jukeboxes_;
  UnsavedKeeper& unsaved_;
  QPointer<QWidget> saved_focus_;  ///< the focus widget before the frame was disabled
};

}  // namespace tallow
