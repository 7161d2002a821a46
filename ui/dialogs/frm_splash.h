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

/// The splash window: shows the progress of the searches at start-up and lets the user cancel them.
/// With an OK button it is the about box.
///
/// The lines are set for every song but repainted at a limited rate.
class frmSplash : public QDialog, public SearchProgress {
  Q_OBJECT

 public:
  /// \param cancel called by the Cancel button
  explicit frmSplash(std::function<void()> cancel, QWidget* parent = nullptr);

  /// Whether the window is the about box. Must be set before Load().
  bool ShowOKButton() const noexcept { return show_ok_button_; }
  void ShowOKButton(bool show) noexcept { show_ok_button_ = show; }

  /// Prepares the window: sets texts, buttons and pictures.
  void Load();

  /// Waits until the window is visible, at most half a second. For use before work that does not
  /// process events.
  void WaitUntilPainted();

  /// Shows the window in the middle of the screen, not modal, and waits until it is painted.
  void ShowForSearch();

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
  void SetUpLayout();
  bool IsDue() const;
  void ShowLines();

  std::function<void()> cancel_;
  bool show_ok_button_ = false;
  bool loaded_ = false;
  std::string status_;
  std::string found_;
  bool status_is_new_ = false;  ///< whether status_ has changed and is not on the screen yet
  bool painted_ = false;        ///< whether the window was painted since the last YieldAfterSong
  QElapsedTimer since_shown_;   ///< time since the lines were last updated

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
