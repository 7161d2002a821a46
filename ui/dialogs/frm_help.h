// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStringList>
#include <QWidget>

class QKeyEvent;
class QLabel;
class QLineEdit;
class QListWidget;
class QTextBrowser;

namespace tallow {

/// The help window: the pages of the manual, their list on the left, and a search over all of them. The
/// pages are part of the program.
class frmHelp : public QWidget {
  Q_OBJECT

 public:
  explicit frmHelp(QWidget* parent = nullptr);

  /// Opens a page.
  /// \param page its name without extension, "playing"; the first page for one that there is not
  void ShowPage(const QString& page);
  /// The page that is shown, by its name.
  QString Page() const;

  /// The pages by their names, in the order of the list.
  static QStringList Pages();

 protected:
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void Search(const QString& words);
  void MarkWords();
  void PageOpened();

  QLineEdit* search_;
  QLabel* nothing_found_;
  QListWidget* contents_;
  QTextBrowser* text_;
};

}  // namespace tallow
