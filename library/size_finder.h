// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace tallow {

class clsMain;

/// Reads the unknown sizes of song files on worker threads, so that a slow disk does not block the
/// caller. If no thread can be created, each StoreSizes reads a few sizes.
class SizeFinder {
 public:
  /// Starts with the present songs of a library whose size is not known.
  explicit SizeFinder(const clsMain& library);
  /// Does not wait for a disk that does not answer: the detached threads end by themselves.
  ~SizeFinder();
  SizeFinder(const SizeFinder&) = delete;
  SizeFinder& operator=(const SizeFinder&) = delete;

  /// Stores the sizes found since the last call in the library. The library may have changed
  /// meanwhile.
  /// \returns false when all sizes were found
  bool StoreSizes(clsMain& library);
  /// Whether any size has been found so far.
  bool HasFound() const noexcept { return has_found_; }

 private:
  struct Work;
  std::shared_ptr<Work> work_;
  bool has_thread_ = false;
  bool has_found_ = false;
};

}  // namespace tallow
