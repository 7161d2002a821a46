// SPDX-License-Identifier: GPL-3.0-or-later
#include <QCoreApplication>
#include <QSettings>
#include <QStandardPaths>

#include "ui/qt_path.h"
#include "ui/window_options.h"
#include "util/file_system.h"

namespace tallow {

std::string PrepareWindowOptions(const std::string& folder) {
  const QString organization =
      QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + '/' +
      QCoreApplication::organizationName();
  const QString own = organization + '/' + QCoreApplication::applicationName() + ".conf";
  // The file of the organization is read as well, and the lock is opened like a file.
  for (const QString& file : {own, own + ".lock", QString(organization + ".conf")}) {
    const std::string path = PathOfQt(file);
    if (IsGone(path) || FileExists(path)) continue;
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, QtPath(folder));
    return path + " is no file, so the places of the windows are kept in " + folder +
           ". Move it away and start Tallow again.";
  }
  return {};
}

}  // namespace tallow
