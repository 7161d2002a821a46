// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/support/window_options.h"

namespace tallow {

std::string PrepareWindowOptions(const std::string& /*folder*/) {
  // On Windows the settings are in the registry.
  return {};
}

}  // namespace tallow
