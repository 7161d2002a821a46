// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "library/library_settings.h"

namespace tallow {

/// The folder list: a file that names the folders in which songs were found, one in each line.
///
/// A list that cannot be read is not replaced, because it may name folders that no song is in.
class FolderList {
 public:
  /// A larger list is not read.
  static constexpr std::uint64_t kMaxBytes = std::uint64_t{256} << 20U;

  /// \param settings name the file; must outlive this object
  explicit FolderList(const LibrarySettings& settings) : settings_(settings) {}

  /// Whether the list must be written again, because it contains outdated folders, or lacks some.
  bool IsStale() const noexcept { return is_stale_; }
  void IsStale(bool stale) noexcept { is_stale_ = stale; }

  /// Forgets what was read.
  void Clear() noexcept;
  /// Reads the file.
  ///
  /// \param problems receives a sentence if the file cannot be read
  void Read(std::vector<std::string>& problems);
  /// Whether there is a file, and Read has read it.
  bool IsRead() const noexcept { return content_.has_value(); }
  /// Whether, since the last Clear, the file could not be read, or is damaged and could not be
  /// copied.
  bool IsUnread() const noexcept { return is_unread_; }

  /// The lines that were read, valid until the next call of another function. A line "0" comes from
  /// missing songs.
  std::vector<std::string_view> Lines() const;
  /// Whether the file was read, and is empty.
  bool IsEmpty() const noexcept { return content_ && content_->empty(); }
  /// Whether the file was read, and has a line that is no folder, or an incomplete one.
  bool IsDamaged() const;
  /// Keeps a copy of a damaged file; the list is then stale. If there can be none, it is unread.
  ///
  /// \param problems receives a sentence about it
  void KeepDamaged(std::vector<std::string>& problems);

  /// Replaces the file, unless it has this content or is unread. Error() returns the reason if that
  /// fails.
  void Write(const std::string& lines);
  /// The error of the last Write; empty for none.
  const std::string& Error() const noexcept { return error_; }

 private:
  std::string Path() const { return settings_.FileContainingTargetDirectories(); }

  const LibrarySettings& settings_;
  std::optional<std::string> content_;
  bool is_stale_ = false;
  bool is_unread_ = false;
  std::string error_;
};

}  // namespace tallow
