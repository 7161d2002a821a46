// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include <QWidget>

#include "app/long_work.h"
#include "jukebox/jukebox.h"
#include "library/scan_report.h"
#include "ui/jukebox/pop_up_menus.h"
#include "util/message.h"

class QMenu;

namespace tallow {

class PVExplorer;
class Tallow;
struct BeforeCutEvent;

/// The window of one jukebox, a child of the frame window.
class frmMain : public QWidget {
  Q_OBJECT

 public:
  /// \param tallow has to outlive the window
  /// \param show   shows message boxes; without it they are real ones over this window
  explicit frmMain(Tallow& tallow, ShowMessage show = {}, QWidget* parent = nullptr);
  ~frmMain() override;

  tallow::Jukebox& Jukebox() noexcept { return jukebox_; }
  PVExplorer& PVExplorer1() noexcept { return *explorer_; }

  /// Which half had the keyboard focus last, see PopUpPane; 0 for none yet.
  int CurrentPaneWFocus() const noexcept { return pane_with_focus_; }

  /// Of a window that no longer fills the frame.
  QSize sizeHint() const override;

  /// Why the window was made without the picture that the settings want; empty for no reason.
  const std::string& PictureProblem() const noexcept { return picture_problem_; }

  /// Gives the keyboard to the half that had it last, or to the tree.
  void TakeFocus();

  /// Brings the tree into the state its jukebox asks for and, when no folder is on show yet, shows
  /// the first one.
  void ShowJukebox();

  /// The folder that a half's keys act on, and the frame's commands for that half; null for none, and for
  /// the root in the tree.
  /// \param pane see PopUpPane
  Folder* FolderOfPane(int pane) const;

  /// Runs a command of a pop-up menu.
  ///
  /// \param item the command's number, see TreeCommand and ListCommand
  /// \param pane whose menu, see PopUpPane
  /// \param node the folder concerned; null for none
  void ActOnPopUpClick(int item, int pane, Folder* node);

  /// Asks whether the changes are to be saved, and saves them. After a yes to closing the window closes without
  /// asking again.
  /// \returns whether it may close
  bool AskBeforeClosing();
  /// Whether closing asks: something would be lost.
  bool WillAsk() const;
  /// The window is not to be closed after all: it asks again.
  void KeepOpen() noexcept { may_close_ = false; }

  /// Sets what saves this window's jukebox when it is closed and the user wants that.
  /// \param save returns whether it is saved now
  void OnSaveBeforeClosing(std::function<bool()> save) { save_ = std::move(save); }
  /// Sets how taking many files is shown.
  void OnLongWork(BeginLongWork begin) { begin_work_ = std::move(begin); }

 signals:
  /// These songs, by their record numbers, are to be played in this order.
  void PlaySongs(std::vector<std::int32_t> songs);
  /// Something went wrong that the user should read.
  void Problem(const QStringList& lines);
  /// Songs came back under other numbers; this window's jukebox and the clipboard follow them already.
  void SongsReturned(const std::vector<tallow::ReturnedSong>& songs);
  /// A command of a pop-up menu is about to run, wherever it came from.
  void PopUpClick(int item, int pane);
  /// See PVExplorer::HalfStepped.
  void HalfStepped(tallow::EditHistory::Half half, bool back);
  /// The dialog of the background picture is wanted.
  void ChangeBackgroundPicture();

 protected:
  void closeEvent(QCloseEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  void ConnectExplorer();
  void ShowPicture();
  void ShowFolder(Folder& folder);
  void SortList();
  void ActOnTree(int item, Folder* node);
  void ActOnList(int item, Folder& node);
  void Play(const std::vector<std::int32_t>& songs, const QString& if_none);
  void RankSelectedSongs(int item);
  void DeleteFolder(Folder& node);
  void BeforeCut(BeforeCutEvent& event);
  void TakeFiles(const std::vector<std::string>& paths, Folder& to);
  void PlaySong(int row);
  bool MayClose();
  QSize WholeSize() const;

  Tallow& tallow_;
  ShowMessage show_;
  tallow::Jukebox jukebox_;
  PVExplorer* explorer_;
  QMenu* list_menu_;
  QMenu* tree_menu_;
  std::uint32_t menu_folder_ =
      0;                    ///< key of the folder that the tree's menu was opened on; 0 for none
  bool may_close_ = false;  ///< the user was asked already
  int pane_with_focus_ = 0;
  std::function<bool()> save_;
  std::string picture_problem_;
  BeginLongWork begin_work_;
};

}  // namespace tallow
