// SPDX-License-Identifier: GPL-3.0-or-later
#include <windows.h>
// psapi.h needs the declarations of windows.h.
#include <psapi.h>

#include "benchmarks/process_memory.h"

namespace tallow {

long ProcessMemory() {
  PROCESS_MEMORY_COUNTERS counters{};
  if (!GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof counters)) return 0;
  return static_cast<long>(counters.WorkingSetSize / 1024);
}

}  // namespace tallow
