// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <vector>

namespace tallow {

/// The Winamps that are found without searching a disk: in the usual folders of programs, and where
/// Winamp's entry in the list of installed programs says. Reads a few folders; none on Linux.
/// \returns paths as stored in the settings, see PlayerAt, each once
std::vector<std::string> WinampsInUsualPlaces();

}  // namespace tallow
