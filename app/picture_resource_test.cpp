// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/picture_resource.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QImageReader>
#include <QLabel>

namespace tallow {
namespace {

TEST(PictureResource, EveryPictureHasItsSizeAndFormat) {
  struct Expected {
    int number;
    qint64 bytes;
    const char* format;
  };
  for (const Expected& expected :
       {Expected{101, 1908, "jpeg"}, Expected{102, 5720, "jpeg"}, Expected{103, 92120, "gif"}}) {
    const QString path = QStringLiteral(":/Custom/%1").arg(expected.number);
    EXPECT_EQ(QFile(path).size(), expected.bytes);
    EXPECT_EQ(QImageReader(path).format(), expected.format);
  }
}

TEST(PictureResource, ThePictureIsShownAndItsFileIsGone) {
  QLabel label;
  LoadPictureFromResource(101, label, "jpg");
  EXPECT_FALSE(label.pixmap().isNull());
  EXPECT_EQ(QDir::temp().entryList({QStringLiteral("myfile.*")}).size(), 0);
}

TEST(PictureResource, APictureThatIsNotThereLeavesTheLabelEmpty) {
  QLabel label;
  LoadPictureFromResource(101, label, "jpg");
  LoadPictureFromResource(999, label, "jpg");
  EXPECT_TRUE(label.pixmap().isNull());
}

}  // namespace
}  // namespace tallow
