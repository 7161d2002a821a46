// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string_view>
#include <vector>

namespace tallow {

/// What ends a line of every text file the program writes, on all systems.
inline constexpr std::string_view kLineEnd = "\r\n";

/// The lines of a text file, without their ends. CR LF ends a line, and so does either of the two
/// alone, so that a file that went through an editor of another system still reads. The last line
/// need not be ended; a file of no bytes has no line.
std::vector<std::string_view> SplitLines(std::string_view text);

}  // namespace tallow
