// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace tallow {

/// For work that needs much more memory than it leaves: the heap keeps little freed memory for
/// later use while an object of this class exists, and returns the rest to the system when the
/// object is destroyed. Holds for all threads. At most one object may exist at a time.
class FreeMemoryReturned {
 public:
  FreeMemoryReturned() noexcept;
  FreeMemoryReturned(const FreeMemoryReturned&) = delete;
  FreeMemoryReturned& operator=(const FreeMemoryReturned&) = delete;
  /// Takes a few milliseconds.
  ~FreeMemoryReturned();
};

}  // namespace tallow
