// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace tallow {

/// A file in which the library stores state other than the songs.
///
/// A damaged file is renamed to its name followed by ".bak". A file that cannot be read is never
/// replaced, because it may still contain valid data.
class StateFile {
 public:
  /// A larger file is damaged. A million missing songs with long paths take less than half of this.
  static constexpr std::uint64_t kMaxBytes = std::uint64_t{1} << 30U;

  /// Reads the file; does nothing when it does not exist.
  ///
  /// \param decode   parses the content; throws when the file is damaged
  /// \param problems receives error messages, one sentence each
  void Load(const std::string& path, const std::function<void(const std::string&)>& decode,
            std::vector<std::string>& problems);

  /// Replaces the file atomically; does nothing when the last Load could not read it.
  /// \throws FileError
  void Save(const std::string& bytes) const;

  /// Whether the last Load could not read the file. Such a file may contain valid data and is not
  /// replaced.
  bool IsUnreadable() const noexcept { return is_unreadable_; }
  const std::string& path() const noexcept { return path_; }

 private:
  std::string path_;
  bool is_unreadable_ = false;
};

}  // namespace tallow
