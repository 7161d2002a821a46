// SPDX-License-Identifier: GPL-3.0-or-later
#include "util/detached_process_linux.h"
#include "util/start_program.h"

namespace tallow {

bool StartProgram(const std::string& path, FirstWindow /*window*/) { return Spawn(path, {}) != 0; }

}  // namespace tallow
