// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/frame/edit_in_text.h"
#include "ui/frame/frame_commands.h"
#include "ui/jukebox/pop_up_menus.h"

class QWidget;

namespace tallow {

class FrameMessages;
class JukeboxArea;
class Tallow;
class frmFind;
class frmMain;

/// The frame window's commands on the folders and songs of the active jukebox. When no jukebox is
/// open, a command only reports that in the status bar.
class ActiveJukeboxCommands {
 public:
  /// The parameters have to outlive this object.
  ActiveJukeboxCommands(QWidget& frame, Tallow& tallow, JukeboxArea& jukeboxes,
                        FrameMessages& messages, const TextFocus& text_focus)
      : frame_(frame),
        tallow_(tallow),
        jukeboxes_(jukeboxes),
        messages_(messages),
        text_focus_(text_focus) {}

  /// Whether a jukebox is on screen. Reports in the status bar when no jukebox is open.
  bool HasJukebox();

  /// Runs a command on the folders and songs of the active jukebox.
  /// \returns false if the command is another one
  bool Run(FrameCommand command);
  /// Runs a command of a pop-up menu on the selected folder, or on the folder of the list.
  void Run(TreeCommand command);
  void Run(ListCommand command);
  /// Runs an edit command: in the text field that has the keyboard focus, if there is one, else in
  /// the tree or the list, whichever had the focus last.
  void Edit(TextEdit of_text, TreeCommand of_tree, ListCommand of_list);
  /// Undoes or redoes a step, in the text field that has the keyboard focus, if there is one.
  void Undo();
  void Redo();
  /// Opens the dialog that finds songs, and moves the keyboard focus to the song that was found.
  void Find();

 private:
  /// Like JukeboxArea::ActiveWindow(), but reports in the status bar when there is none.
  frmMain* ActiveWindow();

  QWidget& frame_;
  Tallow& tallow_;
  JukeboxArea& jukeboxes_;
  FrameMessages& messages_;
  const TextFocus& text_focus_;
  frmFind* find_ = nullptr;  ///< a child of the frame, created when first shown
};

}  // namespace tallow
