// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <string>
#include <string_view>

namespace tallow {

/// The music files that the last scans have seen but not added, because they are of formats that
/// the switches leave out.
class OtherFormats {
 public:
  /// Numbers of files by folder, which ends in a separator. Sorted; no number is 0.
  using Folders = std::map<std::string, std::size_t, std::less<>>;

  /// Forgets all files, at the start of a scan.
  void Clear() noexcept;

  /// Stores the number of files directly in a folder, in place of an earlier number.
  void Set(std::string_view folder, std::size_t files);

  /// The number of all files.
  std::size_t Files() const noexcept { return files_; }
  const Folders& ByFolder() const noexcept { return folders_; }

 private:
  Folders folders_;
  std::size_t files_ = 0;  ///< in all folders
};

}  // namespace tallow
