// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string_view>

namespace tallow {

/// Whether a text comes before another one for a reader: without regard to letter case, and numbers by
/// their value, so that "Disc 2" comes before "Disc 10". Numbers are runs of the digits 0 to 9 of any
/// length.
bool NaturalLess(std::string_view a, std::string_view b);

}  // namespace tallow
