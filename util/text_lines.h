// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string_view>
#include <vector>

namespace tallow {

/// The line end of every text file that the program writes, on all systems.
inline constexpr std::string_view kLineEnd = "\r\n";

/// Splits a text file into lines, without their line ends. If the file contains CR LF anywhere,
/// only CR LF ends a line; otherwise a single CR or LF does (the file was saved by an editor of
/// another system). The last line need not have a line end; an empty file has no lines.
std::vector<std::string_view> SplitLines(std::string_view text);

}  // namespace tallow
