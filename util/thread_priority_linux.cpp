// SPDX-License-Identifier: GPL-3.0-or-later
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

#include "util/thread_priority.h"

namespace tallow {

void LowerThreadPriority() noexcept {
  // Not SCHED_IDLE: a thread that is never scheduled would never release a mutex that others wait
  // for.
  constexpr int kLowest = 19;
  const pid_t thread = gettid();
  setpriority(PRIO_PROCESS, static_cast<id_t>(thread), kLowest);
  // The C library has no function for this call. Class 3 is served when no other process uses the
  // disk.
  constexpr int kWhoIsThread = 1;
  constexpr int kIdleClass = 3 << 13;
  syscall(SYS_ioprio_set, kWhoIsThread, thread, kIdleClass);
}

}  // namespace tallow
