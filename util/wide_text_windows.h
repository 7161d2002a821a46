// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <string_view>

namespace tallow {

/// Converts UTF-8 to the wide text of Windows calls. A lone surrogate, which a Windows file name
/// may contain, is encoded as three bytes in UTF-8 and converted back unchanged.
std::wstring ToWide(std::string_view text);

/// Converts the wide text of Windows calls to UTF-8.
std::string FromWide(std::wstring_view wide);

/// Converts a path for Windows calls: an absolute path gets the prefix \\?\, which lifts the limit
/// of 260 characters.
std::wstring ToWidePath(std::string_view path);

/// The system's message for an error number, without the full stop and the line break at its end.
std::string SystemErrorText(unsigned long error);

}  // namespace tallow
