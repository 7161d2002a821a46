// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/support/display_server.h"

namespace tallow {

bool HasDisplay() { return true; }

}  // namespace tallow
