// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <vector>

#include <QString>
#include <QStringList>

#include "util/message.h"

class QWidget;

namespace tallow {

class StatusBar;

/// Messages of the frame window: message boxes and the status bar.
class FrameMessages {
 public:
  /// \param frame, bar have to outlive this object
  /// \param show shows message boxes; if empty, real message boxes over the frame are used
  FrameMessages(QWidget& frame, StatusBar& bar, ShowMessage show);

  /// Shows a message box.
  MessageAnswer Show(const Message& message) const { return show_(message); }
  /// The function that Show() calls, for windows that show their own message boxes.
  const ShowMessage& Shower() const noexcept { return show_; }

  /// Shows a notice in the status bar: the first line as its text, all lines as its tool tip.
  void Notice(const std::vector<std::string>& lines);
  void NoticeTexts(const QStringList& lines);
  /// Like Notice, for what the user has not caused: the lines come before those of a notice that is
  /// still shown, which stay in the tool tip.
  void AddNotice(std::vector<std::string> lines);
  /// Shows a text in the status bar, without a tool tip; the empty text clears the bar.
  /// \param milliseconds how long the text is shown; 0 until the next text
  void ShowStatus(const std::string& text, int milliseconds = 0);
  /// The text of the status bar.
  std::string Status() const;
  /// Clears the text of the status bar.
  void ClearStatus();

 private:
  StatusBar& bar_;
  ShowMessage show_;
  std::vector<std::string> lines_;  ///< of the last notice
  QString shown_;                   ///< its message in the bar
};

}  // namespace tallow
