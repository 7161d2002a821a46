// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <string>

#include <QElapsedTimer>
#include <QWidget>

#include "app/search/search_progress.h"

class QLabel;
class QPushButton;

namespace tallow {

/// The progress window of a search for new songs that was started from the main window, and of
/// other long work: shows the current folder, the number of songs found, and a Cancel button.
///
/// The window has no parent window: the frame window and its children are disabled meanwhile. The
/// lines are repainted at a limited rate.
class frmSearching : public QWidget, public SearchProgress {
  Q_OBJECT

 public:
  /// \param cancel called by the Cancel button
  /// \param text   describes the work in progress
  explicit frmSearching(std::function<void()> cancel = {},
                        const QString& text = QStringLiteral("Searching to add new songs  . . . "),
                        QWidget* parent = nullptr);

  /// Moves the window to the centre of the screen.
  void Load();
  /// Draws the window now, before work that does not process events.
  void Redraw();

  bool IsLoaded() const override { return true; }
  void SetStatus(std::string_view text) override;
  void SetFound(std::string_view text) override;
  void Repaint() override;
  void Yield() override;
  void YieldAfterSong() override;
  void MayCancelAgain() override;
  void VisitFolder(std::string_view folder) override;

 protected:
  void closeEvent(QCloseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void Cancel();
  void ProcessEvents();

  std::function<void()> cancel_;
  std::string status_;
  std::string found_;
  QElapsedTimer since_shown_;   ///< time since the lines were last repainted
  QElapsedTimer since_events_;  ///< time since events were last processed
  QLabel* label_;
  QLabel* status_label_;
  QLabel* found_label_;
  QPushButton* cancel_button_;
};

}  // namespace tallow
