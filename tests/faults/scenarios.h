// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "tests/faults/test_world.h"

namespace tallow {

/// Actions of a user during which the disk fails.
struct Scenario {
  std::string name;
  /// Makes the files that exist before the action, in a new world.
  std::function<void(const World&)> prepare;
  /// Performs the action. Calls `from_here` at the point from which faults may occur.
  /// \returns the messages to the user, and everything that did not succeed
  std::function<std::vector<std::string>(const World&, const std::function<void()>& from_here)> act;
  /// Restores missing songs at the end; may be empty.
  std::function<void(const World&)> put_back;
};

/// Makes a world of seven songs, five of which are ranked: two songs are on the removed stick and
/// one is missing. Also makes two jukeboxes and settings.
void MakeCollection(const World& world);

/// All scenarios, in the order of the report.
std::vector<Scenario> AllScenarios();

}  // namespace tallow
