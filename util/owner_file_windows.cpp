// SPDX-License-Identifier: GPL-3.0-or-later
#include <windows.h>

#include "util/open_file_windows.h"
#include "util/owner_file_platform.h"
#include "util/wide_text_windows.h"

namespace tallow {
namespace {

/// How often to try a file that another process is writing or deleting, and the pause between two
/// tries, in ms.
constexpr int kMaxTries = 20;
constexpr DWORD kPause = 10;

/// Opens a file; retries while another process has exclusive access to it.
/// \param open returns the handle, or INVALID_HANDLE_VALUE with the last error set
/// \param is_busy whether an error may be temporary
template <typename Open, typename IsBusy>
HANDLE OpenOnceFree(const Open& open, const IsBusy& is_busy) {
  for (int tried = 1;; ++tried) {
    const HANDLE file = open();
    if (file != INVALID_HANDLE_VALUE) return file;
    const DWORD error = GetLastError();
    if (tried >= kMaxTries || !is_busy(error)) {
      SetLastError(error);
      return file;
    }
    Sleep(kPause);
  }
}

}  // namespace

CreateResult MakeExclusiveFile(const std::string& path, std::string_view content) {
  const std::wstring wide = ToWidePath(path);
  {
    const OpenHandle file(OpenOnceFree(
        [&] {
          return CreateFileW(wide.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW,
                             FILE_ATTRIBUTE_NORMAL, nullptr);
        },
        [&](DWORD error) {
          // The name of a file that is being deleted is still reserved, though it has no
          // attributes.
          return error == ERROR_ACCESS_DENIED &&
                 GetFileAttributesW(wide.c_str()) == INVALID_FILE_ATTRIBUTES;
        }));
    if (!file) {
      const DWORD error = GetLastError();
      // For a folder of that name CreateFileW reports a different error, so check the attributes
      // too.
      const bool exists = error == ERROR_FILE_EXISTS || error == ERROR_ALREADY_EXISTS ||
                          GetFileAttributesW(wide.c_str()) != INVALID_FILE_ATTRIBUTES;
      return exists ? CreateResult::kExists : CreateResult::kImpossible;
    }
    DWORD written = 0;
    if (WriteFile(file.get(), content.data(), static_cast<DWORD>(content.size()), &written,
                  nullptr) &&
        written == content.size())
      return CreateResult::kMade;
  }
  DeleteFileW(wide.c_str());
  return CreateResult::kImpossible;
}

std::optional<std::string> ReadSmallFile(const std::string& path, std::size_t max_bytes) {
  const std::wstring wide = ToWidePath(path);
  const OpenHandle file(OpenOnceFree([&] { return OpenForReading(wide); },
                                     [](DWORD error) { return error == ERROR_SHARING_VIOLATION; }));
  if (!file || GetFileType(file.get()) != FILE_TYPE_DISK) return std::nullopt;
  std::string content(max_bytes + 1, '\0');
  DWORD got = 0;
  if (!ReadFile(file.get(), content.data(), static_cast<DWORD>(content.size()), &got, nullptr) ||
      got > max_bytes)
    return std::nullopt;
  content.resize(got);
  return content;
}

bool NameExists(const std::string& path) {
  if (GetFileAttributesW(ToWidePath(path).c_str()) != INVALID_FILE_ATTRIBUTES) return true;
  const DWORD error = GetLastError();
  return error != ERROR_FILE_NOT_FOUND && error != ERROR_PATH_NOT_FOUND;
}

bool RenameOver(const std::string& from, const std::string& to) {
  for (int tried = 1;; ++tried) {
    if (MoveFileExW(ToWidePath(from).c_str(), ToWidePath(to).c_str(), MOVEFILE_REPLACE_EXISTING))
      return true;
    // A file cannot be replaced while another process reads it.
    const DWORD error = GetLastError();
    const bool is_busy = error == ERROR_ACCESS_DENIED || error == ERROR_SHARING_VIOLATION;
    if (!is_busy || tried >= kMaxTries) return false;
    Sleep(kPause);
  }
}

}  // namespace tallow
