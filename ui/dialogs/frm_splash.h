// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <string>

#include <QDialog>
#include <QElapsedTimer>

#include "app/search/search_progress.h"

class QLabel;
class QPushButton;

namespace tallow {

/// The splash window: shows at start-up how far the searches are and lets the user cancel them.
/// With an OK button it is the about box.
///
/// The lines are set for every song, but put on the screen no more often than a screen can show.
class frmSplash : public QDialog, public SearchProgress {
  Q_OBJECT

 public:
  /// \param cancel what the Cancel button does
  explicit frmSplash(std::function<void()> cancel, QWidget* parent = nullptr);

  /// Whether the window is an about box. To be set before Load.
  bool ShowOKButton() const noexcept { return show_ok_button_; }
  void ShowOKButton(bool show) noexcept { show_ok_button_ = show; }

  /// Sets the window up for its use: texts, buttons, pictures.
  void Load();

  /// Lets the window come onto the screen before work begins that does not yield; for half a second at
  /// most.
  void WaitUntilPainted();

  void ShowCancelButton(bool visible);
  void ShowFoundLine(bool visible);

  bool IsLoaded() const override { return loaded_; }
  void SetStatus(std::string_view text) override;
  void SetFound(std::string_view text) override;
  void Repaint() override;
  void Yield() override;
  void YieldAfterSong() override;
  void VisitFolder(std::string_view folder) override;

  void done(int result) override;
  void reject() override;

 private:
  bool IsDue() const;
  void ShowLines();

  std::function<void()> cancel_;
  bool show_ok_button_ = false;
  bool loaded_ = false;
  std::string status_;
  std::string found_;
  bool status_is_new_ = false;  ///< and not on the screen yet
  bool painted_ = false;        ///< since the last YieldAfterSong
  QElapsedTimer since_shown_;   ///< since the lines were last put on the screen

  QLabel* label_;
  QLabel* version_;
  QLabel* status_label_;
  QLabel* found_label_;
  QLabel* website_;
  QLabel* copyright_;
  QLabel* heart_;
  QLabel* mom_;
  QLabel* man_;
  QPushButton* ok_;
  QPushButton* cancel_button_;
};

}  // namespace tallow
