// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QColor>

class QPalette;

namespace tallow {

/// The background of a selection in a view that does not have the keyboard focus: a greyish form of
/// the colour of a selection. It has the same lightness in light and dark colour schemes, so white
/// text and white icons stay readable on it.
QColor MutedHighlight(const QPalette& colors);

}  // namespace tallow
