// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/player/bar_button.h"

#include <string>

#include "ui/support/frame_pictures.h"

namespace tallow {
namespace {

constexpr int kPictureSide = 24;

}  // namespace

BarButton::BarButton(const char* name, QWidget* parent) : QToolButton(parent) {
  setObjectName(QLatin1String(name));
  setAutoRaise(true);
  setFocusPolicy(Qt::TabFocus);
  setIconSize(QSize(kPictureSide, kPictureSide));
}

void BarButton::Show(std::string_view picture, const QString& text) {
  if (picture != picture_) setIcon(FramePicture(std::string(picture).c_str()));
  picture_ = picture;
  if (toolTip() != text) setToolTip(text);
  if (accessibleName() != text) setAccessibleName(text);
}

}  // namespace tallow
