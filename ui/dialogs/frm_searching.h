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

/// The notice that is shown while new songs are searched for from the main window, or other work takes long:
/// what is looked at, how many songs there are, and a button to cancel.
///
/// It has no window above it: the frame window is disabled meanwhile, and its children with it. The lines
/// are put on the screen no more often than a screen can show.
class frmSearching : public QWidget, public SearchProgress {
  Q_OBJECT

 public:
  /// \param cancel what the Cancel button does
  /// \param text   what is being done
  explicit frmSearching(std::function<void()> cancel = {},
                        const QString& text = QStringLiteral("Searching to add new songs  . . . "),
                        QWidget* parent = nullptr);

  /// Puts the window in the middle of the screen.
  void Load();
  /// Draws the window now, before work begins that does not yield.
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
  QElapsedTimer since_shown_;   ///< since the lines were put on the screen
  QElapsedTimer since_events_;  ///< since the windows had a moment
  QLabel* label_;
  QLabel* status_label_;
  QLabel* found_label_;
  QPushButton* cancel_button_;
};

}  // namespace tallow
