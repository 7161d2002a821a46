// SPDX-License-Identifier: GPL-3.0-or-later
#include <QtGlobal>

#include "ui/support/display_server.h"

namespace tallow {

bool HasDisplay() {
  return !qEnvironmentVariableIsEmpty("DISPLAY") ||
         !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY") ||
         !qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM");
}

}  // namespace tallow
