// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class QLineEdit;

namespace tallow {

/// Derives the colour of a field's placeholder from the colour of its text, now and after each
/// change of colours. Some dark desktops leave the placeholder black.
void MakePlaceholderReadable(QLineEdit& field);

}  // namespace tallow
