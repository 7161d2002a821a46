// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QFrame>

class QBoxLayout;
class QLabel;
class QPushButton;

namespace tallow {

/// The bar above the jukebox windows that tells what the classic style leaves out. In a narrow
/// window, its buttons stand below its text.
///
/// Its buttons have keys and can be reached by Tab, but a click gives them no focus.
class StyleBar : public QFrame {
  Q_OBJECT

 public:
  explicit StyleBar(QWidget* parent);

  void SetText(const QString& text);
  /// Whether a button of the bar has the keyboard focus.
  bool HasFocus() const;

 signals:
  void UseModernStyle();
  void ShowDetails();
  void NotNow();

 protected:
  void resizeEvent(QResizeEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  QPushButton* AddButton(const QString& name, const QString& caption, const QString& description);
  void Arrange();

  QLabel* text_;
  QWidget* buttons_;
  QBoxLayout* layout_;
};

}  // namespace tallow
