// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QProxyStyle>

namespace tallow {

/// The desktop's style, with buttons of inner windows that are also visible on a dark desktop. Qt's
/// own button icons are dark grey on any background.
class FrameStyle : public QProxyStyle {
  Q_OBJECT

 public:
  QIcon standardIcon(StandardPixmap which, const QStyleOption* option,
                     const QWidget* widget) const override;
  void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                          QPainter* painter, const QWidget* widget) const override;
};

}  // namespace tallow
