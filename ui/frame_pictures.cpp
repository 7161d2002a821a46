// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/frame_pictures.h"

#include <QString>

namespace tallow {

QIcon FramePicture(const char* name) {
  const QString file = QStringLiteral(":/pictures/%1.svg").arg(QLatin1String(name));
  QIcon picture(file);
  // Or a selected one would be tinted with the colour of the selection, and hard to see on it.
  picture.addFile(file, QSize(), QIcon::Selected);
  return picture;
}

}  // namespace tallow
