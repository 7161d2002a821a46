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

/// The help window: the list of the manual's pages on the left, the current page on the right, and
/// a search over all pages. The pages are built into the program.
class frmHelp : public QWidget {
  Q_OBJECT

 public:
  explicit frmHelp(QWidget* parent = nullptr);

  /// Opens a page.
  /// \param page name of the page without extension, such as "playing"; an unknown name opens the
  /// first page
  void ShowPage(const QString& page);
  /// The name of the current page.
  QString Page() const;

  /// The names of all pages, in the order of the list.
  static QStringList Pages();

 protected:
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void SetUpLayout();
  void Search(const QString& words);
  void MarkWords();
  void PageOpened();

  QLineEdit* search_;
  QLabel* nothing_found_;
  QListWidget* contents_;
  QTextBrowser* text_;
};

}  // namespace tallow
