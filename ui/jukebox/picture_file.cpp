// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/jukebox/picture_file.h"

#include <algorithm>
#include <utility>

#include <QImageReader>

#include "ui/support/qt_path.h"
#include "util/file_system.h"

namespace tallow {
namespace {

/// Maximum length of the longer side of a picture, in pixels; no screen needs more. A larger
/// picture is scaled down while it is read.
constexpr int kMaxPixels = 2560;

/// Memory limit of libjpeg for one picture, in thousands of bytes; libjpeg reads it from the
/// environment. libjpeg keeps a progressive picture in memory at full size, even if it is scaled
/// down; the limit is enough for 40 million pixels. A larger picture is not read.
constexpr const char* kMaxMemory = "256000";

std::string Problem(const std::string& path, const std::string& reason) {
  return path + " cannot be shown behind the songs: " + reason +
         ". Choose a JPEG or PNG file with \"Change Backgroup Picture\".";
}

}  // namespace

std::string ProblemOfPicturePath(const std::string& path) {
  const FileStatus look = CheckFile(path);
  if (look.presence == FilePresence::kThere) return {};
  if (FolderExists(path)) return Problem(path, "it is a folder");
  if (look.presence == FilePresence::kUnknown) return Problem(path, look.problem);
  return Problem(path, IsGone(path) ? "it is gone" : "it is a pipe or a device");
}

PictureFile ReadPicture(const std::string& path) {
  if (std::string problem = ProblemOfPicturePath(path); !problem.empty())
    return {{}, std::move(problem)};
  qputenv("JPEGMEM", kMaxMemory);
  QImageReader reader(QtPath(path));
  reader.setAutoTransform(true);
  reader.setDecideFormatFromContent(true);
  const QSize size = reader.size();
  if (std::max(size.width(), size.height()) > kMaxPixels)
    reader.setScaledSize(size.scaled(kMaxPixels, kMaxPixels, Qt::KeepAspectRatio));
  PictureFile read{QPixmap::fromImageReader(&reader), {}};
  if (read.pixmap.isNull()) read.problem = Problem(path, reader.errorString().toStdString());
  return read;
}

}  // namespace tallow
