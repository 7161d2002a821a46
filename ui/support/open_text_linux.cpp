// SPDX-License-Identifier: GPL-3.0-or-later
#include <QDesktopServices>
#include <QUrl>

#include "ui/support/open_text.h"
#include "ui/support/qt_path.h"

namespace tallow {

void OpenText(const std::string& path) {
  QDesktopServices::openUrl(QUrl::fromLocalFile(QtPath(path)));
}

}  // namespace tallow
