// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tallow {

// Paths are bytes: UTF-8 on Windows, on Linux whatever the disk holds. Links are followed unless a
// comment says otherwise.

/// Size limit that allows every file.
inline constexpr std::uint64_t kNoLimit = std::numeric_limits<std::uint64_t>::max();

/// Identifies a folder on disk, independent of the path that led to it. Two paths to one folder
/// have equal identities.
struct FolderIdentity {
  std::uint64_t device = 0;
  std::uint64_t number = 0;
  std::uint64_t number_high = 0;  ///< upper half, for file systems with 128-bit file numbers
  bool operator==(const FolderIdentity&) const = default;
};

/// A subfolder of a listed folder.
struct SubfolderEntry {
  std::string name;     ///< without the folder's path and without a separator
  bool linked = false;  ///< a symbolic link, a junction or a volume mounted in a folder
};

/// A regular file in a listed folder, or a link to one.
struct FileEntry {
  std::string name;  ///< without the folder's path and without a separator
  /// Bytes; 0 when sizes were not requested, kNoLimit when the size cannot be read.
  std::uint64_t size = 0;
  std::string tail;  ///< the last bytes, if they were requested and read; else empty
  /// The size and the tail have not been read, see ListRequest::max_tails.
  bool is_pending = false;
};

/// The result of listing a folder. "." and ".." are left out.
struct FolderListing {
  bool opened = false;     ///< false when the folder does not exist or cannot be read
  bool not_there = false;  ///< the system answered that there is no such folder
  /// Why the folder, or the rest of it, could not be read. Empty when the whole folder was read and
  /// when it does not exist.
  std::string problem;
  FolderIdentity identity;                 ///< of the folder itself
  std::vector<FileEntry> files;            ///< in the order the system returned them
  std::vector<SubfolderEntry> subfolders;  ///< in the order the system returned them
  /// Names of folders, pipes, devices and dangling links, if requested.
  std::vector<std::string> others;
  std::size_t counted = 0;  ///< number of files that match only ListRequest::counted
  /// Whether files are pending. A platform that leaves out all tails has none.
  bool has_pending = false;
};

/// What ListFolder must collect.
struct ListRequest {
  std::string_view pattern = "*";  ///< for file names, see MatchesFilePattern
  /// Files of other names that match this are only counted, unless a name begins with "._": those
  /// hold what macOS stores of other files.
  std::string_view counted = {};
  bool subfolders = false;
  /// List the subfolders that are not links, without FolderListing::identity. Unlike `subfolders`
  /// this needs no more calls than the files, where the system tells the kind of each entry.
  bool real_subfolders = false;
  bool sizes = false;
  bool others = false;  ///< also list entries that match the pattern but are not files
  /// How many of the last bytes of each file to read along with its size; a file of at most this
  /// size gets no tail. A platform may leave out all tails; use ReadTail then.
  std::size_t tail_bytes = 0;
  /// How many files to open for their tails. The others stay pending, for ReadPendingFiles.
  std::size_t max_tails = std::numeric_limits<std::size_t>::max();
};

/// Lists a folder. Sockets, pipes, devices and dangling links are neither files nor subfolders.
FolderListing ListFolder(const std::string& folder, const ListRequest& request);

/// Reads the sizes and tails of files that ListFolder has left pending. A file that does not exist
/// any more stays pending. Several threads may read different files of a folder.
///
/// \param folder     ends in a separator
/// \param tail_bytes see ListRequest
/// \returns why the size of a file cannot be read, the last reason of several; empty if all were
std::string ReadPendingFiles(const std::string& folder, std::size_t tail_bytes,
                             std::span<FileEntry> files);

/// The identity of the folder at a path; no value when the path is not a folder.
std::optional<FolderIdentity> IdentityOfFolder(const std::string& path);

/// Whether a path leads to a regular file.
bool FileExists(const std::string& path);

/// Whether a file exists, as far as the system can tell.
enum class FilePresence {
  kThere,
  kNotThere,  ///< the system reported that there is no regular file at the path
  kUnknown,   ///< any other error: no permission, a read error, an unreachable share
};

/// The result of CheckFile.
struct FileStatus {
  FilePresence presence = FilePresence::kUnknown;
  std::uint64_t size = 0;  ///< bytes, if the file exists
  std::string problem;     ///< the system's error message when presence is kUnknown
};

/// Checks whether a file exists, and distinguishes a missing file from one that cannot be checked.
FileStatus CheckFile(const std::string& path);

/// Whether a folder exists and has entries.
enum class FolderState {
  kNotThere,    ///< there is no folder at the path
  kUnreadable,  ///< the folder cannot be listed
  kEmpty,       ///< it holds no files and no folders
  kHasEntries,
};

/// Reads a folder up to its first entry.
FolderState StateOfFolder(const std::string& path);

/// Whether a path certainly does not exist. Returns false when the path cannot be checked (a folder
/// without permission, a disk that does not answer).
bool IsGone(const std::string& path);

/// Whether two paths lead to the same place, which need not exist. Links are resolved; on Windows
/// letter case is ignored.
bool IsSamePath(const std::string& path, const std::string& other);

/// Whether a path leads to a folder.
bool FolderExists(const std::string& path);

/// Whether files can be created in a folder.
bool FolderIsWritable(const std::string& path);

/// Size and modification time of a file, compared to detect a change by another program.
struct FileStamp {
  std::uint64_t size = 0;     ///< bytes
  std::int64_t modified = 0;  ///< time of the last write, in the system's finest unit
  bool operator==(const FileStamp&) const = default;
};

/// The stamp of a file; no value when there is no file at that path.
std::optional<FileStamp> StampOf(const std::string& path);

/// The day of the last write in a stamp of this system, in days since 1970-01-01 (UTC).
std::int32_t DayOf(const FileStamp& stamp) noexcept;

/// Creates a folder; its parent must exist. An existing folder is a success.
///
/// \throws FileError
void CreateFolder(const std::string& path);

/// Creates a folder and all missing parent folders.
void CreateFolders(const std::string& path);

/// Deletes a file.
///
/// \returns whether the file is gone now; true when it did not exist
bool RemoveFile(const std::string& path) noexcept;

/// Reads a file; no value when it does not exist. Never blocks on a pipe or device.
///
/// \param max_bytes a larger file is not read
/// \throws FileError when the file exists but cannot be read, and for a dangling link, because its
/// target may come back
/// \throws FileTooLargeError
std::optional<std::string> ReadWholeFile(const std::string& path,
                                         std::uint64_t max_bytes = kNoLimit);

/// Makes a path absolute. On Linux links are resolved; on Windows they are kept, because a drive
/// letter may be a link.
std::string AbsolutePath(const std::string& path);

/// The path of a folder with every link and junction resolved; the path unchanged when that fails.
std::string RealPathOfFolder(const std::string& path);

/// The result of ReadTail.
enum class TailResult {
  kRead,      ///< the bytes were read
  kTooShort,  ///< the file is not longer than the number of bytes requested; nothing was read
  kFailed,    ///< not a regular file, or it cannot be read
};

/// Reads the last bytes.size() bytes of a file that is longer than that, e.g. to find a tag. Never
/// blocks on a pipe or device.
TailResult ReadTail(const std::string& path, std::span<char> bytes);

}  // namespace tallow
