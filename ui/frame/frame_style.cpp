// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/frame/frame_style.h"

#include <QApplication>
#include <QImage>
#include <QPainter>
#include <QStyleOptionTitleBar>

namespace tallow {
namespace {

/// Average lightness of the visible pixels of a picture, from 0 to 255.
int LightnessOf(const QImage& picture) {
  int sum = 0;
  int count = 0;
  for (int y = 0; y < picture.height(); ++y)
    for (int x = 0; x < picture.width(); ++x) {
      const QColor color = picture.pixelColor(x, y);
      sum += color.lightness() * color.alpha();
      count += color.alpha();
    }
  return count > 0 ? sum / count : 0;
}

/// Sizes of the icons that are made, in pixels: for scales of 100 and 200 %.
constexpr int kSizes[] = {10, 16, 20, 32};

bool IsDark(const QPalette& palette) {
  return palette.color(QPalette::ButtonText).lightness() >
         palette.color(QPalette::Button).lightness();
}

}  // namespace

QIcon FrameStyle::standardIcon(StandardPixmap which, const QStyleOption* option,
                               const QWidget* widget) const {
  QIcon icon = QProxyStyle::standardIcon(which, option, widget);
  const QColor text = QApplication::palette().color(QPalette::ButtonText);
  const bool is_of_window = which == SP_TitleBarMinButton || which == SP_TitleBarNormalButton ||
                            which == SP_TitleBarCloseButton;
  const bool is_dark = IsDark(QApplication::palette());
  constexpr int kMiddle = 128;
  if (!is_of_window || !is_dark ||
      LightnessOf(icon.pixmap(QSize(kSizes[0], kSizes[0]), 1.0).toImage()) >= kMiddle)
    return icon;
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

void FrameStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                                    QPainter* painter, const QWidget* widget) const {
  const auto* const bar = qstyleoption_cast<const QStyleOptionTitleBar*>(option);
  if (control != CC_TitleBar || bar == nullptr || !IsDark(bar->palette) ||
      (bar->titleBarState & State_Active) != 0)
    return QProxyStyle::drawComplexControl(control, option, painter, widget);
  // The title bar of an inactive window has black buttons, so it is drawn like that of an active
  // window, which has white buttons, but on grey.
  QStyleOptionTitleBar grey(*bar);
  grey.titleBarState |= State_Active;
  grey.state |= State_Active;
  grey.palette.setColor(QPalette::Highlight, bar->palette.color(QPalette::Button).lighter());
  QProxyStyle::drawComplexControl(control, &grey, painter, widget);
}

}  // namespace tallow
