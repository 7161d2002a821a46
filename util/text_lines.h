// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string_view>
#include <vector>

namespace tallow {

/// What ends a line of every text file the program writes, on all systems.
inline constexpr std::string_view kLineEnd = "\r\n";

/// The lines of a text file, without their ends. In a file that has CR LF anywhere, only that ends a
/// line; in any other, which went through an editor of another system, a lone CR or LF does. The last
/// line need not be ended; a file of no bytes has no line.
std::vector<std::string_view> SplitLines(std::string_view text);

}  // namespace tallow
