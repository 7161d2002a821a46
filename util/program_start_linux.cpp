// SPDX-License-Identifier: GPL-3.0-or-later
#include <cstdio>

#include "util/program_start.h"

namespace tallow {

std::vector<std::string> ProgramArguments(int argc, const char* const* argv) {
  return {argv + (argc > 0 ? 1 : 0), argv + argc};
}

void UseTerminal() {}

void ReportStartError(const std::string& text) { std::fprintf(stderr, "%s\n", text.c_str()); }

}  // namespace tallow
