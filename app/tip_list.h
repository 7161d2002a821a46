// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <random>
#include <string>
#include <vector>

namespace tallow {

/// The name of the file that holds the tips, a tip a line.
inline constexpr const char* kTipFile = "TIPOFDAY.TXT";

/// The tips of the tip window. They count from 1.
class TipList {
 public:
  /// \param seed of the random choice
  explicit TipList(std::mt19937::result_type seed) : random_(seed) {}

  /// Adds every line of a file, blank ones too, and chooses a tip.
  ///
  /// \returns false for an empty path and for a file that is not there or cannot be read
  bool Load(const std::string& path);

  std::size_t Count() const noexcept { return tips_.size(); }

  /// Chooses a tip at random, each with the same chance; the same may come twice.
  void Next();

  /// The chosen tip; null when there is none.
  const std::string* Current() const noexcept {
    return current_ == 0 ? nullptr : &tips_[current_ - 1];
  }

 private:
  std::vector<std::string> tips_;
  std::size_t current_ = 0;  ///< from 1; 0 for none
  std::mt19937 random_;
};

/// Where the tips are read from: the application folder, or else the folder of the program.
/// \param program_folder ends in a separator
/// \returns the path in the application folder where neither has the file
std::string TipFilePath(const std::string& application_folder, const std::string& program_folder);

/// What is shown where there is no file of tips.
std::string NoTipsText();

}  // namespace tallow
