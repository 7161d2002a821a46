// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/frame/edit_in_text.h"

#include <QApplication>
#include <QClipboard>
#include <QLineEdit>

namespace tallow {

namespace {

QLineEdit* FieldWithFocus() { return qobject_cast<QLineEdit*>(QApplication::focusWidget()); }

}  // namespace

bool EditInText(TextEdit edit) {
  QLineEdit* const field = FieldWithFocus();
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

std::optional<bool> CanEditInText(TextEdit edit) {
  const QLineEdit* const field = FieldWithFocus();
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
