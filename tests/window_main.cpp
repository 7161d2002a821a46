// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include <QApplication>
#include <QDir>
#include <QFontDatabase>
#include <QSettings>
#include <QTemporaryDir>

/// The display in memory has no letters on Windows; a folder of them is given there.
void UseTestFonts() {
  const QDir folder(qEnvironmentVariable("TALLOW_TEST_FONTS", QStringLiteral(":/none")));
  for (const QString& file : folder.entryList({QStringLiteral("*.ttf")}, QDir::Files))
    QFontDatabase::addApplicationFont(folder.filePath(file));
  if (QFontDatabase::hasFamily(QStringLiteral("DejaVu Sans")) && folder.exists())
    QApplication::setFont(QFont(QStringLiteral("DejaVu Sans"), 9));
}

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  // The tests open many windows; a display in memory shows them to nobody.
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  // The user's own options are not touched.
  const QTemporaryDir configuration;
  QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, configuration.path());
  const QApplication application(argc, argv);
  UseTestFonts();
  QApplication::setOrganizationName(QStringLiteral("Tallow"));
  QApplication::setApplicationName(QStringLiteral("tallow-tests"));
  QApplication::setQuitOnLastWindowClosed(false);
  // A tip at start waits for its user.
  QSettings().setValue(QStringLiteral("Options/Show Tips at Startup"), 0);
  const int code = RUN_ALL_TESTS();
  // Where options are no file, the path of above says nothing.
  QSettings().clear();
  return code;
}
