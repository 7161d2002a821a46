// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>

#include "util/file_system.h"

namespace tallow {

/// A regular file that is open for reading at any position. Other programs may read, write, rename
/// or delete it meanwhile. Used by one thread at a time.
class InputFile {
 public:
  /// Opens a file. Never blocks on a pipe or device.
  ///
  /// \returns null when it is not a regular file or cannot be opened
  static std::unique_ptr<InputFile> Open(const std::string& path);

  InputFile(const InputFile&) = delete;
  InputFile& operator=(const InputFile&) = delete;
  virtual ~InputFile() = default;

  /// Size and time of change when the file was opened, as StampOf returns them.
  const FileStamp& Stamp() const noexcept { return stamp_; }

  /// Reads bytes at a position, fewer at the end of the file.
  ///
  /// \param offset from 0, the first byte
  /// \returns how many bytes were read; 0 at the end of the file and when it cannot be read
  virtual std::size_t ReadAt(std::uint64_t offset, std::span<char> bytes) = 0;

  /// Whether a read ended with an error of the disk, not at the end of the file.
  bool HasFailed() const noexcept { return has_failed_; }

 protected:
  explicit InputFile(FileStamp stamp) noexcept : stamp_(stamp) {}
  void SetFailed() noexcept { has_failed_ = true; }

 private:
  FileStamp stamp_;
  bool has_failed_ = false;
};

}  // namespace tallow
