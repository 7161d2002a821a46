// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <string_view>

namespace tallow {

/// Converts a path to a file URL. Bytes other than plain ASCII are percent-encoded.
std::string FileUrl(std::string_view path);

/// Makes a text valid for the bus: replaces invalid UTF-8 and noncharacters by question marks.
std::string BusText(std::string_view text);

}  // namespace tallow
