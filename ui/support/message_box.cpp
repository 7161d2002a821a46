// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/support/message_box.h"

#include <algorithm>

#include <QCloseEvent>
#include <QKeyEvent>
#include <QKeySequence>
#include <QMessageBox>
#include <QPushButton>

#include "ui/support/display_text.h"
#include "ui/support/help_page.h"

namespace tallow {
namespace {

QMessageBox::Icon IconOf(MessageIcon icon) {
  switch (icon) {
    case MessageIcon::kInformation:
      return QMessageBox::Information;
    case MessageIcon::kQuestion:
      return QMessageBox::Question;
    case MessageIcon::kCritical:
      return QMessageBox::Critical;
    case MessageIcon::kNone:
      break;
  }
  return QMessageBox::NoIcon;
}

QMessageBox::StandardButtons ButtonsOf(MessageButtons buttons) {
  switch (buttons) {
    case MessageButtons::kYesNo:
      return QMessageBox::Yes | QMessageBox::No;
    case MessageButtons::kYesNoCancel:
      return QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel;
    case MessageButtons::kOk:
      break;
  }
  return QMessageBox::Ok;
}

/// A message box that Esc and the close button close with the result NoButton.
class DismissibleBox : public QMessageBox {
 public:
  using QMessageBox::QMessageBox;

 protected:
  void keyPressEvent(QKeyEvent* event) override {
    if (event->matches(QKeySequence::Cancel))
      done(NoButton);
    else
      QMessageBox::keyPressEvent(event);
  }
  void closeEvent(QCloseEvent* event) override {
    done(NoButton);
    event->accept();
  }
};

MessageAnswer Run(QMessageBox& box) {
  box.setTextFormat(Qt::PlainText);
  box.setProperty(kHelpPage, QStringLiteral("trouble"));
  switch (box.exec()) {
    case QMessageBox::Yes:
      return MessageAnswer::kYes;
    case QMessageBox::No:
      return MessageAnswer::kNo;
    case QMessageBox::Cancel:
    case QMessageBox::NoButton:
      return MessageAnswer::kCancel;
    default:
      return MessageAnswer::kOk;
  }
}

}  // namespace

MessageAnswer ShowMessageBox(const Message& message, QWidget* parent) {
  const QMessageBox::Icon icon = IconOf(message.icon);
  const QString title = DisplayText(message.title);
  const QString text = DisplayMessage(message.text);
  const QMessageBox::StandardButtons buttons = ButtonsOf(message.buttons);
  if (message.can_be_dismissed) {
    DismissibleBox box(icon, title, text, buttons, parent);
    return Run(box);
  }
  QMessageBox box(icon, title, text, buttons, parent);
  if (message.buttons == MessageButtons::kYesNo) box.setEscapeButton(QMessageBox::No);
  return Run(box);
}

std::optional<std::size_t> ChooseInMessageBox(const std::string& text,
                                              const std::vector<std::string>& choices,
                                              QWidget* parent) {
  DismissibleBox box(QMessageBox::Question, DisplayText(std::string(kOwnTitle)),
                     DisplayMessage(text), QMessageBox::NoButton, parent);
  box.setTextFormat(Qt::PlainText);
  box.setProperty(kHelpPage, QStringLiteral("trouble"));
  std::vector<QPushButton*> buttons;
  // All buttons have the same role, because desktops reorder buttons of different roles.
  for (const std::string& choice : choices)
    buttons.push_back(box.addButton(DisplayText(choice), QMessageBox::ActionRole));
  box.setDefaultButton(buttons.front());
  box.exec();
  const auto chosen = std::find(buttons.begin(), buttons.end(), box.clickedButton());
  if (chosen == buttons.end()) return std::nullopt;
  return static_cast<std::size_t>(chosen - buttons.begin());
}

}  // namespace tallow
