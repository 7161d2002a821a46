// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace tallow {

/// A file in which the library remembers something beside the songs.
///
/// A damaged one is kept with ".bak" behind its name. One that cannot be read may hold what is needed
/// another day, so it is not replaced.
class StateFile {
 public:
  /// A file of more bytes is damaged. A million missing songs with long paths have less than half of it.
  static constexpr std::uint64_t kMaxBytes = std::uint64_t{1} << 30U;

  /// Reads the file; nothing where there is none.
  ///
  /// \param decode   takes over the content; what it throws says that the file is damaged, and why
  /// \param problems is told what is the matter, a sentence
  void Load(const std::string& path, const std::function<void(const std::string&)>& decode,
            std::vector<std::string>& problems);

  /// Replaces the file atomically; nothing where it could not be read.
  /// \throws FileError
  void Save(const std::string& bytes) const;

  /// Whether the last Load could not read the file. It may hold what is needed, and is not replaced.
  bool IsUnreadable() const noexcept { return is_unreadable_; }
  const std::string& path() const noexcept { return path_; }

 private:
  std::string path_;
  bool is_unreadable_ = false;
};

}  // namespace tallow
