// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/theme.h"

namespace tallow {

bool SelectionsAreLight() { return false; }

}  // namespace tallow
