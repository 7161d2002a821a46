// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QIcon>

namespace tallow {

/// One of the program's pictures, crisp at every size.
/// \param name of a file in ui/pictures, without its extension
QIcon FramePicture(const char* name);

}  // namespace tallow
