// SPDX-License-Identifier: GPL-3.0-or-later
#include <malloc.h>

#include "util/free_memory.h"

namespace tallow {
namespace {

// Free bytes at the end of a heap that stay there. The C library raises its own threshold to twice
// the largest block that was freed, at most to the second of these; once a threshold is set, it no
// longer does. malloc_trim does not shorten the heaps of other threads, so they have to be short
// before.
constexpr int kKeptDuring = 256 * 1024;
constexpr int kKeptAfterwards = 64 * 1024 * 1024;

}  // namespace

FreeMemoryReturned::FreeMemoryReturned() noexcept { mallopt(M_TRIM_THRESHOLD, kKeptDuring); }

FreeMemoryReturned::~FreeMemoryReturned() {
  malloc_trim(0);
  mallopt(M_TRIM_THRESHOLD, kKeptAfterwards);
}

}  // namespace tallow
