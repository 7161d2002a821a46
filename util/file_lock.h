// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>
#include <string>

namespace tallow {

/// A file that one program at a time holds. The system lets go of it when the program ends, however it
/// ends, so a crash leaves no lock behind, whatever the machine is called by then.
class FileLock {
 public:
  enum class Answer {
    kHeld,        ///< by this object from now on
    kInUse,       ///< by another one, of this program or of another
    kImpossible,  ///< it is no file, cannot be made or opened, or its file system knows no locks
  };

  FileLock();
  ~FileLock();

  /// Tries to hold the file, which is made when it is not there. Does not wait.
  /// \param path of a file whose content does not matter; it stays there
  Answer Take(const std::string& path);

 private:
  struct File;
  std::unique_ptr<File> file_;
};

}  // namespace tallow
