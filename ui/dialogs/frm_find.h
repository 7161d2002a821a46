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

/// The find dialog: each press of its button goes to the next song of the active jukebox whose file name
/// holds the text.
class frmFind : public QDialog {
  Q_OBJECT

 public:
  /// \param active gives the active jukebox window; null for none
  /// \param library has to outlive the dialog
  frmFind(std::function<frmMain*()> active, const clsMain& library, ShowMessage show,
          QWidget* parent = nullptr);

  /// Whether a song was found since Begin().
  bool HasFound() const { return has_found_; }

  /// Makes the dialog ready to be shown: a new search, with the text of the last one selected.
  void Begin();

  bool LookingForTheLastNode() const { return search_.LookingForTheLastNode(); }
  bool FirstRun() const { return search_.FirstRun(); }
  const std::string& LastLookedFor() const { return search_.LastLookedFor(); }

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void FindNext();
  void StandAsideOf(const QRect& row);

  std::function<frmMain*()> active_;
  const clsMain& library_;
  ShowMessage show_;
  SongSearch search_;
  bool has_found_ = false;
  QLineEdit* text_;
};

}  // namespace tallow
