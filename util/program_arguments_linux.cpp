// SPDX-License-Identifier: GPL-3.0-or-later
#include "util/program_arguments.h"

namespace tallow {

std::vector<std::string> ProgramArguments(int argc, const char* const* argv) {
  return {argv + (argc > 0 ? 1 : 0), argv + argc};
}

}  // namespace tallow
