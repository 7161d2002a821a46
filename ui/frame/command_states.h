// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QObject>

#include "ui/frame/frame_commands.h"

class QAction;
class QMenuBar;
class QToolBar;

namespace tallow {

class JukeboxArea;
class JukeboxClipboard;
class TextFocus;
class frmMain;

/// Disables the items of the frame window's menus, and the buttons of its toolbar, that could do
/// nothing and would say nothing. An item that says why it cannot act stays enabled.
///
/// The items of a menu are disabled only while it is open: a disabled item would also block its key
/// until the state is read again.
class CommandStates : public QObject {
  Q_OBJECT

 public:
  /// \param jukeboxes, clipboard, text_focus, menus, toolbar have to outlive this object
  CommandStates(const JukeboxArea& jukeboxes, const JukeboxClipboard& clipboard,
                const TextFocus& text_focus, QMenuBar& menus, QToolBar& toolbar);

  /// Reads the states of the buttons again each time a jukebox window shows another folder, or
  /// none.
  void Follow(frmMain& window);

  /// Whether a command would do something, or say why not.
  bool CouldAct(FrameCommand command) const;

 private:
  void MenuOpens(const QList<QAction*>& items) const;
  void NameStep(QAction& item, FrameCommand command) const;
  void UpdateToolbar() const;
  bool CouldEdit(FrameCommand command) const;
  bool HasWindow(bool minimized) const;

  const JukeboxArea& jukeboxes_;
  const JukeboxClipboard& clipboard_;
  const TextFocus& text_focus_;
  QToolBar& toolbar_;
};

}  // namespace tallow
