// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/support/picture_resource.h"

#include <gtest/gtest.h>
#include <string>

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QImageReader>
#include <QLabel>

#include "tests/temp_folder.h"
#include "util/path_text.h"

namespace tallow {
namespace {

/// Sets the folder for temporary files, until it is destroyed.
class TemporaryFilesIn {
 public:
  explicit TemporaryFilesIn(const std::string& folder) {
    qputenv(variable_, QByteArray::fromStdString(folder));
  }
  TemporaryFilesIn(const TemporaryFilesIn&) = delete;
  TemporaryFilesIn& operator=(const TemporaryFilesIn&) = delete;
  ~TemporaryFilesIn() {
    if (before_.isNull())
      qunsetenv(variable_);
    else
      qputenv(variable_, before_);
  }

 private:
  /// The variable that names the folder on this system.
  const char* const variable_ = kSeparator == '/' ? "TMPDIR" : "TMP";
  const QByteArray before_ = qgetenv(variable_);
};

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
  const TempFolder folder;
  const TemporaryFilesIn temporary(folder.path());
  QLabel label;
  LoadPictureFromResource(101, label, "jpg");
  EXPECT_FALSE(label.pixmap().isNull());
  // The temporary file was in a private folder below the folder for temporary files.
  QDirIterator left(QDir::tempPath(), QDir::AllEntries | QDir::NoDotAndDotDot,
                    QDirIterator::Subdirectories);
  EXPECT_EQ(QDir(QDir::tempPath()), QDir(QString::fromStdString(folder.path())));
  EXPECT_FALSE(left.hasNext()) << left.next().toStdString();
}

TEST(PictureResource, APictureThatCannotBeWrittenLeavesTheLabelEmpty) {
  // A place where not even root can create a file.
  const TemporaryFilesIn temporary(kSeparator == '/' ? "/proc" : "C:\\no such folder");
  QLabel label;
  LoadPictureFromResource(101, label, "jpg");
  EXPECT_TRUE(label.pixmap().isNull());
}

TEST(PictureResource, AMissingPictureLeavesTheLabelEmpty) {
  QLabel label;
  LoadPictureFromResource(101, label, "jpg");
  LoadPictureFromResource(999, label, "jpg");
  EXPECT_TRUE(label.pixmap().isNull());
}

}  // namespace
}  // namespace tallow
