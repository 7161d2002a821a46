// SPDX-License-Identifier: GPL-3.0-or-later
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <filesystem>
#include <memory>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

#include "util/errors.h"
#include "util/file_system.h"
#include "util/like.h"
#include "util/open_file_linux.h"
#include "util/path_text.h"

namespace tallow {
namespace {

constexpr std::int64_t kNanosecondsASecond = 1'000'000'000;
constexpr std::int64_t kSecondsADay = 86'400;

struct CloseDirectory {
  void operator()(DIR* directory) const noexcept { closedir(directory); }
};
using Directory = std::unique_ptr<DIR, CloseDirectory>;

FolderIdentity IdentityOf(const struct stat& status) noexcept {
  return {static_cast<std::uint64_t>(status.st_dev), static_cast<std::uint64_t>(status.st_ino), 0};
}

/// The type of a directory entry.
enum class EntryKind {
  kFile,
  kFolder,
  kLinkedFolder,
  kOther,
  kUnknown,  ///< the type could not be read
};

/// Whether an error comes from the disk or from a lack of resources. A dangling link, or a link to
/// a place without permission, is not such an error.
bool IsReadError(int error) noexcept {
  switch (error) {
    case ENOENT:
    case ENOTDIR:
    case ENAMETOOLONG:
    case ELOOP:
    case EACCES:
    case EPERM:
      return false;
    default:
      return true;
  }
}

/// Returns the kind unless errno is a read error; then kUnknown. For entries whose stat() failed.
EntryKind UnlessReadError(EntryKind kind) noexcept {
  return IsReadError(errno) ? EntryKind::kUnknown : kind;
}

/// The kind of an entry. Uses d_type where the file system sets it; links, other file systems and
/// size requests need a stat() call.
///
/// \param size set for a file when size_wanted is true
EntryKind KindOf(int directory, const dirent& entry, bool size_wanted, std::uint64_t& size) {
  struct stat status {};
  unsigned char type = entry.d_type;
  if (type == DT_UNKNOWN) {
    if (Retry([&] { return fstatat(directory, entry.d_name, &status, AT_SYMLINK_NOFOLLOW); }) != 0)
      return UnlessReadError(EntryKind::kOther);
    type = static_cast<unsigned char>(IFTODT(status.st_mode));
  }
  if (type == DT_DIR) return EntryKind::kFolder;
  if (type != DT_REG && type != DT_LNK) return EntryKind::kOther;
  if (type == DT_REG && !size_wanted) return EntryKind::kFile;
  if (Retry([&] { return fstatat(directory, entry.d_name, &status, 0); }) != 0)
    return UnlessReadError(EntryKind::kOther);
  if (S_ISDIR(status.st_mode)) return EntryKind::kLinkedFolder;
  if (!S_ISREG(status.st_mode)) return EntryKind::kOther;
  size = static_cast<std::uint64_t>(status.st_size);
  return EntryKind::kFile;
}

/// ReadTail of a file in an open folder, or by path. Also returns the status, which has the size.
TailResult ReadTailAt(int directory, const char* name, std::span<char> bytes, struct stat& status) {
  const OpenFile file(
      Retry([&] { return openat(directory, name, O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY); }));
  if (!file || Retry([&] { return fstat(file.descriptor(), &status); }) != 0 ||
      !S_ISREG(status.st_mode))
    return TailResult::kFailed;
  const auto wanted = static_cast<off_t>(bytes.size());
  if (status.st_size <= wanted) return TailResult::kTooShort;
  std::size_t filled = 0;
  while (filled < bytes.size()) {
    const ssize_t got = pread(file.descriptor(), bytes.data() + filled, bytes.size() - filled,
                              status.st_size - wanted + static_cast<off_t>(filled));
    if (got < 0 && errno == EINTR) continue;
    if (got <= 0) return TailResult::kFailed;
    filled += static_cast<std::size_t>(got);
  }
  return TailResult::kRead;
}

bool IsDotOrDotDot(const char* name) noexcept {
  return name[0] == '.' && (name[1] == '\0' || (name[1] == '.' && name[2] == '\0'));
}

/// Whether an error means that there is no such file or folder. A path too long for the system
/// cannot exist either.
bool IsNotThere(int error) noexcept {
  return error == ENOENT || error == ENOTDIR || error == ENAMETOOLONG;
}

std::optional<struct stat> StatusOf(const std::string& path) {
  struct stat status {};
  if (Retry([&] { return stat(path.c_str(), &status); }) != 0) return std::nullopt;
  return status;
}

/// Opens a folder for listing; null with errno set when that fails.
Directory OpenDirectory(const std::string& path) {
  for (;;) {
    Directory directory(opendir(path.c_str()));
    if (directory || errno != EINTR) return directory;
  }
}

/// The next entry of a folder. Null with errno 0 at the end, with errno set on a read error.
const dirent* NextEntry(DIR* directory) {
  for (;;) {
    errno = 0;
    const dirent* const entry = readdir(directory);
    if (entry != nullptr || errno != EINTR) return entry;
  }
}

}  // namespace

namespace {

/// Reads the size and the last bytes of a regular file.
///
/// \param directory descriptor of the folder that `path` starts at
/// \param problem   why the size cannot be read; unchanged when it was read
/// \returns false when there is no such file
bool ReadFileEntry(int directory, const char* path, std::size_t tail_bytes, FileEntry& file,
                   std::string& problem) {
  file.tail.resize(tail_bytes);
  // Opening the file also gives its size.
  struct stat status {};
  if (ReadTailAt(directory, path, file.tail, status) != TailResult::kRead) file.tail.clear();
  if (status.st_mode == 0 && Retry([&] { return fstatat(directory, path, &status, 0); }) != 0) {
    const int error = errno;
    // The file may have been deleted since it was listed.
    if (IsNotThere(error)) return false;
    problem = std::strerror(error);
  }
  file.size = status.st_mode != 0 ? static_cast<std::uint64_t>(status.st_size) : kNoLimit;
  return true;
}

/// Adds a regular file with its last bytes and its size to a listing, or as a pending file.
///
/// \param descriptor of the folder
void AddFileWithTail(int descriptor, const char* name, std::size_t tail_bytes, bool is_pending,
                     FolderListing& listing) {
  FileEntry& file = listing.files.emplace_back();
  file.name = name;
  if (is_pending) {
    file.is_pending = listing.has_pending = true;
    return;
  }
  if (!ReadFileEntry(descriptor, name, tail_bytes, file, listing.problem)) listing.files.pop_back();
}

/// Whether an entry of a type, as readdir() reports it, may be a folder that is to be listed.
bool MayBeSubfolder(unsigned char type, const ListRequest& request) noexcept {
  if (request.subfolders) return type != DT_REG;
  return request.real_subfolders && (type == DT_DIR || type == DT_UNKNOWN);
}

}  // namespace

FolderListing ListFolder(const std::string& folder, const ListRequest& request) {
  FolderListing listing;
  const Directory directory = OpenDirectory(folder);
  if (!directory) {
    listing.not_there = IsNotThere(errno);
    if (!listing.not_there) listing.problem = std::strerror(errno);
    return listing;
  }
  const int descriptor = dirfd(directory.get());
  struct stat status {};
  if (request.subfolders && fstat(descriptor, &status) == 0) listing.identity = IdentityOf(status);
  listing.opened = true;
  // The path of a pending file must not be too long for the system.
  const bool may_wait = folder.size() + NAME_MAX < PATH_MAX;
  std::size_t tails = 0;
  for (;;) {
    const dirent* const entry = NextEntry(directory.get());
    if (entry == nullptr) {
      if (errno != 0) listing.problem = std::strerror(errno);
      break;
    }
    if (IsDotOrDotDot(entry->d_name)) continue;
    const std::string_view name(entry->d_name);
    const bool matches = MatchesFilePattern(name, request.pattern);
    if (!matches && entry->d_type == DT_REG && !request.counted.empty() &&
        !name.starts_with("._") && MatchesFilePattern(name, request.counted))
      ++listing.counted;
    // The entry does not match the pattern and cannot be a requested folder: no stat() needed.
    if (!matches && !MayBeSubfolder(entry->d_type, request)) continue;
    if (request.tail_bytes > 0 && matches && entry->d_type == DT_REG) {
      AddFileWithTail(descriptor, entry->d_name, request.tail_bytes,
                      may_wait && ++tails > request.max_tails, listing);
      continue;
    }
    std::uint64_t size = 0;
    const EntryKind kind = KindOf(descriptor, *entry, request.sizes && matches, size);
    if (request.others && matches && kind != EntryKind::kFile && kind != EntryKind::kUnknown)
      listing.others.emplace_back(name);
    switch (kind) {
      case EntryKind::kFile:
        if (matches) listing.files.push_back({.name = std::string(name), .size = size, .tail = {}});
        break;
      case EntryKind::kFolder:
        if (request.subfolders || request.real_subfolders)
          listing.subfolders.push_back({std::string(name), false});
        break;
      case EntryKind::kLinkedFolder:
        if (request.subfolders) listing.subfolders.push_back({std::string(name), true});
        break;
      case EntryKind::kOther:
        break;
      case EntryKind::kUnknown:
        listing.problem = std::strerror(errno);
        break;
    }
  }
  return listing;
}

std::string ReadPendingFiles(const std::string& folder, std::size_t tail_bytes,
                             std::span<FileEntry> files) {
  std::string problem;
  for (FileEntry& file : files)
    if (file.is_pending)
      file.is_pending =
          !ReadFileEntry(AT_FDCWD, (folder + file.name).c_str(), tail_bytes, file, problem);
  return problem;
}

std::optional<FolderIdentity> IdentityOfFolder(const std::string& path) {
  const auto status = StatusOf(path);
  if (!status || !S_ISDIR(status->st_mode)) return std::nullopt;
  return IdentityOf(*status);
}

bool FileExists(const std::string& path) {
  const auto status = StatusOf(path);
  return status && S_ISREG(status->st_mode);
}

FileStatus CheckFile(const std::string& path) {
  struct stat status {};
  if (Retry([&] { return stat(path.c_str(), &status); }) != 0) {
    if (!IsNotThere(errno)) return {FilePresence::kUnknown, 0, std::strerror(errno)};
    // The path is a dangling link, and its target may be on a drive that is not mounted.
    if (lstat(path.c_str(), &status) == 0) return {FilePresence::kUnknown, 0, "The link is broken"};
    return {FilePresence::kNotThere, 0, {}};
  }
  if (!S_ISREG(status.st_mode)) return {FilePresence::kNotThere, 0, {}};
  return {FilePresence::kThere, static_cast<std::uint64_t>(status.st_size), {}};
}

FolderState StateOfFolder(const std::string& path) {
  const Directory directory = OpenDirectory(path);
  if (!directory) return IsNotThere(errno) ? FolderState::kNotThere : FolderState::kUnreadable;
  while (const dirent* const entry = NextEntry(directory.get()))
    if (!IsDotOrDotDot(entry->d_name)) return FolderState::kHasEntries;
  return errno != 0 ? FolderState::kUnreadable : FolderState::kEmpty;
}

bool IsGone(const std::string& path) {
  struct stat status {};
  return Retry([&] { return lstat(path.c_str(), &status); }) != 0 &&
         (errno == ENOENT || errno == ENOTDIR);
}

bool IsSamePath(const std::string& path, const std::string& other) {
  return path == other || AbsolutePath(path) == AbsolutePath(other);
}

bool FolderExists(const std::string& path) {
  const auto status = StatusOf(path);
  return status && S_ISDIR(status->st_mode);
}

std::optional<FileStamp> StampOf(const std::string& path) {
  const auto status = StatusOf(path);
  if (!status) return std::nullopt;
  return FileStamp{static_cast<std::uint64_t>(status->st_size),
                   status->st_mtim.tv_sec * kNanosecondsASecond + status->st_mtim.tv_nsec};
}

std::int32_t DayOf(const FileStamp& stamp) noexcept {
  return static_cast<std::int32_t>(stamp.modified / (kNanosecondsASecond * kSecondsADay));
}

bool FolderIsWritable(const std::string& path) {
  return FolderExists(path) && faccessat(AT_FDCWD, path.c_str(), W_OK | X_OK, AT_EACCESS) == 0;
}

void CreateFolder(const std::string& path) {
  if (Retry([&] { return mkdir(path.c_str(), 0777); }) == 0) return;
  const int error = errno;
  if (error == EEXIST && FolderExists(path)) return;
  throw FileError(path, std::strerror(error));
}

bool RemoveFile(const std::string& path) noexcept {
  return Retry([&] { return unlink(path.c_str()); }) == 0 || errno == ENOENT || errno == ENOTDIR;
}

namespace {

/// Opens a file for reading.
///
/// \returns below 0 when there is no file
/// \throws FileError when the file cannot be opened, and when the path is a dangling link
int OpenForReading(const std::string& path) {
  for (bool again = false;; again = true) {
    const int descriptor =
        Retry([&] { return open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY); });
    if (descriptor >= 0) return descriptor;
    const int error = errno;
    if (error != ENOENT && error != ENOTDIR) throw FileError(path, std::strerror(error));
    if (IsGone(path)) return descriptor;
    // Something is there now: a dangling link, or a file that was created a moment ago.
    if (again) throw FileError(path, "is a broken link");
  }
}

}  // namespace

std::optional<std::string> ReadWholeFile(const std::string& path, std::uint64_t max_bytes) {
  const OpenFile file(OpenForReading(path));
  if (!file) return std::nullopt;
  struct stat status {};
  if (Retry([&] { return fstat(file.descriptor(), &status); }) != 0)
    throw FileError(path, std::strerror(errno));
  if (!S_ISREG(status.st_mode)) throw FileError(path, "is not a regular file");
  if (static_cast<std::uint64_t>(status.st_size) > max_bytes)
    throw FileTooLargeError(path, "has more than " + std::to_string(max_bytes) + " bytes");
  std::string content(static_cast<std::size_t>(status.st_size), '\0');
  std::size_t filled = 0;
  for (;;) {
    // Once the expected size is read, read into this buffer to find out whether the file has grown.
    char more[4096];
    const bool full = filled == content.size();
    char* const to = full ? more : content.data() + filled;
    const ssize_t got = read(file.descriptor(), to, full ? sizeof more : content.size() - filled);
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) throw FileError(path, std::strerror(errno));
    if (got == 0) break;
    if (full) content.append(more, static_cast<std::size_t>(got));
    filled += static_cast<std::size_t>(got);
  }
  content.resize(filled);
  return content;
}

std::string AbsolutePath(const std::string& path) {
  using Text = std::unique_ptr<char, decltype(&std::free)>;
  const Text real(realpath(path.c_str(), nullptr), &std::free);
  if (real) return real.get();
  // Resolve links one by one, because the target may not exist now.
  constexpr int kMaxLinks = 40;
  static thread_local int links = 0;
  const std::string link =
      path.size() > 1 && path.back() == '/' ? path.substr(0, path.size() - 1) : path;
  std::error_code error;
  const std::string target = std::filesystem::read_symlink(link, error).string();
  if (!error && links < kMaxLinks) {
    ++links;
    const std::string resolved =
        AbsolutePath(target.starts_with('/') ? target : std::string(FolderOfPath(link)) + target);
    --links;
    return resolved;
  }
  // The file does not exist; its folder may.
  const std::string folder(FolderOfPath(path));
  const Text real_folder(realpath(folder.empty() ? "." : folder.c_str(), nullptr), &std::free);
  if (real_folder) return EnsureTrailingBackslash(real_folder.get()).append(NameOfPath(path));
  if (!path.empty() && path.front() == '/') return path;
  const Text here(getcwd(nullptr, 0), &std::free);
  return here ? std::string(here.get()) + "/" + path : path;
}

std::string RealPathOfFolder(const std::string& path) { return AbsolutePath(path); }

TailResult ReadTail(const std::string& path, std::span<char> bytes) {
  struct stat status {};
  return ReadTailAt(AT_FDCWD, path.c_str(), bytes, status);
}

}  // namespace tallow
