// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QLabel>

namespace tallow {

/// A label of one line whose text is elided in the middle when it does not fit. The whole text is
/// then the tool tip.
class ElidedLabel : public QLabel {
  Q_OBJECT

 public:
  explicit ElidedLabel(QWidget* parent);

  /// Sets the whole text; text() returns it.
  void ShowText(const QString& text);
  /// The text as it is shown.
  QString ShownText() const;

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void SetTip();
};

}  // namespace tallow
