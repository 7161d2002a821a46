// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/display.h"

namespace tallow {

bool HasDisplay() { return true; }

}  // namespace tallow
