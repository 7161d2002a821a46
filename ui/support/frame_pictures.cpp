// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/support/frame_pictures.h"

#include <QDirIterator>
#include <QString>

namespace tallow {

QIcon FramePicture(const char* name) {
  // One file for every size, or one for each, see drawn_pictures.cmake.
  const QString one = QStringLiteral("%1.svg").arg(QLatin1String(name));
  const QString many = QStringLiteral("%1-??.png").arg(QLatin1String(name));
  QIcon picture;
  for (QDirIterator files(QStringLiteral(":/pictures"), {one, many}, QDir::Files);
       files.hasNext();) {
    const QString file = files.next();
    picture.addFile(file);
    // Or a selected one would be tinted with the colour of the selection, and hard to see on it.
    picture.addFile(file, QSize(), QIcon::Selected);
  }
  return picture;
}

}  // namespace tallow
