// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/frame/frame_messages.h"

#include <utility>

#include <QApplication>
#include <QCoreApplication>
#include <QStatusBar>
#include <QStringList>

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

FrameMessages::FrameMessages(QWidget& frame, QStatusBar& bar, ShowMessage show)
    : bar_(bar), show_(show ? std::move(show) : MessageBoxesOver(frame)) {}

void FrameMessages::Notice(const std::vector<std::string>& lines) {
  if (lines.empty()) return;
  QString text = DisplayText(lines.front());
  if (lines.size() > 1)
    text += QCoreApplication::translate("FrameMessages", "  (and %n more)", nullptr,
                                        static_cast<int>(lines.size() - 1));
  QStringList tip;
  for (std::size_t k = 0; k < lines.size() && k < kMaxTipLines; ++k)
    tip.append(DisplayText(lines[k]));
  if (lines.size() > kMaxTipLines) tip.append(QStringLiteral(". . ."));
  bar_.showMessage(text);
  bar_.setToolTip(tip.join(QLatin1Char('\n')));
}

void FrameMessages::ShowStatus(const std::string& text, int milliseconds) {
  bar_.showMessage(DisplayText(text), milliseconds);
  bar_.setToolTip({});
}

void FrameMessages::ClearStatus() { bar_.clearMessage(); }

}  // namespace tallow
