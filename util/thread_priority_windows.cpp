// SPDX-License-Identifier: GPL-3.0-or-later
#include <windows.h>

#include "util/thread_priority.h"

namespace tallow {

void LowerThreadPriority() noexcept {
  // Lowers the priority of disk accesses too.
  SetThreadPriority(GetCurrentThread(), THREAD_MODE_BACKGROUND_BEGIN);
}

}  // namespace tallow
