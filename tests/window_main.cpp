// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include <QApplication>
#include <QDir>
#include <QFontDatabase>
#include <QSettings>
#include <QTemporaryDir>

/// The offscreen platform has no fonts on Windows; TALLOW_TEST_FONTS names a folder of fonts.
void UseTestFonts() {
  const QDir folder(qEnvironmentVariable("TALLOW_TEST_FONTS", QStringLiteral(":/none")));
  for (const QString& file : folder.entryList({QStringLiteral("*.ttf")}, QDir::Files))
    QFontDatabase::addApplicationFont(folder.filePath(file));
  if (QFontDatabase::hasFamily(QStringLiteral("DejaVu Sans")) && folder.exists())
    QApplication::setFont(QFont(QStringLiteral("DejaVu Sans"), 9));
}

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  // Tests run on the offscreen platform, so that no windows appear on the screen.
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  // A temporary configuration folder protects the user's own options.
  const QTemporaryDir configuration;
  QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, configuration.path());
  const QApplication application(argc, argv);
  UseTestFonts();
  QApplication::setOrganizationName(QStringLiteral("Tallow"));
  QApplication::setApplicationName(QStringLiteral("tallow-tests"));
  QApplication::setQuitOnLastWindowClosed(false);
  // The tip window at start would wait for the user.
  QSettings().setValue(QStringLiteral("Options/Show Tips at Startup"), 0);
  const int code = RUN_ALL_TESTS();
  // On Windows options are in the registry, where setPath has no effect.
  QSettings().clear();
  return code;
}
