// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <windows.h>

namespace tallow {

/// A file or folder handle that is closed when it goes out of scope.
class OpenHandle {
 public:
  /// \param handle what CreateFileW returned; INVALID_HANDLE_VALUE when it failed
  explicit OpenHandle(HANDLE handle) noexcept : handle_(handle) {}
  OpenHandle(const OpenHandle&) = delete;
  OpenHandle& operator=(const OpenHandle&) = delete;
  ~OpenHandle() {
    if (*this) CloseHandle(handle_);
  }

  explicit operator bool() const noexcept { return handle_ != INVALID_HANDLE_VALUE; }
  HANDLE get() const noexcept { return handle_; }

 private:
  HANDLE handle_;
};

/// Opens a file for reading; other processes may read, write, rename or delete it meanwhile.
inline HANDLE OpenForReading(const std::wstring& path) noexcept {
  return CreateFileW(path.c_str(), GENERIC_READ,
                     FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, OPEN_EXISTING,
                     FILE_ATTRIBUTE_NORMAL, nullptr);
}

}  // namespace tallow
