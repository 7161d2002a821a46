// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/support/picture_resource.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QImageReader>
#include <QLabel>

#include "util/path_text.h"

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
  // The temporary file was in a private folder below the folder for temporary files.
  QDirIterator left(QDir::tempPath(), {QStringLiteral("myfile.*")}, QDir::Files,
                    QDirIterator::Subdirectories);
  EXPECT_FALSE(left.hasNext()) << left.next().toStdString();
}

TEST(PictureResource, APictureThatCannotBeWrittenLeavesTheLabelEmpty) {
  // The variable that names the temporary folder on this system, set to a place where not even root
  // can create a file.
  const char* const variable = kSeparator == '/' ? "TMPDIR" : "TMP";
  const QByteArray before = qgetenv(variable);
  qputenv(variable, kSeparator == '/' ? "/proc" : "C:\\no such folder");
  QLabel label;
  LoadPictureFromResource(101, label, "jpg");
  EXPECT_TRUE(label.pixmap().isNull());
  if (before.isNull())
    qunsetenv(variable);
  else
    qputenv(variable, before);
}

TEST(PictureResource, AMissingPictureLeavesTheLabelEmpty) {
  QLabel label;
  LoadPictureFromResource(101, label, "jpg");
  LoadPictureFromResource(999, label, "jpg");
  EXPECT_TRUE(label.pixmap().isNull());
}

}  // namespace
}  // namespace tallow
