// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

#include <QString>

namespace tallow {

class clsINI;

/// Returns the address of the background picture of the song lists: "file:\\" and the path from the
/// settings; empty if the settings disable the picture or its file does not exist.
QString PictureAddress(const clsINI& settings);

/// Returns why the picture in the settings cannot be shown, as far as this is known without opening
/// the file: its path is not a regular file. Empty if the settings disable the picture or its file
/// is gone.
std::string PictureAddressProblem(const clsINI& settings);

}  // namespace tallow
