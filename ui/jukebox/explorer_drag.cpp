// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/jukebox/explorer_drag.h"

#include <algorithm>
#include <utility>

#include <QSysInfo>

#include "jukebox/folder_tree.h"
#include "ui/jukebox/explorer/explorer_edits.h"
#include "ui/support/display_text.h"
#include "util/path_text.h"

namespace tallow {
namespace {

/// The MIME format of drags inside Tallow; Qt does not start a drag without any format.
constexpr const char* kOwnFormat = "application/x-tallow-jukebox";

constexpr QByteArrayView kFileScheme = "file://";

/// Returns whether a name is the host name of this computer, with or without its domain.
bool IsThisMachine(const QString& name) {
  const QString own = QSysInfo::machineHostName();
  const auto is = [&](const QString& other) {
    return !other.isEmpty() && name.compare(other, Qt::CaseInsensitive) == 0;
  };
  return is(own) || is(own.section('.', 0, 0)) || name.startsWith(own + '.', Qt::CaseInsensitive);
}

}  // namespace

ExplorerDrag::ExplorerDrag(ExplorerEdits& source, Folder& from, bool songs, std::vector<int> rows)
    : source_(&source), from_(&from), songs_(songs), rows_(std::move(rows)) {
  setData(QLatin1String(kOwnFormat), QByteArray());
}

QString ExplorerDrag::Description() const {
  if (!songs_) return DisplayText(from_->Text());
  const int count = static_cast<int>(rows_.size());
  return count == 1 ? tr("1 song") : tr("%1 songs").arg(count);
}

std::vector<std::string> DraggedFiles(const QMimeData& data) {
  std::vector<std::string> files;
  const QByteArray list = data.data(QStringLiteral("text/uri-list"));
  for (const QByteArray& line : list.split('\n')) {
    const QByteArray uri = line.trimmed();
    if (!uri.startsWith(kFileScheme)) continue;
    // A host name may follow the scheme.
    const qsizetype scheme = static_cast<qsizetype>(kFileScheme.size());
    const qsizetype begin = uri.indexOf('/', scheme);
    if (begin < 0) continue;
    const QByteArray machine = uri.mid(scheme, begin - scheme);
    const bool is_here = machine.isEmpty() || machine == "localhost" ||
                         (kSeparator == '/' && IsThisMachine(QString::fromUtf8(machine)));
    std::string path = QByteArray::fromPercentEncoding(uri.mid(begin)).toStdString();
    if (path.find('\0') != std::string::npos) continue;
    if (kSeparator == '/') {
      if (!is_here) continue;
    } else {
      // On Windows another host name means a share on that computer; no host name means a local
      // drive.
      if (is_here)
        path.erase(0, 1);
      else
        path.insert(0, "//" + machine.toStdString());
      std::replace(path.begin(), path.end(), '/', kSeparator);
    }
    files.push_back(std::move(path));
  }
  return files;
}

QByteArray UriOfPath(const std::string& path) {
  std::string generic = path;
  if (kSeparator != '/') {
    std::replace(generic.begin(), generic.end(), kSeparator, '/');
    generic.insert(generic.begin(), '/');
  }
  return kFileScheme.toByteArray() + QByteArray::fromStdString(generic).toPercentEncoding("/:");
}

}  // namespace tallow
