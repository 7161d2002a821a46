// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "util/process_name.h"

namespace tallow {

/// A file that names the process working on a folder. A fallback for file systems where FileLock
/// does not work or its lock file was deleted. The file is created exclusively, which every file
/// system supports, and removed at the end.
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
/// The values are the members of ProcessName. A file whose process has ended (after a crash) is
/// replaced. To replace it, a process first creates a claim file with the same format and content
/// beside it (suffix ".claim"), reads the owner file again, and renames its own file over it. Only
/// the process that created the claim may replace the owner file, so a new owner file is never
/// replaced. A claim whose process has ended is replaced in the same way.
class OwnerFile {
 public:
  enum class Answer {
    kHeld,        ///< this object owns the file now
    kInUse,       ///< another OwnerFile owns it, in this program or in another
    kUnknown,     ///< the named process may still run, or the file cannot be read
    kImpossible,  ///< the file cannot be created
  };

  /// What to do with a file when it is unknown whether its process still runs.
  enum class Unknown {
    kStays,
    kIsReplaced,  ///< for callers that know otherwise that there is no other owner
  };

  OwnerFile() = default;
  OwnerFile(const OwnerFile&) = delete;
  OwnerFile& operator=(const OwnerFile&) = delete;
  /// Removes the file if this object still owns it.
  ~OwnerFile();

  /// Tries to become the owner of the file. Waits at most a tenth of a second.
  Answer Acquire(const std::string& path, Unknown unknown);

 private:
  Answer AcquireAt(const std::string& path, int claims);
  Answer Replace(const std::string& path, const std::optional<std::string>& seen,
                 ProcessState state, int claims);

  std::string path_;  ///< of the owned file; empty when none is owned
  std::string content_;
  Unknown unknown_ = Unknown::kStays;
};

/// Encodes a process as the content of an owner file.
std::string OwnerText(const ProcessName& process);

/// Parses the content of an owner file; no value when the content is invalid or incomplete.
std::optional<ProcessName> OwnerOf(std::string_view content);

/// Reads an owner file; no value when it cannot be read or is invalid.
std::optional<ProcessName> ReadOwner(const std::string& path);

}  // namespace tallow
