// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <fstream>
#include <string>
#include <unistd.h>

namespace tallow {

/// The maximum memory that a sanitizer uses in addition to the program, in KiB. The address
/// sanitizer keeps up to 256 MiB of freed memory and adds to each allocation; the thread sanitizer
/// adds four bytes to each byte.
#if defined(__SANITIZE_THREAD__)
inline constexpr long kSanitizerKib = 2'200'000;
#elif defined(__SANITIZE_ADDRESS__)
inline constexpr long kSanitizerKib = 500'000;
#else
inline constexpr long kSanitizerKib = 0;
#endif

/// The physical memory that a process uses, in KiB.
/// \param process its number, or "self"
inline long ResidentKib(const std::string& process) {
  long size = 0;
  long resident = 0;
  std::ifstream("/proc/" + process + "/statm") >> size >> resident;
  return resident * (sysconf(_SC_PAGESIZE) / 1024);
}

/// The most physical memory that this process has used so far, in KiB.
inline long PeakResidentKib() {
  std::ifstream status("/proc/self/status");
  for (std::string word; status >> word;) {
    long peak = 0;
    if (word == "VmHWM:" && status >> peak) return peak;
  }
  return 0;
}

}  // namespace tallow
