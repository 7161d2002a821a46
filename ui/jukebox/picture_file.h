// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

#include <QPixmap>

namespace tallow {

/// A background picture for the song lists.
struct PictureFile {
  QPixmap pixmap;  ///< null if there is no picture
  /// Names the file, what is wrong with it and what to do about it; empty if the picture was read.
  std::string problem;
};

/// Reads a picture and rotates it by the orientation that the camera has stored in it. The format
/// is detected from the content, not from the file name. A large picture is scaled down, so that a
/// picture needs at most some dozen MB.
///
/// Only regular files are opened: reading a pipe or a device could block for ever.
PictureFile ReadPicture(const std::string& path);

/// Returns the problem that ReadPicture would report without opening the file: the path is a
/// folder, a pipe or a device, does not exist, or cannot be examined. Empty for a regular file.
std::string ProblemOfPicturePath(const std::string& path);

}  // namespace tallow
