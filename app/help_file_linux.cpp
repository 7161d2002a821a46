// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/help_file.h"

namespace tallow {

bool OpenHelpFile(const std::string& /*path*/) { return false; }

}  // namespace tallow
