// SPDX-License-Identifier: GPL-3.0-or-later
#include <windows.h>

#include "util/exclusive_file.h"
#include "util/open_file_windows.h"
#include "util/wide_text_windows.h"

namespace tallow {

MadeFile MakeExclusiveFile(const std::string& path, std::string_view content) {
  const std::wstring wide = ToWidePath(path);
  {
    const OpenHandle file(CreateFileW(wide.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW,
                                      FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!file) {
      const DWORD error = GetLastError();
      // A folder of that name is refused with its own error.
      const bool exists = error == ERROR_FILE_EXISTS || error == ERROR_ALREADY_EXISTS ||
                          GetFileAttributesW(wide.c_str()) != INVALID_FILE_ATTRIBUTES;
      return exists ? MadeFile::kExists : MadeFile::kImpossible;
    }
    DWORD written = 0;
    if (WriteFile(file.get(), content.data(), static_cast<DWORD>(content.size()), &written,
                  nullptr) &&
        written == content.size())
      return MadeFile::kMade;
  }
  DeleteFileW(wide.c_str());
  return MadeFile::kImpossible;
}

std::optional<std::string> ReadSmallFile(const std::string& path, std::size_t most_bytes) {
  const OpenHandle file(OpenForReading(ToWidePath(path)));
  if (!file || GetFileType(file.get()) != FILE_TYPE_DISK) return std::nullopt;
  std::string content(most_bytes + 1, '\0');
  DWORD got = 0;
  if (!ReadFile(file.get(), content.data(), static_cast<DWORD>(content.size()), &got, nullptr) ||
      got > most_bytes)
    return std::nullopt;
  content.resize(got);
  return content;
}

bool NameIsTaken(const std::string& path) {
  if (GetFileAttributesW(ToWidePath(path).c_str()) != INVALID_FILE_ATTRIBUTES) return true;
  const DWORD error = GetLastError();
  return error != ERROR_FILE_NOT_FOUND && error != ERROR_PATH_NOT_FOUND;
}

bool RenameOver(const std::string& from, const std::string& to) {
  return MoveFileExW(ToWidePath(from).c_str(), ToWidePath(to).c_str(), MOVEFILE_REPLACE_EXISTING) !=
         FALSE;
}

}  // namespace tallow
