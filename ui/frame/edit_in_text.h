// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>

#include <QObject>
#include <QPointer>

class QLineEdit;

namespace tallow {

enum class TextEdit { kUndo, kRedo, kCut, kCopy, kPaste, kDelete };

/// The text field that has the keyboard focus: the editor of a folder's text, or a text box. The
/// menu bar takes the focus while its menus are used with the keyboard; the field that had it
/// before still counts, and keeps its selection.
class TextFocus : public QObject {
  Q_OBJECT

 public:
  TextFocus();

  /// Null when no text field has the focus.
  QLineEdit* Field() const;

 private:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void FocusChanged(QWidget* before, QWidget* now);

  QPointer<QWidget> before_menus_;  ///< had the focus before the menu bar
  /// Selection of the text field that has lost the focus last; the start is -1 for none.
  int selection_start_ = -1;
  int selection_length_ = 0;
};

/// Runs an edit command in a text field. Callers try this first; otherwise the command would act on
/// the tree or the list behind the field.
///
/// \param field null for none
/// \returns whether there is a field
bool EditInText(QLineEdit* field, TextEdit edit);

/// Whether an edit command would change a text field, or copy from it; no value without a field.
std::optional<bool> CanEditInText(const QLineEdit* field, TextEdit edit);

}  // namespace tallow
