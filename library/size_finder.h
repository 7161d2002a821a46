// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace tallow {

class clsMain;

/// Finds out the sizes of songs' files that are not known, on a thread of its own, so that a disk that is
/// slow keeps nobody waiting. Where the system gives no thread, each TakeSizes looks at a few songs.
class SizeFinder {
 public:
  /// Begins with the songs of a library that are there and whose size is not known.
  explicit SizeFinder(const clsMain& library);
  /// Does not wait for a disk that does not answer: the thread ends by itself.
  ~SizeFinder();
  SizeFinder(const SizeFinder&) = delete;
  SizeFinder& operator=(const SizeFinder&) = delete;

  /// Gives the library the sizes found since the last call. The library may have changed meanwhile.
  /// \returns false when all are found
  bool TakeSizes(clsMain& library);
  /// Whether any size was found so far.
  bool HasFound() const noexcept { return has_found_; }

 private:
  struct Work;
  std::shared_ptr<Work> work_;
  bool has_thread_ = false;
  bool has_found_ = false;
};

}  // namespace tallow
