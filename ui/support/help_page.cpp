// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/support/help_page.h"

#include <QWidget>

namespace tallow {

QString HelpPageOf(const QWidget* widget) {
  for (; widget != nullptr; widget = widget->parentWidget()) {
    const QString page = widget->property(kHelpPage).toString();
    if (!page.isEmpty()) return page;
  }
  return {};
}

}  // namespace tallow
