// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

#include <QPixmap>

namespace tallow {

/// A picture for behind the song lists.
struct PictureFile {
  QPixmap pixmap;  ///< null when there is none
  std::string
      problem;  ///< the file, what is the matter with it and what to do; empty for a picture
};

/// Reads a picture, turned as the camera has noted in it. The format is told by the content, not by the
/// name. A large one is made smaller, so that none takes more than some dozen MB.
///
/// Only a regular file is opened: a pipe or a device could keep the program waiting for ever.
PictureFile ReadPicture(const std::string& path);

/// What ReadPicture would say without opening the file: that there is a folder, a pipe or a device at the
/// path, or nothing that can be asked for. Empty for a regular file.
std::string ProblemOfPicturePath(const std::string& path);

}  // namespace tallow
