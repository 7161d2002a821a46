// SPDX-License-Identifier: GPL-3.0-or-later
#include <algorithm>
#include <cstring>
#include <limits>
#include <windows.h>
#include <winioctl.h>

#include "util/errors.h"
#include "util/file_system.h"
#include "util/like.h"
#include "util/open_file_windows.h"
#include "util/path_text.h"
#include "util/text.h"
#include "util/wide_text_windows.h"

namespace tallow {
namespace {

/// Times of files count ticks of 100 ns from 1601-01-01.
constexpr std::int64_t kTicksADay = 864'000'000'000;
constexpr std::int64_t kDaysBefore1970 = 134'774;

bool IsMissing(DWORD error) noexcept {
  return error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND ||
         error == ERROR_INVALID_NAME || error == ERROR_BAD_NETPATH ||
         error == ERROR_INVALID_DRIVE || error == ERROR_NOT_READY || error == ERROR_BAD_NET_NAME;
}

/// Whether an error means that there is no such file or folder. Errors of a missing drive or share
/// are not included.
bool IsNotThere(DWORD error) noexcept {
  return error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND ||
         error == ERROR_INVALID_NAME || error == ERROR_BAD_PATHNAME || error == ERROR_DIRECTORY ||
         error == ERROR_FILENAME_EXCED_RANGE;
}

/// Opens a file or folder to read its attributes; links are followed.
HANDLE OpenForQuery(const std::wstring& path) noexcept {
  return CreateFileW(path.c_str(), FILE_READ_ATTRIBUTES,
                     FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, OPEN_EXISTING,
                     FILE_FLAG_BACKUP_SEMANTICS, nullptr);
}

std::optional<BY_HANDLE_FILE_INFORMATION> InformationOf(const std::string& path) {
  const OpenHandle handle(OpenForQuery(ToWidePath(path)));
  BY_HANDLE_FILE_INFORMATION information{};
  if (!handle || !GetFileInformationByHandle(handle.get(), &information)) return std::nullopt;
  return information;
}

FolderIdentity IdentityOf(HANDLE folder, const BY_HANDLE_FILE_INFORMATION& information) noexcept {
  // 64-bit file numbers are not unique on every file system, and not every file system has 128-bit
  // ones.
  FILE_ID_INFO id{};
  if (GetFileInformationByHandleEx(folder, FileIdInfo, &id, sizeof id)) {
    FolderIdentity identity{id.VolumeSerialNumber, 0, 0};
    std::memcpy(&identity.number, id.FileId.Identifier, sizeof identity.number);
    std::memcpy(&identity.number_high, id.FileId.Identifier + sizeof identity.number,
                sizeof identity.number_high);
    return identity;
  }
  return {information.dwVolumeSerialNumber,
          (std::uint64_t{information.nFileIndexHigh} << 32U) | information.nFileIndexLow, 0};
}

/// Whether an entry is a symbolic link, a junction or a mounted volume. Other reparse points (cloud
/// files, compressed files) are ordinary entries.
bool IsLink(const WIN32_FIND_DATAW& found) noexcept {
  return (found.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0 &&
         (found.dwReserved0 == IO_REPARSE_TAG_SYMLINK ||
          found.dwReserved0 == IO_REPARSE_TAG_MOUNT_POINT);
}

class FindHandle {
 public:
  explicit FindHandle(HANDLE handle) noexcept : handle_(handle) {}
  FindHandle(const FindHandle&) = delete;
  FindHandle& operator=(const FindHandle&) = delete;
  ~FindHandle() {
    if (handle_ != INVALID_HANDLE_VALUE) FindClose(handle_);
  }
  HANDLE get() const noexcept { return handle_; }

 private:
  HANDLE handle_;
};

}  // namespace

FolderListing ListFolder(const std::string& folder, const ListRequest& request) {
  FolderListing listing;
  const std::string base = EnsureTrailingBackslash(folder);
  WIN32_FIND_DATAW found{};
  const FindHandle search(FindFirstFileExW((ToWidePath(base) + L"*").c_str(), FindExInfoBasic,
                                           &found, FindExSearchNameMatch, nullptr,
                                           FIND_FIRST_EX_LARGE_FETCH));
  // The root of an empty disk has no "." entry, so FindFirstFileExW reports ERROR_FILE_NOT_FOUND.
  if (search.get() == INVALID_HANDLE_VALUE) {
    const DWORD error = GetLastError();
    listing.opened = error == ERROR_FILE_NOT_FOUND;
    listing.not_there = !listing.opened && IsNotThere(error);
    if (!listing.opened && !listing.not_there) listing.problem = SystemErrorText(error);
    return listing;
  }
  listing.opened = true;
  if (request.subfolders) listing.identity = IdentityOfFolder(base).value_or(FolderIdentity());
  do {
    const std::wstring_view wide(found.cFileName);
    if (wide == L"." || wide == L"..") continue;
    const std::string name = FromWide(wide);
    if ((found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0) {
      if (request.others && MatchesFilePattern(name, request.pattern))
        listing.others.push_back(name);
      if (request.subfolders || (request.real_subfolders && !IsLink(found)))
        listing.subfolders.push_back({name, IsLink(found)});
      continue;
    }
    if (!MatchesFilePattern(name, request.pattern)) {
      if (!request.counted.empty() && !name.starts_with("._") &&
          MatchesFilePattern(name, request.counted))
        ++listing.counted;
      continue;
    }
    std::uint64_t size = (std::uint64_t{found.nFileSizeHigh} << 32U) | found.nFileSizeLow;
    if (IsLink(found)) {
      const auto target = InformationOf(base + name);
      if (!target || (target->dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0) {
        if (request.others) listing.others.push_back(name);
        continue;
      }
      size = (std::uint64_t{target->nFileSizeHigh} << 32U) | target->nFileSizeLow;
    }
    listing.files.push_back({.name = name, .size = request.sizes ? size : 0, .tail = {}});
  } while (FindNextFileW(search.get(), &found));
  if (const DWORD error = GetLastError(); error != ERROR_NO_MORE_FILES)
    listing.problem = SystemErrorText(error);
  return listing;
}

std::string ReadPendingFiles(const std::string& /*folder*/, std::size_t /*tail_bytes*/,
                             std::span<FileEntry> /*files*/) {
  return {};  // ListFolder reads no tails, so no file is pending.
}

std::optional<FolderIdentity> IdentityOfFolder(const std::string& path) {
  const OpenHandle handle(OpenForQuery(ToWidePath(path)));
  BY_HANDLE_FILE_INFORMATION information{};
  if (!handle || !GetFileInformationByHandle(handle.get(), &information) ||
      (information.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) == 0)
    return std::nullopt;
  return IdentityOf(handle.get(), information);
}

bool FileExists(const std::string& path) {
  const DWORD attributes = GetFileAttributesW(ToWidePath(path).c_str());
  if (attributes == INVALID_FILE_ATTRIBUTES) return false;
  if ((attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0) {
    const auto information = InformationOf(path);
    return information && (information->dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) == 0;
  }
  return (attributes & (FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_DEVICE)) == 0;
}

FileStatus CheckFile(const std::string& path) {
  WIN32_FILE_ATTRIBUTE_DATA data{};
  if (!GetFileAttributesExW(ToWidePath(path).c_str(), GetFileExInfoStandard, &data)) {
    const DWORD error = GetLastError();
    if (IsNotThere(error)) return {FilePresence::kNotThere, 0, {}};
    return {FilePresence::kUnknown, 0, SystemErrorText(error)};
  }
  DWORD attributes = data.dwFileAttributes;
  std::uint64_t size = (std::uint64_t{data.nFileSizeHigh} << 32U) | data.nFileSizeLow;
  if ((attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0) {
    const auto target = InformationOf(path);
    if (!target) return {FilePresence::kUnknown, 0, SystemErrorText(GetLastError())};
    attributes = target->dwFileAttributes;
    size = (std::uint64_t{target->nFileSizeHigh} << 32U) | target->nFileSizeLow;
  }
  if ((attributes & (FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_DEVICE)) != 0)
    return {FilePresence::kNotThere, 0, {}};
  return {FilePresence::kThere, size, {}};
}

FolderState StateOfFolder(const std::string& path) {
  WIN32_FIND_DATAW found{};
  const FindHandle search(
      FindFirstFileExW((ToWidePath(EnsureTrailingBackslash(path)) + L"*").c_str(), FindExInfoBasic,
                       &found, FindExSearchNameMatch, nullptr, 0));
  if (search.get() == INVALID_HANDLE_VALUE) {
    const DWORD error = GetLastError();
    // The root of an empty disk has no "." entry.
    if (error == ERROR_FILE_NOT_FOUND) return FolderState::kEmpty;
    return IsNotThere(error) ? FolderState::kNotThere : FolderState::kUnreadable;
  }
  do {
    const std::wstring_view name(found.cFileName);
    if (name != L"." && name != L"..") return FolderState::kHasEntries;
  } while (FindNextFileW(search.get(), &found));
  return GetLastError() == ERROR_NO_MORE_FILES ? FolderState::kEmpty : FolderState::kUnreadable;
}

bool IsGone(const std::string& path) {
  if (GetFileAttributesW(ToWidePath(path).c_str()) != INVALID_FILE_ATTRIBUTES) return false;
  const DWORD error = GetLastError();
  return error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND;
}

bool IsSamePath(const std::string& path, const std::string& other) {
  const auto real = [](const std::string& of) {
    const std::string absolute = AbsolutePath(of);
    if (FileExists(absolute)) return RealPathOfFolder(absolute);
    // The file does not exist; its folder may.
    return EnsureTrailingBackslash(RealPathOfFolder(std::string(FolderOfPath(absolute))))
        .append(NameOfPath(absolute));
  };
  return EqualsIgnoringCase(path, other) || EqualsIgnoringCase(real(path), real(other));
}

bool FolderExists(const std::string& path) {
  const auto information = InformationOf(path);
  return information && (information->dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

std::optional<FileStamp> StampOf(const std::string& path) {
  const auto information = InformationOf(path);
  if (!information) return std::nullopt;
  const auto joined = [](DWORD high, DWORD low) { return (std::uint64_t{high} << 32U) | low; };
  return FileStamp{joined(information->nFileSizeHigh, information->nFileSizeLow),
                   static_cast<std::int64_t>(joined(information->ftLastWriteTime.dwHighDateTime,
                                                    information->ftLastWriteTime.dwLowDateTime))};
}

std::int32_t DayOf(const FileStamp& stamp) noexcept {
  return static_cast<std::int32_t>(stamp.modified / kTicksADay - kDaysBefore1970);
}

bool FolderIsWritable(const std::string& path) {
  if (!FolderExists(path)) return false;
  // A folder's read-only attribute says nothing about access, so create a file. The process id
  // keeps two programs that test at once from sharing a name.
  const std::wstring probe = ToWidePath(EnsureTrailingBackslash(path) + "tallow-write-test-" +
                                        std::to_string(GetCurrentProcessId()) + ".new");
  const OpenHandle handle(CreateFileW(probe.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                                      FILE_ATTRIBUTE_TEMPORARY | FILE_FLAG_DELETE_ON_CLOSE,
                                      nullptr));
  return static_cast<bool>(handle);
}

void CreateFolder(const std::string& path) {
  if (CreateDirectoryW(ToWidePath(path).c_str(), nullptr)) return;
  const DWORD error = GetLastError();
  if (FolderExists(path)) return;
  throw FileError(path, SystemErrorText(error));
}

bool RemoveFile(const std::string& path) noexcept {
  return DeleteFileW(ToWidePath(path).c_str()) || IsMissing(GetLastError());
}

namespace {

/// Opens a file for reading.
///
/// \returns INVALID_HANDLE_VALUE when there is no file
/// \throws FileError when the file cannot be opened, and when the path is a dangling link
HANDLE OpenIfThere(const std::string& path) {
  for (bool again = false;; again = true) {
    const HANDLE file = OpenForReading(ToWidePath(path));
    if (file != INVALID_HANDLE_VALUE) return file;
    const DWORD error = GetLastError();
    if (!IsNotThere(error)) throw FileError(path, SystemErrorText(error));
    if (IsGone(path)) return file;
    // Something is there now: a dangling link, or a file that was created a moment ago.
    if (again) throw FileError(path, "is a broken link");
  }
}

}  // namespace

std::optional<std::string> ReadWholeFile(const std::string& path, std::uint64_t max_bytes) {
  const OpenHandle file(OpenIfThere(path));
  if (!file) return std::nullopt;
  if (GetFileType(file.get()) != FILE_TYPE_DISK) throw FileError(path, "is not a regular file");
  LARGE_INTEGER size{};
  if (!GetFileSizeEx(file.get(), &size)) throw FileError(path, SystemErrorText(GetLastError()));
  if (static_cast<std::uint64_t>(size.QuadPart) > max_bytes)
    throw FileTooLargeError(path, "has more than " + std::to_string(max_bytes) + " bytes");
  std::string content(static_cast<std::size_t>(size.QuadPart), '\0');
  std::size_t filled = 0;
  while (filled < content.size()) {
    constexpr std::size_t kMaxAtOnce = std::numeric_limits<std::int32_t>::max();
    DWORD got = 0;
    if (!ReadFile(file.get(), content.data() + filled,
                  static_cast<DWORD>(std::min(content.size() - filled, kMaxAtOnce)), &got, nullptr))
      throw FileError(path, SystemErrorText(GetLastError()));
    if (got == 0) break;
    filled += got;
  }
  content.resize(filled);
  return content;
}

std::string AbsolutePath(const std::string& path) {
  const std::wstring wide = ToWide(path);
  const DWORD needed = GetFullPathNameW(wide.c_str(), 0, nullptr, nullptr);
  std::wstring full(needed, L'\0');
  const DWORD length = GetFullPathNameW(wide.c_str(), needed, full.data(), nullptr);
  if (length == 0 || length >= needed) return path;
  full.resize(length);
  return FromWide(full);
}

std::string RealPathOfFolder(const std::string& path) {
  // Works for files too.
  const OpenHandle handle(OpenForQuery(ToWidePath(path)));
  if (!handle) return path;
  const DWORD needed = GetFinalPathNameByHandleW(handle.get(), nullptr, 0, FILE_NAME_NORMALIZED);
  std::wstring real(needed, L'\0');
  const DWORD length =
      GetFinalPathNameByHandleW(handle.get(), real.data(), needed, FILE_NAME_NORMALIZED);
  if (length == 0 || length >= needed) return path;
  real.resize(length);
  constexpr std::wstring_view kShare = L"\\\\?\\UNC\\";
  constexpr std::wstring_view kLong = L"\\\\?\\";
  if (real.starts_with(kShare)) return FromWide(L"\\\\" + real.substr(kShare.size()));
  if (real.starts_with(kLong)) real.erase(0, kLong.size());
  return FromWide(real);
}

TailResult ReadTail(const std::string& path, std::span<char> bytes) {
  const OpenHandle file(OpenForReading(ToWidePath(path)));
  LARGE_INTEGER size{};
  if (!file || GetFileType(file.get()) != FILE_TYPE_DISK || !GetFileSizeEx(file.get(), &size))
    return TailResult::kFailed;
  const auto wanted = static_cast<LONGLONG>(bytes.size());
  if (size.QuadPart <= wanted) return TailResult::kTooShort;
  OVERLAPPED where{};
  const auto begin = static_cast<std::uint64_t>(size.QuadPart - wanted);
  where.Offset = static_cast<DWORD>(begin & 0xFFFFFFFFU);
  where.OffsetHigh = static_cast<DWORD>(begin >> 32U);
  DWORD got = 0;
  if (!ReadFile(file.get(), bytes.data(), static_cast<DWORD>(bytes.size()), &got, &where) ||
      got != bytes.size())
    return TailResult::kFailed;
  return TailResult::kRead;
}

}  // namespace tallow
