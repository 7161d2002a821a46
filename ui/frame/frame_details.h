// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>

#include <QObject>
#include <QTimer>

#include "app/style_findings.h"
#include "details/details_filler.h"

class QLabel;
class QStatusBar;

namespace tallow {

class FrameMessages;
class StyleBar;
class Tallow;

/// Song details in the frame window: fills them in the background with their progress in the status
/// bar, and shows the bar that tells what the classic style leaves out.
class FrameDetails : public QObject {
  Q_OBJECT

 public:
  /// \param frame, bar, status, tallow, messages have to outlive this object
  /// \param focus_jukebox gives the keyboard focus to the active jukebox if no control has it
  /// \param style_chosen  called when the user has chosen a whole style
  /// \param polled        called after details that were read were taken
  FrameDetails(QWidget& frame, StyleBar& bar, QStatusBar& status, Tallow& tallow,
               FrameMessages& messages, std::function<void()> focus_jukebox,
               std::function<void()> style_chosen, std::function<void()> polled = {});
  /// Stops the filling.
  ~FrameDetails() override;

  /// Starts the filling, when the window is on screen.
  ///
  /// \param make_reader see LibraryDetails::Start
  void Start(DetailsFiller::MakeReader make_reader = {});

  /// Call after a scan, after a change of the style, and when songs came or went otherwise. Does
  /// nothing before Start.
  void Changed();

 private:
  void Poll();
  /// Tells of songs that could not be read, when the filling has ended.
  void TellUnreadable();
  void ShowProgress();
  void ShowBar();
  void HideBar();
  void UseModernStyle();
  void ShowDetails();
  void Decline();

  QWidget& frame_;
  StyleBar& bar_;
  Tallow& tallow_;
  FrameMessages& messages_;
  std::function<void()> focus_jukebox_;
  std::function<void()> style_chosen_;
  std::function<void()> polled_;
  QLabel* progress_;
  QTimer timer_;
  StyleCounter counter_;
  StyleHint hint_;
  UnreadableNotice unreadable_;
  bool was_reading_ = true;  ///< at the last Poll
};

}  // namespace tallow
