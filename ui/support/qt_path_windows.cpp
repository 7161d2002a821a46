// SPDX-License-Identifier: GPL-3.0-or-later
#include <QDir>

#include "ui/support/qt_path.h"
#include "util/wide_text_windows.h"

namespace tallow {

// Converts through UTF-16; the ANSI code page may lack characters of the path.
QString QtPath(const std::string& path) { return QString::fromStdWString(ToWide(path)); }

std::string PathOfQt(const QString& path) {
  return FromWide(QDir::toNativeSeparators(path).toStdWString());
}

}  // namespace tallow
