// SPDX-License-Identifier: GPL-3.0-or-later
#include <fstream>
#include <unistd.h>

#include "benchmarks/process_memory.h"

namespace tallow {

long ProcessMemory() {
  std::ifstream status("/proc/self/statm");
  long pages = 0;
  status >> pages >> pages;
  return pages * (sysconf(_SC_PAGESIZE) / 1024);
}

}  // namespace tallow
