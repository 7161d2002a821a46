// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/frame/edit_in_text.h"

#include <QApplication>
#include <QClipboard>
#include <QEvent>
#include <QLineEdit>
#include <QMenuBar>

namespace tallow {

TextFocus::TextFocus() {
  connect(qApp, &QApplication::focusChanged, this, &TextFocus::FocusChanged);
}

void TextFocus::FocusChanged(QWidget* before, QWidget* now) {
  if (qobject_cast<const QLineEdit*>(now) != nullptr) now->installEventFilter(this);
  if (qobject_cast<const QMenuBar*>(now) == nullptr) return;
  before_menus_ = before;
  auto* const field = qobject_cast<QLineEdit*>(before);
  if (field != nullptr && selection_start_ >= 0)
    field->setSelection(selection_start_, selection_length_);
}

bool TextFocus::eventFilter(QObject* watched, QEvent* event) {
  // A field loses its selection with the focus.
  if (event->type() == QEvent::FocusOut) {
    const auto* const field = qobject_cast<const QLineEdit*>(watched);
    selection_start_ = field != nullptr ? field->selectionStart() : -1;
    selection_length_ = field != nullptr ? static_cast<int>(field->selectedText().size()) : 0;
  }
  return QObject::eventFilter(watched, event);
}

QLineEdit* TextFocus::Field() const {
  QWidget* focus = QApplication::focusWidget();
  if (qobject_cast<const QMenuBar*>(focus) != nullptr) focus = before_menus_;
  return qobject_cast<QLineEdit*>(focus);
}

bool EditInText(QLineEdit* field, TextEdit edit) {
  if (field == nullptr) return false;
  switch (edit) {
    case TextEdit::kUndo:
      field->undo();
      break;
    case TextEdit::kRedo:
      field->redo();
      break;
    case TextEdit::kCut:
      field->cut();
      break;
    case TextEdit::kCopy:
      field->copy();
      break;
    case TextEdit::kPaste:
      field->paste();
      break;
    case TextEdit::kDelete:
      field->del();
      break;
  }
  return true;
}

std::optional<bool> CanEditInText(const QLineEdit* field, TextEdit edit) {
  if (field == nullptr) return std::nullopt;
  switch (edit) {
    case TextEdit::kUndo:
      return field->isUndoAvailable();
    case TextEdit::kRedo:
      return field->isRedoAvailable();
    case TextEdit::kPaste:
      return !field->isReadOnly() && !QApplication::clipboard()->text().isEmpty();
    case TextEdit::kDelete:
      return !field->isReadOnly() &&
             (field->hasSelectedText() || field->cursorPosition() < field->text().size());
    default:
      return field->hasSelectedText();
  }
}

}  // namespace tallow
