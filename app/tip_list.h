// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <random>
#include <string>
#include <vector>

namespace tallow {

/// The name of the file that holds the tips, one per line.
inline constexpr const char* kTipFile = "TIPOFDAY.TXT";

/// The tips of the tip window, numbered from 1.
class TipList {
 public:
  /// \param seed of the random choice
  explicit TipList(std::mt19937::result_type seed) : random_(seed) {}

  /// Adds every line of a file, including blank lines, and chooses a tip.
  ///
  /// \returns false when the path is empty, or the file does not exist or cannot be read
  bool Load(const std::string& path);

  std::size_t Count() const noexcept { return tips_.size(); }

  /// Chooses a tip at random with equal probability; the same tip may be chosen twice in a row.
  void Next();

  /// The chosen tip; null when there are no tips.
  const std::string* Current() const noexcept {
    return current_ == 0 ? nullptr : &tips_[current_ - 1];
  }

 private:
  std::vector<std::string> tips_;
  std::size_t current_ = 0;  ///< from 1; 0 for none
  std::mt19937 random_;
};

/// The file to read the tips from: in the application folder, else in the folder of the program.
/// \param program_folder ends in a separator
/// \returns the path in the application folder when neither folder has the file
std::string TipFilePath(const std::string& application_folder, const std::string& program_folder);

/// The text shown when there is no tip file.
std::string NoTipsText();

}  // namespace tallow
