// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/support/frame_pictures.h"

#include <QDirIterator>
#include <QString>

namespace tallow {

QIcon FramePicture(const char* name) {
  // Either one SVG file for all sizes or one PNG file per size, see drawn_pictures.cmake.
  const QString one = QStringLiteral("%1.svg").arg(QLatin1String(name));
  const QString many = QStringLiteral("%1-??.png").arg(QLatin1String(name));
  QIcon picture;
  for (QDirIterator files(QStringLiteral(":/pictures"), {one, many}, QDir::Files);
       files.hasNext();) {
    const QString file = files.next();
    picture.addFile(file);
    // Without an icon for the Selected mode, Qt tints the icon of a selected row with the selection
    // colour, which makes it hard to see.
    picture.addFile(file, QSize(), QIcon::Selected);
  }
  return picture;
}

}  // namespace tallow
