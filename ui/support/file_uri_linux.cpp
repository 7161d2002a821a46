// SPDX-License-Identifier: GPL-3.0-or-later
#include <QString>
#include <QSysInfo>

#include "ui/support/file_uri.h"

namespace tallow {
namespace {

/// Whether a name is the host name of this computer, with or without its domain.
bool IsThisMachine(const QString& name) {
  const QString own = QSysInfo::machineHostName();
  const auto is = [&](const QString& other) {
    return !other.isEmpty() && name.compare(other, Qt::CaseInsensitive) == 0;
  };
  return is(own) || is(own.section('.', 0, 0)) || name.startsWith(own + '.', Qt::CaseInsensitive);
}

}  // namespace

std::optional<std::string> PathOfFileUri(const QByteArray& machine, std::string path) {
  if (machine.isEmpty() || machine == "localhost" || IsThisMachine(QString::fromUtf8(machine)))
    return path;
  return std::nullopt;
}

std::string PathInFileUri(const std::string& path) { return path; }

}  // namespace tallow
