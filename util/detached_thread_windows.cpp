// SPDX-License-Identifier: GPL-3.0-or-later
// std::thread::detach is not safe with winpthreads, the thread library of mingw-w64: when the
// thread ends at that moment, its record is released twice. Two later threads then share one
// record, and run each other's work. So these threads are started by the C runtime.
#include <cstdint>
#include <memory>
#include <process.h>
#include <utility>
#include <windows.h>

#include "util/detached_thread.h"

namespace tallow {
namespace {

using Work = std::function<void()>;

unsigned __stdcall Run(void* argument) {
  const std::unique_ptr<Work> work(static_cast<Work*>(argument));
  (*work)();
  return 0;
}

}  // namespace

bool StartDetachedThread(std::function<void()> work) {
  auto owned = std::make_unique<Work>(std::move(work));
  const std::uintptr_t thread = _beginthreadex(nullptr, 0, Run, owned.get(), 0, nullptr);
  if (thread == 0) return false;
  owned.release();  // NOLINT(bugprone-unused-return-value): the thread owns it
  CloseHandle(reinterpret_cast<HANDLE>(thread));
  return true;
}

}  // namespace tallow
