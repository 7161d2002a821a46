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

// Every path is bytes (UTF-8 on Windows; on Linux whatever the disk holds). Links are followed
// unless a line says otherwise.

/// For a file of any size.
inline constexpr std::uint64_t kNoLimit = std::numeric_limits<std::uint64_t>::max();

/// Which folder this is on disk, whatever the path that led to it. Two paths to one folder give
/// equal identities.
struct FolderIdentity {
  std::uint64_t device = 0;
  std::uint64_t number = 0;
  std::uint64_t number_high = 0;  ///< of file systems whose numbers have 128 bits
  bool operator==(const FolderIdentity&) const = default;
};

/// A folder inside a listed folder.
struct SubfolderEntry {
  std::string name;     ///< without folder and separator
  bool linked = false;  ///< a symbolic link, a junction or a volume mounted in a folder
};

/// A regular file inside a listed folder, or a link to one.
struct FileEntry {
  std::string name;  ///< without folder and separator
  /// Bytes; 0 when the listing was made without sizes, kNoLimit where it cannot be told.
  std::uint64_t size = 0;
  std::string tail;  ///< the last bytes, where they were asked for and read; else empty
};

/// What one pass over a folder found. "." and ".." are left out.
struct FolderListing {
  bool opened = false;     ///< false when the folder does not exist or cannot be read
  bool not_there = false;  ///< the system answered that there is no such folder
  /// Why the folder, or the rest of it, cannot be read; empty when all of it was read, and when there is
  /// no such folder.
  std::string problem;
  FolderIdentity identity;                 ///< of the folder itself
  std::vector<FileEntry> files;            ///< in the order the system returned them
  std::vector<SubfolderEntry> subfolders;  ///< in the order the system returned them
  /// Names of folders, pipes, devices and links that lead nowhere, where they were asked for.
  std::vector<std::string> others;
};

/// What ListFolder has to find out.
struct ListRequest {
  std::string_view pattern = "*";  ///< of the files, see MatchesFilePattern
  bool subfolders = false;
  bool sizes = false;
  bool others = false;  ///< of the entries that match the pattern, those that are no files
  /// How many of the last bytes of each file to read along with its size; a file that is no longer
  /// than that has no tail. A platform may leave all tails out; then ReadTail gives them.
  std::size_t tail_bytes = 0;
};

/// Lists a folder. Sockets, pipes, devices and links that lead nowhere are in neither list.
FolderListing ListFolder(const std::string& folder, const ListRequest& request);

/// Which folder a path leads to; no value when it leads to none.
std::optional<FolderIdentity> IdentityOfFolder(const std::string& path);

/// Whether a path leads to a regular file.
bool FileExists(const std::string& path);

/// What the system says of a file.
enum class FilePresence {
  kThere,
  kNotThere,  ///< the system answered that there is no regular file at the path
  kUnknown,   ///< it did not answer that: no permission, a read error, a share without connection
};

/// What a look at a file tells.
struct FileLook {
  FilePresence presence = FilePresence::kUnknown;
  std::uint64_t size = 0;  ///< bytes, of a file that is there
  std::string problem;     ///< of an unknown one: what the system says instead
};

/// Looks at a file, telling one that is not there from one that cannot be asked for.
FileLook LookAtFile(const std::string& path);

/// What the system says of a folder.
enum class FolderState {
  kNotThere,    ///< there is no folder at the path
  kUnreadable,  ///< it cannot be listed
  kEmpty,       ///< it holds neither files nor folders
  kHasEntries,
};

/// Looks into a folder as far as its first entry.
FolderState StateOfFolder(const std::string& path);

/// Whether there is nothing at a path. One that cannot be looked at (a folder without permission, a disk
/// that does not answer) may hold something.
bool IsGone(const std::string& path);

/// Whether two paths lead to one place, which need not exist: the same path once links are followed, or
/// on Windows once letter case is left out.
bool IsSamePath(const std::string& path, const std::string& other);

/// Whether a path leads to a folder.
bool FolderExists(const std::string& path);

/// Whether files can be made in a folder.
bool FolderIsWritable(const std::string& path);

/// By what a file can be seen to have been written by somebody else.
struct FileStamp {
  std::uint64_t size = 0;     ///< bytes
  std::int64_t modified = 0;  ///< when it was last written, in the system's finest unit
  bool operator==(const FileStamp&) const = default;
};

/// The stamp of a file; no value when there is none at that path.
std::optional<FileStamp> StampOf(const std::string& path);

/// Makes a folder; its parent has to exist. One that exists already is a success.
///
/// \throws FileError
void CreateFolder(const std::string& path);

/// CreateFolder for a folder and every missing folder above it.
void CreateFolders(const std::string& path);

/// Deletes a file.
///
/// \returns whether it is gone now (one that did not exist is)
bool RemoveFile(const std::string& path) noexcept;

/// The content of a file; no value when there is none at that path. A pipe or device is never waited for.
///
/// \param max_bytes a file that has more is not read
/// \throws FileError when it exists but cannot be read, and of a link that leads to nothing: what it led to
///         may come back
/// \throws FileTooLargeError
std::optional<std::string> ReadWholeFile(const std::string& path,
                                         std::uint64_t max_bytes = kNoLimit);

/// The absolute path that a path has now. On Linux links are followed; on Windows they stay, because a
/// drive letter may be one.
std::string AbsolutePath(const std::string& path);

/// The path of a folder with every link and junction followed; the path as it is where the system does
/// not tell.
std::string RealPathOfFolder(const std::string& path);

/// The last bytes of a file, for the tag that sits there.
enum class TailResult {
  kRead,      ///< the bytes were read
  kTooShort,  ///< the file is no longer than the number of bytes asked for; nothing was read
  kFailed,    ///< there is no such regular file, or it cannot be read
};

/// Reads the last bytes of a file that is longer than them. A pipe or device is never waited for.
TailResult ReadTail(const std::string& path, std::span<char> bytes);

}  // namespace tallow
