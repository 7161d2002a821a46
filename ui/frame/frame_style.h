// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QProxyStyle>

namespace tallow {

/// The desktop's style, whose buttons of inner windows can be seen on a dark desktop too: Qt's own pictures
/// of them are dark grey, whatever they are drawn on.
class FrameStyle : public QProxyStyle {
  Q_OBJECT

 public:
  QIcon standardIcon(StandardPixmap which, const QStyleOption* option,
                     const QWidget* widget) const override;
  void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                          QPainter* painter, const QWidget* widget) const override;
};

}  // namespace tallow
