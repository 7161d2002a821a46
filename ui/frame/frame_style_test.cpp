// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/frame/frame_style.h"

#include <algorithm>
#include <gtest/gtest.h>

#include <QApplication>
#include <QImage>
#include <QPainter>
#include <QPalette>
#include <QStyleFactory>
#include <QStyleOptionTitleBar>

namespace tallow {
namespace {

/// Average lightness of the visible pixels of an icon, from 0 to 255.
int LightnessOf(const QIcon& icon) {
  const QImage image = icon.pixmap(QSize(16, 16), 1.0).toImage();
  int sum = 0;
  int count = 0;
  for (int y = 0; y < image.height(); ++y)
    for (int x = 0; x < image.width(); ++x) {
      const QColor color = image.pixelColor(x, y);
      if (color.alpha() < 128) continue;
      sum += color.lightness();
      ++count;
    }
  return count > 0 ? sum / count : -1;
}

TEST(FrameStyle, TheButtonsOfInnerWindowsAreVisibleOnLightAndDark) {
  const QPalette before = QApplication::palette();
  const FrameStyle style;
  for (const QStyle::StandardPixmap which :
       {QStyle::SP_TitleBarMinButton, QStyle::SP_TitleBarNormalButton,
        QStyle::SP_TitleBarCloseButton}) {
    QApplication::setPalette(QPalette(QColor(0xF0, 0xF0, 0xF0)));
    const int on_light = LightnessOf(style.standardIcon(which, nullptr, nullptr));
    QApplication::setPalette(QPalette(QColor(0x20, 0x20, 0x20)));
    const int on_dark = LightnessOf(style.standardIcon(which, nullptr, nullptr));
    EXPECT_GE(on_light, 0);
    EXPECT_LT(on_light, 140);
    EXPECT_GT(on_dark, 200);
  }
  QApplication::setPalette(before);
}

TEST(FrameStyle, TheButtonsOfAWindowInTheBackgroundAreVisibleOnDark) {
  FrameStyle style;
  style.setBaseStyle(QStyleFactory::create(QStringLiteral("Fusion")));
  QStyleOptionTitleBar bar;
  bar.palette = QPalette(QColor(0x20, 0x20, 0x20));
  bar.rect = QRect(0, 0, 200, 24);
  bar.titleBarFlags = Qt::Window | Qt::WindowCloseButtonHint | Qt::WindowSystemMenuHint;
  bar.subControls = QStyle::SC_TitleBarCloseButton;
  QImage image(bar.rect.size(), QImage::Format_ARGB32);
  image.fill(Qt::black);
  QPainter painter(&image);
  style.drawComplexControl(QStyle::CC_TitleBar, &bar, &painter, nullptr);
  painter.end();
  const QRect button =
      style.subControlRect(QStyle::CC_TitleBar, &bar, QStyle::SC_TitleBarCloseButton, nullptr);
  ASSERT_FALSE(button.isEmpty());
  int lightest = 0;
  for (int y = button.top(); y <= button.bottom(); ++y)
    for (int x = button.left(); x <= button.right(); ++x)
      lightest = std::max(lightest, image.pixelColor(x, y).lightness());
  EXPECT_GT(lightest, 200);
}

}  // namespace
}  // namespace tallow
