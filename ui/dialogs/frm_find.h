// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>

#include <QDialog>

#include "jukebox/song_search.h"
#include "util/message.h"

class QLineEdit;

namespace tallow {

class clsMain;
class frmMain;

/// The find dialog. Each click on Find selects the next song of the active jukebox whose file name
/// contains the text.
class frmFind : public QDialog {
  Q_OBJECT

 public:
  /// \param active  returns the active jukebox window; null when there is none
  /// \param library must outlive the dialog
  frmFind(std::function<frmMain*()> active, const clsMain& library, ShowMessage show,
          QWidget* parent = nullptr);

  /// Returns whether a song has been found since Begin().
  bool HasFound() const { return has_found_; }

  /// Prepares the dialog for a new search, with the text of the last search selected.
  void Begin();

  bool LookingForTheLastNode() const { return search_.LookingForTheLastNode(); }
  bool FirstRun() const { return search_.FirstRun(); }
  const std::string& LastLookedFor() const { return search_.LastLookedFor(); }

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void FindNext();
  void MoveAwayFrom(const QRect& row);

  std::function<frmMain*()> active_;
  const clsMain& library_;
  ShowMessage show_;
  SongSearch search_;
  bool has_found_ = false;
  QLineEdit* text_;
};

}  // namespace tallow
