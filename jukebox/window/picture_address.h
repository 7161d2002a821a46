// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace tallow {

class clsINI;

/// The address of the picture behind the song lists: "file:\\" and the path that the settings hold; empty
/// where they want no picture or its file is not there.
QString PictureAddress(const clsINI& settings);

}  // namespace tallow
