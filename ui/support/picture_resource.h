// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class QLabel;
class QString;

namespace tallow {

/// Shows a picture that is built into the program: writes the resource to a temporary file named
/// "myfile." plus the extension, loads the file into the label, and deletes the file. If the
/// picture cannot be written or loaded, the label shows no picture.
///
/// \param number    number of the resource, of the type "Custom"
/// \param extension extension of the file, which determines its format
void LoadPictureFromResource(int number, QLabel& image, const char* extension);

}  // namespace tallow
