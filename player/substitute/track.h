// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <string>

namespace tallow {

/// Properties of the current track.
struct Track {
  std::string path;
  std::string title;             ///< UTF-8; empty when the tag has none
  std::string artist;            ///< UTF-8; empty when the tag has none
  std::optional<double> length;  ///< in s; no value until the track is open
};

}  // namespace tallow
