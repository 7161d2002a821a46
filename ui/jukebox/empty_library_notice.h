// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QWidget>

class QAbstractScrollArea;
class QLabel;

namespace tallow {

/// Fills the empty list of a jukebox while the library has no songs: says so, and offers to choose
/// where songs are searched.
class EmptyLibraryNotice : public QWidget {
  Q_OBJECT

 public:
  /// \param list gets the notice as a child of its viewport
  explicit EmptyLibraryNotice(QAbstractScrollArea& list);

  /// Shows a text; an empty one hides the notice.
  void ShowText(const QString& text);

 signals:
  void WhereMyMusicIs();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  QLabel* text_;
};

}  // namespace tallow
