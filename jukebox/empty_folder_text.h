// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string_view>

namespace tallow {

class Folder;

/// What the list of a folder without songs on show tells: what the folder is for, and how songs get
/// into it; of hits of a search, that nothing was found.
std::string_view EmptyFolderText(const Folder& folder) noexcept;

}  // namespace tallow
