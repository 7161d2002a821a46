// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/frame/frame_messages.h"

#include <algorithm>
#include <utility>

#include <QApplication>
#include <QCoreApplication>

#include "ui/frame/status_bar.h"
#include "ui/support/display_text.h"
#include "ui/support/message_box.h"

namespace tallow {
namespace {

/// Maximum lines of a tool tip; more do not fit a screen.
constexpr std::size_t kMaxTipLines = 20;

ShowMessage MessageBoxesOver(QWidget& frame) {
  return [&frame](const Message& message) {
    // The parent is the modal dialog that the message comes from, if there is one.
    QWidget* const modal = QApplication::activeModalWidget();
    if (modal != nullptr) return ShowMessageBox(message, modal);
    return ShowMessageBox(message, frame.isVisible() ? &frame : nullptr);
  };
}

}  // namespace

FrameMessages::FrameMessages(QWidget& frame, StatusBar& bar, ShowMessage show)
    : bar_(bar), show_(show ? std::move(show) : MessageBoxesOver(frame)) {}

void FrameMessages::Notice(const std::vector<std::string>& lines) {
  if (lines.empty()) return;
  QString end;
  if (lines.size() > 1)
    end = QCoreApplication::translate("FrameMessages", "  (and %n more)", nullptr,
                                      static_cast<int>(lines.size() - 1));
  QStringList tip;
  for (std::size_t k = 0; k < lines.size() && k < kMaxTipLines; ++k)
    tip.append(DisplayText(lines[k]));
  if (lines.size() > kMaxTipLines) tip.append(QStringLiteral(". . ."));
  bar_.ShowMessage(DisplayText(lines.front()), end);
  bar_.setToolTip(tip.join(QLatin1Char('\n')));
  lines_ = lines;
  shown_ = bar_.currentMessage();
}

void FrameMessages::NoticeTexts(const QStringList& lines) {
  std::vector<std::string> texts;
  for (const QString& line : lines) texts.push_back(line.toStdString());
  Notice(texts);
}

void FrameMessages::AddNotice(std::vector<std::string> lines) {
  if (lines.empty()) return;
  if (!shown_.isEmpty() && bar_.currentMessage() == shown_)
    for (const std::string& line : lines_)
      if (std::find(lines.begin(), lines.end(), line) == lines.end()) lines.push_back(line);
  Notice(lines);
}

void FrameMessages::ShowStatus(const std::string& text, int milliseconds) {
  bar_.showMessage(DisplayText(text), milliseconds);
  bar_.setToolTip({});
}

std::string FrameMessages::Status() const { return bar_.currentMessage().toStdString(); }

void FrameMessages::ClearStatus() { bar_.clearMessage(); }

}  // namespace tallow
