// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QLabel>

class QAbstractScrollArea;

namespace tallow {

/// A text in the middle of an empty list, which says what the folder is for. The mouse acts on the
/// list below it.
class EmptyFolderHint : public QLabel {
  Q_OBJECT

 public:
  /// \param list gets the hint as a child of its viewport
  explicit EmptyFolderHint(QAbstractScrollArea& list);

  /// Shows a text; an empty one hides the hint.
  void ShowText(const QString& text);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void Fill();
};

}  // namespace tallow
