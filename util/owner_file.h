// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "util/process_name.h"

namespace tallow {

/// A file that names the process which works on a folder, where FileLock can do nothing, or its file was taken
/// away. It is made only if it is not there yet, which every file system can do, and removed at the end.
///
/// Seven lines, each ended by LF:
///
///   Tallow 1
///   host anna
///   machine 6e2c1d0f0f3b4c54a1e0c5b7d2f49a11
///   run 0b1f6c6e-6a0f-4f57-9c5c-1b7f4f0c9d3e
///   set pid:[4026531836]
///   process 4711
///   started 883214
///
/// The values are those of ProcessName. The file of a process that has ended, after a crash, is replaced. Of those
/// who try to replace it at once, one makes a file of the same kind and content beside it, ".claim", looks again,
/// and puts its own in the place: only who has made the claim replaces the file, so nobody replaces a new one. A
/// claim whose process has ended is replaced in the same way.
class OwnerFile {
 public:
  enum class Answer {
    kHeld,     ///< by this object from now on
    kInUse,    ///< by another one, of this program or of another
    kUnknown,  ///< nobody can tell whether the process that it names still runs, or it cannot be read
    kImpossible,  ///< no file can be made there
  };

  /// What happens to a file of which nobody can tell whether its process still runs.
  enum class Unknown {
    kStays,
    kIsReplaced,  ///< for who knows by other means that there is no other one
  };

  OwnerFile() = default;
  OwnerFile(const OwnerFile&) = delete;
  OwnerFile& operator=(const OwnerFile&) = delete;
  /// Removes the file, if it is still this object's.
  ~OwnerFile();

  /// Tries to be the one that the file names. Waits for a tenth of a second at most.
  Answer Take(const std::string& path, Unknown unknown);

 private:
  Answer TakeAt(const std::string& path, int claims);
  Answer Replace(const std::string& path, const std::optional<std::string>& seen,
                 ProcessState state, int claims);

  std::string path_;  ///< of the file that is held; empty for none
  std::string content_;
  Unknown unknown_ = Unknown::kStays;
};

/// A process as the lines of such a file.
std::string OwnerText(const ProcessName& process);

/// The process that such a file names; no value when its content is something else, or only a part.
std::optional<ProcessName> OwnerOf(std::string_view content);

/// The process that the file of a path names; no value when it cannot be read.
std::optional<ProcessName> ReadOwner(const std::string& path);

}  // namespace tallow
