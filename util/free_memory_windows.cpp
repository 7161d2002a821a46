// SPDX-License-Identifier: GPL-3.0-or-later
#include <malloc.h>

#include "util/free_memory.h"

namespace tallow {

FreeMemoryReturned::FreeMemoryReturned() noexcept = default;

FreeMemoryReturned::~FreeMemoryReturned() { _heapmin(); }

}  // namespace tallow
