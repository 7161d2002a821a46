// SPDX-License-Identifier: GPL-3.0-or-later
// clang-format off
# include "high/high.h"
