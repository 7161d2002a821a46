// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/frame_pictures.h"

#include <QString>

namespace tallow {

QIcon FramePicture(const char* name) {
  return QIcon(QStringLiteral(":/pictures/%1.svg").arg(QLatin1String(name)));
}

}  // namespace tallow
