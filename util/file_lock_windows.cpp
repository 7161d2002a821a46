// SPDX-License-Identifier: GPL-3.0-or-later
#include <windows.h>

#include "util/file_lock.h"
#include "util/open_file_windows.h"
#include "util/wide_text_windows.h"

namespace tallow {

struct FileLock::File : OpenHandle {
  using OpenHandle::OpenHandle;
};

FileLock::FileLock() = default;
FileLock::~FileLock() = default;

FileLock::Answer FileLock::Acquire(const std::string& path) {
  // A file opened without sharing cannot be opened again until it is closed.
  const HANDLE handle = CreateFileW(ToWidePath(path).c_str(), GENERIC_READ | GENERIC_WRITE, 0,
                                    nullptr, OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (handle == INVALID_HANDLE_VALUE)
    return GetLastError() == ERROR_SHARING_VIOLATION ? Answer::kInUse : Answer::kImpossible;
  file_ = std::make_unique<File>(handle);
  return Answer::kHeld;
}

}  // namespace tallow
