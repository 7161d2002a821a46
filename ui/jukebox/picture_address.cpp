// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/jukebox/picture_address.h"

#include "app/cls_ini.h"
#include "ui/jukebox/picture_file.h"
#include "ui/support/qt_path.h"
#include "util/file_system.h"

namespace tallow {

QString PictureAddress(const clsINI& settings) {
  const std::string& path = settings.PictureLocation();
  if (!settings.IsThereAPicture() || !FileExists(path)) return {};
  return QStringLiteral("file:\\\\") + QtPath(path);
}

std::string PictureAddressProblem(const clsINI& settings) {
  const std::string& path = settings.PictureLocation();
  if (!settings.IsThereAPicture() || path.empty() || IsGone(path)) return {};
  return ProblemOfPicturePath(path);
}

}  // namespace tallow
