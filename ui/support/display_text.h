// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string_view>

#include <QString>

namespace tallow {

/// A text of the core as it is shown: up to its first NUL, what is no valid UTF-8 replaced by the
/// replacement character, line breaks and other control characters by blanks. Only for display: the
/// bytes themselves stay in the core.
QString DisplayText(std::string_view text);

/// The same without touching line breaks, for messages.
QString DisplayMessage(std::string_view text);

}  // namespace tallow
