// SPDX-License-Identifier: GPL-3.0-or-later
#include <cstdio>

#include "util/terminal.h"

namespace tallow {

void UseTerminal() {}

void ReportStartError(const std::string& text) { std::fprintf(stderr, "%s\n", text.c_str()); }

}  // namespace tallow
