// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace tallow {

/// Whether what is selected in a list is written as all other text is: a theme of Windows makes its
/// selections light, whatever the palette says.
bool SelectionsAreLight();

}  // namespace tallow
