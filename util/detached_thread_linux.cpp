// SPDX-License-Identifier: GPL-3.0-or-later
#include <thread>
#include <utility>

#include "util/detached_thread.h"
#include "util/threads.h"

namespace tallow {

bool StartDetachedThread(std::function<void()> work) {
  std::thread thread = StartThread(std::move(work));
  if (!thread.joinable()) return false;
  thread.detach();
  return true;
}

}  // namespace tallow
