// SPDX-License-Identifier: GPL-3.0-or-later
#include <malloc.h>

#include "util/free_memory.h"

namespace tallow {

void ReturnFreeMemory() noexcept { _heapmin(); }

}  // namespace tallow
