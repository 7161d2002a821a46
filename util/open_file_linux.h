// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <unistd.h>

namespace tallow {

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
