// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <vector>

namespace tallow {

class Tallow;

/// The notices of a start, collected until the windows that show them exist.
class StartUpNotices {
 public:
  /// \param tallow must outlive this object
  explicit StartUpNotices(Tallow& tallow) : tallow_(tallow) {}

  /// Adds a sentence, after the pending problems of the settings.
  void Add(std::string text);
  /// Add for several sentences.
  void Add(const std::vector<std::string>& texts);
  /// Adds the pending problems of the settings and of the library.
  void AddProblems();

  /// Returns, and clears, the notices in the order in which they were added.
  std::vector<std::string> TakeAll();

 private:
  void AddProblemsOfSettings();

  Tallow& tallow_;
  std::vector<std::string> notices_;
};

}  // namespace tallow
