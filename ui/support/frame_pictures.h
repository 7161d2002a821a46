// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QIcon>

namespace tallow {

/// Returns one of the program's icons, drawn sharply at every size.
/// \param name name of a file in ui/support/pictures, without its extension
QIcon FramePicture(const char* name);

}  // namespace tallow
