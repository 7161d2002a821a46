// SPDX-License-Identifier: GPL-3.0-or-later
#include <QFile>

#include "ui/support/qt_path.h"

namespace tallow {

QString QtPath(const std::string& path) { return QFile::decodeName(path.c_str()); }

std::string PathOfQt(const QString& path) { return QFile::encodeName(path).toStdString(); }

}  // namespace tallow
