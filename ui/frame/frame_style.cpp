// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/frame/frame_style.h"

#include <QApplication>
#include <QPainter>

namespace tallow {
namespace {

/// Of the pictures that are made, in pixels: for scales of 100 and 200 %.
constexpr int kSizes[] = {10, 16, 20, 32};

}  // namespace

QIcon FrameStyle::standardIcon(StandardPixmap which, const QStyleOption* option,
                               const QWidget* widget) const {
  const QIcon icon = QProxyStyle::standardIcon(which, option, widget);
  const QColor text = QApplication::palette().color(QPalette::ButtonText);
  const bool is_of_window = which == SP_TitleBarMinButton || which == SP_TitleBarNormalButton ||
                            which == SP_TitleBarCloseButton;
  const bool is_dark =
      text.lightness() > QApplication::palette().color(QPalette::Button).lightness();
  if (!is_of_window || !is_dark) return icon;
  QIcon light;
  for (const int size : kSizes) {
    QPixmap picture = icon.pixmap(QSize(size, size), 1.0);
    QPainter painter(&picture);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(picture.rect(), text);
    painter.end();
    light.addPixmap(picture);
  }
  return light;
}

}  // namespace tallow
