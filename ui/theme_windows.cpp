// SPDX-License-Identifier: GPL-3.0-or-later
#include <windows.h>
// The one below needs what the one above declares.
#include <uxtheme.h>

#include <QApplication>
#include <QStyle>

#include "ui/theme.h"

namespace tallow {

bool SelectionsAreLight() {
  return QApplication::style()->inherits("QWindowsVistaStyle") && IsThemeActive();
}

}  // namespace tallow
