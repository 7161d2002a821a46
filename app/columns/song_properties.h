// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace tallow {

class LibraryDetails;
class PlayCounts;
class clsMain;

/// A line of the properties of songs.
struct SongProperty {
  std::string name;   ///< "Artist"
  std::string value;  ///< never empty
};

/// In place of a value that the songs do not have in common.
inline constexpr const char* kDifferent = "(different)";

/// The properties of songs: details, counts and file. Of several songs, a value that all have is
/// shown, else kDifferent; lengths and sizes are added up. Does not ask the disk for the files.
///
/// \param songs record numbers, at least one
std::vector<SongProperty> PropertiesOf(std::span<const std::int32_t> songs, const clsMain& library,
                                       LibraryDetails& details, PlayCounts& counts);

}  // namespace tallow
