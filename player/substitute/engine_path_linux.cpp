// SPDX-License-Identifier: GPL-3.0-or-later
#include "player/substitute/engine_path.h"

namespace tallow {

std::string EnginePath(const std::string& path) { return path; }

}  // namespace tallow
