// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

namespace tallow {

/// Quotes a value for a message: in single quotes, with control characters replaced by question
/// marks, and cut to 60 bytes.
inline std::string Quoted(std::string_view value) {
  constexpr std::size_t kMaxShown = 60;
  std::string shown(value.substr(0, kMaxShown));
  for (char& c : shown)
    if (static_cast<unsigned char>(c) < ' ' || c == '\x7F') c = '?';
  return "'" + shown + (value.size() > kMaxShown ? " . . .'" : "'");
}

/// A text that had to be a number (or a boolean) is not one.
class TypeMismatchError : public std::runtime_error {
 public:
  explicit TypeMismatchError(std::string_view value)
      : std::runtime_error(Quoted(value) + " is not a number"), value_(value) {}
  /// The text as it was read.
  const std::string& value() const noexcept { return value_; }

 private:
  std::string value_;
};

/// A number is out of the range of its integer type.
class OverflowError : public std::runtime_error {
 public:
  explicit OverflowError(std::string_view value)
      : std::runtime_error(Quoted(value) + " is out of range"), value_(value) {}
  /// The text as it was read.
  const std::string& value() const noexcept { return value_; }

 private:
  std::string value_;
};

/// A row or column index is outside the table.
class SubscriptError : public std::out_of_range {
 public:
  using std::out_of_range::out_of_range;
};

/// A file or folder could not be opened, read or written.
class FileError : public std::runtime_error {
 public:
  /// \param path   the file or folder that caused the error
  /// \param reason the system's message, e.g. "No space left on device"
  FileError(std::string_view path, std::string_view reason)
      : std::runtime_error(std::string(path) + ": " + std::string(reason)),
        path_(path),
        reason_(reason) {}
  /// The file or folder that caused the error.
  const std::string& path() const noexcept { return path_; }
  /// The system's message.
  const std::string& reason() const noexcept { return reason_; }

 private:
  std::string path_;
  std::string reason_;
};

/// A file exceeds the size limit of its kind, so it is not read.
class FileTooLargeError : public FileError {
 public:
  using FileError::FileError;
};

}  // namespace tallow
