// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace tallow {

/// Returns a tooltip that shows a text as it is, even if it looks like HTML, and wraps a long one.
/// Line breaks are kept. Empty for an empty text.
QString ToolTipText(const QString& text);

}  // namespace tallow
