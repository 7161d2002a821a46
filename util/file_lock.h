// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>
#include <string>

namespace tallow {

/// A file lock that one program at a time can hold. The system releases it when the program ends,
/// even after a crash, so no stale lock can remain, and the computer's name does not matter.
class FileLock {
 public:
  enum class Answer {
    kHeld,        ///< this object holds the lock now
    kInUse,       ///< another FileLock holds it, in this program or in another
    kImpossible,  ///< not a file, cannot be created or opened, or the file system has no locks
  };

  FileLock();
  ~FileLock();

  /// Tries to lock the file, which is created when it does not exist. Does not wait.
  /// \param path of a file whose content does not matter; the file is not deleted afterwards
  Answer Acquire(const std::string& path);

 private:
  struct File;
  std::unique_ptr<File> file_;
};

}  // namespace tallow
