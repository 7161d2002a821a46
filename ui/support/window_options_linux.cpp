// SPDX-License-Identifier: GPL-3.0-or-later
#include <cstdint>

#include <QCoreApplication>
#include <QSettings>
#include <QStandardPaths>

#include "ui/support/qt_path.h"
#include "ui/support/window_options.h"
#include "util/file_system.h"

namespace tallow {
namespace {

/// Maximum size of the settings file, in bytes; Qt needs seconds to read a larger file. The
/// positions and sizes of a few windows need some thousand bytes.
constexpr std::uint64_t kMaxBytes = std::uint64_t{16} << 20U;

}  // namespace

std::string PrepareWindowOptions(const std::string& folder) {
  const QString organization =
      QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + '/' +
      QCoreApplication::organizationName();
  const QString own = organization + '/' + QCoreApplication::applicationName() + ".conf";
  // QSettings also reads the organization's file and opens the lock file.
  for (const QString& file : {own, own + ".lock", QString(organization + ".conf")}) {
    const std::string path = PathOfQt(file);
    const auto stamp = StampOf(path);
    if (IsGone(path) || (FileExists(path) && stamp && stamp->size <= kMaxBytes)) continue;
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, QtPath(folder));
    return path + " is not a usable settings file, so window positions are stored in " + folder +
           ". Move it away and start Tallow again.";
  }
  return {};
}

}  // namespace tallow
