// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/frame/edit_in_text.h"

#include <QApplication>
#include <QLineEdit>

namespace tallow {

bool EditInText(TextEdit edit) {
  auto* const field = qobject_cast<QLineEdit*>(QApplication::focusWidget());
  if (field == nullptr) return false;
  switch (edit) {
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

}  // namespace tallow
