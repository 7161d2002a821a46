// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace tallow {

/// Returns the name of an undo step that concerns songs: "Move 3 Songs", "Move Song" for one.
/// \param verb in the imperative, with a capital letter
std::string NameOfSongStep(std::string_view verb, std::size_t songs);

}  // namespace tallow
