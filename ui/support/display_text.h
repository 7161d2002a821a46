// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include <QString>
#include <QStringList>

namespace tallow {

/// Converts a text of the core for display: cuts the text at its first NUL, replaces invalid UTF-8
/// by the replacement character, and replaces line breaks and other control characters by blanks.
/// Only for display: the core keeps the original bytes.
QString DisplayText(std::string_view text);

/// Converts a message for display: like DisplayText, but keeps line breaks and control characters.
QString DisplayMessage(std::string_view text);

/// DisplayMessage of each text.
QStringList DisplayMessages(const std::vector<std::string>& texts);

}  // namespace tallow
