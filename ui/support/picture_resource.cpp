// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/support/picture_resource.h"

#include <QFile>
#include <QLabel>
#include <QPixmap>
#include <QTemporaryDir>

namespace tallow {

void LoadPictureFromResource(int number, QLabel& image, const char* extension) {
  // A private temporary folder: it holds no other "myfile", and no other user can place a link
  // there.
  const QTemporaryDir folder;
  QFile resource(QStringLiteral(":/Custom/%1").arg(number));
  QFile file(folder.filePath(QStringLiteral("myfile.") + QString::fromLatin1(extension)));
  image.setPixmap({});
  if (!folder.isValid() || !resource.open(QIODevice::ReadOnly) || !file.open(QIODevice::WriteOnly))
    return;
  const QByteArray bytes = resource.readAll();
  const bool written = file.write(bytes) == bytes.size();
  file.close();
  QPixmap picture;
  if (written && picture.load(file.fileName())) image.setPixmap(picture);
  file.remove();
}

}  // namespace tallow
