// SPDX-License-Identifier: GPL-3.0-or-later
#include "util/threads.h"

#include <new>
#include <system_error>
#include <utility>

namespace tallow {

std::thread StartThread(std::function<void()> work) {
  try {
    return std::thread(std::move(work));
  } catch (const std::system_error&) {
    return {};
  } catch (const std::bad_alloc&) {
    return {};
  }
}

std::thread StartThreadOrRun(const std::function<void()>& work) {
  std::thread thread = StartThread(work);
  if (!thread.joinable()) work();
  return thread;
}

void Join(std::thread& thread) {
  if (thread.joinable()) thread.join();
}

}  // namespace tallow
