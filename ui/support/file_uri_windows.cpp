// SPDX-License-Identifier: GPL-3.0-or-later
#include <algorithm>

#include "ui/support/file_uri.h"

namespace tallow {

std::optional<std::string> PathOfFileUri(const QByteArray& machine, std::string path) {
  // Another host name means a share on that computer; no host name means a local drive.
  if (machine.isEmpty() || machine == "localhost")
    path.erase(0, 1);
  else
    path.insert(0, "//" + machine.toStdString());
  std::replace(path.begin(), path.end(), '/', '\\');
  return path;
}

std::string PathInFileUri(const std::string& path) {
  std::string generic = "/" + path;
  std::replace(generic.begin(), generic.end(), '\\', '/');
  return generic;
}

}  // namespace tallow
