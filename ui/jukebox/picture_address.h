// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

#include <QString>

namespace tallow {

class clsINI;

/// The address of the picture behind the song lists: "file:\\" and the path that the settings hold; empty
/// where they want no picture or its file is not there.
QString PictureAddress(const clsINI& settings);

/// Why the picture that the settings want cannot be shown, as far as that is seen without opening it: there
/// is no regular file at its path. Empty where they want none, and where it is gone.
std::string PictureAddressProblem(const clsINI& settings);

}  // namespace tallow
