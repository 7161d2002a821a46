// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "tests/faults/test_world.h"

namespace tallow {

/// What a user does while the disk fails.
struct Scenario {
  std::string name;
  /// Makes the files of the moment before, in a new world.
  std::function<void(const World&)> prepare;
  /// Does it. Calls `from_here` where faults may begin.
  /// \returns what was said to the user, and all that did not succeed
  std::function<std::vector<std::string>(const World&, const std::function<void()>& from_here)> act;
  /// Puts back songs that have gone, in the end; may be empty.
  std::function<void(const World&)> put_back;
};

/// Makes a world of six ranked songs, two of them away with a stick and one missing, two jukeboxes, and
/// settings.
void MakeCollection(const World& world);

/// Every scenario, in the order of the report.
std::vector<Scenario> AllScenarios();

}  // namespace tallow
