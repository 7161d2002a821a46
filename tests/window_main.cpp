// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include <QApplication>
#include <QSettings>
#include <QTemporaryDir>

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  // The tests open many windows; a display in memory shows them to nobody.
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  // The user's own options are not touched.
  const QTemporaryDir configuration;
  QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, configuration.path());
  const QApplication application(argc, argv);
  QApplication::setOrganizationName(QStringLiteral("Tallow"));
  QApplication::setApplicationName(QStringLiteral("tallow-tests"));
  QApplication::setQuitOnLastWindowClosed(false);
  // A tip at start waits for its user.
  QSettings().setValue(QStringLiteral("Options/Show Tips at Startup"), 0);
  return RUN_ALL_TESTS();
}
