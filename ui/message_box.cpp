// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/message_box.h"

#include <QMessageBox>

#include "ui/display_text.h"

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

}  // namespace

MessageAnswer ShowMessageBox(const Message& message, QWidget* parent) {
  QMessageBox box(IconOf(message.icon), DisplayText(message.title), DisplayMessage(message.text),
                  ButtonsOf(message.buttons), parent);
  box.setTextFormat(Qt::PlainText);
  if (message.buttons == MessageButtons::kYesNo) box.setEscapeButton(QMessageBox::No);
  switch (box.exec()) {
    case QMessageBox::Yes:
      return MessageAnswer::kYes;
    case QMessageBox::No:
      return MessageAnswer::kNo;
    case QMessageBox::Cancel:
      return MessageAnswer::kCancel;
    default:
      return MessageAnswer::kOk;
  }
}

}  // namespace tallow
