// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <optional>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <thread>

namespace tallow {

/// A system call that the kernel refuses.
struct FailingCall {
  long number = 0;  ///< SYS_...
  int error = 0;    ///< errno value of the failed call
  /// Only calls with this fourth argument fail; no value for all calls.
  std::optional<std::uint32_t> fourth;
};

/// Runs a function on a thread of its own, on which all calls of one kind fail.
/// \returns false when the kernel cannot refuse calls; the function has not run in that case
inline bool RunWithFailingCall(const FailingCall& call, const std::function<void()>& act) {
  constexpr std::size_t kNumber = offsetof(seccomp_data, nr);
  // The low half of the argument, on a little-endian machine.
  constexpr std::size_t kFourth = offsetof(seccomp_data, args) + 3 * sizeof(std::uint64_t);
  const auto skipped = static_cast<std::uint8_t>(call.fourth ? 1 : 0);
  sock_filter filter[] = {
      BPF_STMT(BPF_LD | BPF_W | BPF_ABS, kNumber),
      BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, static_cast<std::uint32_t>(call.number), 0, 3),
      BPF_STMT(BPF_LD | BPF_W | BPF_ABS, kFourth),
      BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, call.fourth.value_or(0), 0, skipped),
      BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | static_cast<std::uint32_t>(call.error)),
      BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
  };
  const sock_fprog program{sizeof filter / sizeof *filter, filter};
  bool is_refused = false;
  std::thread([&] {
    // A filter applies to the thread that sets it, until the thread ends.
    is_refused = prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 &&
                 prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) == 0;
    if (is_refused) act();
  }).join();
  return is_refused;
}

}  // namespace tallow
