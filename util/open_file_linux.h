// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cerrno>
#include <unistd.h>

namespace tallow {

/// Retries a system call while a signal interrupts it.
///
/// \param call returns a number below 0, with errno set, when it fails
template <typename Call>
auto Retry(Call call) {
  for (;;) {
    const auto result = call();
    if (result >= 0 || errno != EINTR) return result;
  }
}

/// A file descriptor that is closed when it goes out of scope.
class OpenFile {
 public:
  /// \param descriptor what open() returned; below 0 when it failed
  explicit OpenFile(int descriptor) noexcept : descriptor_(descriptor) {}
  OpenFile(const OpenFile&) = delete;
  OpenFile& operator=(const OpenFile&) = delete;
  ~OpenFile() {
    if (descriptor_ >= 0) close(descriptor_);
  }

  explicit operator bool() const noexcept { return descriptor_ >= 0; }
  int descriptor() const noexcept { return descriptor_; }

 private:
  int descriptor_;
};

}  // namespace tallow
