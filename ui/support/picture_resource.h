// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class QLabel;
class QString;

namespace tallow {

/// Shows a picture that is built into the program: writes the resource to a temporary file
/// "myfile." and the extension, loads that as the label's picture, and deletes it.
///
/// \param number    of the resource, of the type "Custom"
/// \param extension of the file, which tells its format
///
/// A picture that cannot be written or loaded leaves the label without one.
void LoadPictureFromResource(int number, QLabel& image, const char* extension);

}  // namespace tallow
