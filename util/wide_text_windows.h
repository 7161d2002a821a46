// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <string_view>

namespace tallow {

/// UTF-8 as the wide text of the system's calls. A lone surrogate, which a Windows file name may
/// hold, is written in UTF-8's own three-byte pattern and comes back unchanged.
std::wstring ToWide(std::string_view text);

/// The wide text of the system's calls as UTF-8.
std::string FromWide(std::wstring_view wide);

/// A path for the system's calls: an absolute one gets the prefix that lifts the limit of 260
/// characters.
std::wstring ToWidePath(std::string_view path);

/// The system's own text for an error number, without the full stop and the line break at its end.
std::string SystemErrorText(unsigned long error);

}  // namespace tallow
