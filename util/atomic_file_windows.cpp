// SPDX-License-Identifier: GPL-3.0-or-later
#include <algorithm>
#include <exception>
#include <windows.h>

#include "util/atomic_file.h"
#include "util/atomic_file_platform.h"
#include "util/errors.h"
#include "util/open_file_windows.h"
#include "util/wide_text_windows.h"

namespace tallow {
namespace {

/// How often to try to rename over the old file while another process (an index service, a virus
/// scanner) has it open, and the pause between two tries, in ms.
constexpr int kTries = 20;
constexpr DWORD kPause = 10;

[[noreturn]] void Fail(const std::string& path, DWORD error) {
  throw FileError(path, SystemErrorText(error));
}

/// Writes and flushes the content; returns the error number of the call that failed, or
/// ERROR_SUCCESS.
DWORD WriteAll(HANDLE file, std::string_view content) {
  constexpr std::size_t kMaxAtOnce = std::size_t{1} << 30U;
  while (!content.empty()) {
    DWORD written = 0;
    if (!WriteFile(file, content.data(), static_cast<DWORD>(std::min(content.size(), kMaxAtOnce)),
                   &written, nullptr))
      return GetLastError();
    content.remove_prefix(written);
  }
  return FlushFileBuffers(file) ? ERROR_SUCCESS : GetLastError();
}

bool MayPass(DWORD error) noexcept {
  return error == ERROR_SHARING_VIOLATION || error == ERROR_ACCESS_DENIED ||
         error == ERROR_LOCK_VIOLATION;
}

bool IsLink(DWORD attributes) noexcept {
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
}

/// The path of a file with every link resolved. Empty, with the last error set, for a dangling
/// link.
std::wstring TargetOf(const std::wstring& path) {
  constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
  const OpenHandle file(
      CreateFileW(path.c_str(), 0, kShareAll, nullptr, OPEN_EXISTING, 0, nullptr));
  if (!file) return {};
  std::wstring target(GetFinalPathNameByHandleW(file.get(), nullptr, 0, FILE_NAME_NORMALIZED), 0);
  const DWORD length = GetFinalPathNameByHandleW(
      file.get(), target.data(), static_cast<DWORD>(target.size()), FILE_NAME_NORMALIZED);
  target.resize(std::min<std::size_t>(length, target.size()));
  return target;
}

HANDLE CreateBeside(const std::wstring& path) noexcept {
  for (int tried = 1;; ++tried) {
    const HANDLE file = CreateFileW(path.c_str(), GENERIC_WRITE, FILE_SHARE_DELETE, nullptr,
                                    CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file != INVALID_HANDLE_VALUE || tried >= kTries || !MayPass(GetLastError())) return file;
    Sleep(kPause);
  }
}

}  // namespace

void WriteFileAtomically(const std::string& path, std::string_view content,
                         const std::function<void()>& before_replacing) {
  std::wstring target = ToWidePath(path);
  if (IsLink(GetFileAttributesW(target.c_str()))) {
    target = TargetOf(target);
    if (target.empty()) Fail(path, GetLastError());
  }
  const std::wstring beside = target + ToWide(kTemporarySuffix);
  // Remove a temporary file left by an earlier writer. If it were a link, the write would go to
  // another file.
  DeleteFileW(beside.c_str());
  const DWORD attributes = GetFileAttributesW(target.c_str());
  if (attributes == INVALID_FILE_ATTRIBUTES && GetLastError() != ERROR_FILE_NOT_FOUND)
    Fail(path, GetLastError());
  if (attributes != INVALID_FILE_ATTRIBUTES &&
      (attributes & (FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_DIRECTORY)) != 0)
    Fail(path, ERROR_ACCESS_DENIED);
  {
    const OpenHandle file(CreateBeside(beside));
    if (!file) Fail(path, GetLastError());
    const DWORD error = WriteAll(file.get(), content);
    if (error != ERROR_SUCCESS) {
      // Windows removes the name only when the handle is closed; until then this marks the file for
      // deletion.
      DeleteFileW(beside.c_str());
      Fail(path, error);
    }
  }
  try {
    if (before_replacing) before_replacing();
  } catch (...) {
    DeleteFileW(beside.c_str());
    throw;
  }
  for (int tried = 1;; ++tried) {
    if (MoveFileExW(beside.c_str(), target.c_str(),
                    MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH))
      return;
    const DWORD error = GetLastError();
    if (tried >= kTries || !MayPass(error)) {
      DeleteFileW(beside.c_str());
      Fail(path, error);
    }
    Sleep(kPause);
  }
}

bool LinkBackup(const std::string& path, const std::string& backup) noexcept {
  try {
    const std::wstring beside = ToWidePath(backup) + ToWide(kTemporarySuffix);
    DeleteFileW(beside.c_str());
    if (!CreateHardLinkW(beside.c_str(), ToWidePath(path).c_str(), nullptr)) return false;
    const bool renamed = MoveFileExW(beside.c_str(), ToWidePath(backup).c_str(),
                                     MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) != FALSE;
    // Renaming one hard link over another link to the same file may fail, so remove the first name.
    DeleteFileW(beside.c_str());
    return renamed;
  } catch (const std::exception&) {
    return false;
  }
}

bool IsLinkToFile(const std::string& path) noexcept {
  try {
    const std::wstring wide = ToWidePath(path);
    return IsLink(GetFileAttributesW(wide.c_str())) && !TargetOf(wide).empty();
  } catch (const std::exception&) {
    return false;
  }
}

void MoveFileTo(const std::string& path, const std::string& other) {
  if (!MoveFileExW(ToWidePath(path).c_str(), ToWidePath(other).c_str(),
                   MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH))
    Fail(path, GetLastError());
}

}  // namespace tallow
