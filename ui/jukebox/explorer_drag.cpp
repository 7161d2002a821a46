// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/jukebox/explorer_drag.h"

#include <optional>
#include <utility>

#include "jukebox/folder_tree.h"
#include "ui/jukebox/explorer/explorer_edits.h"
#include "ui/support/display_text.h"
#include "ui/support/file_uri.h"

namespace tallow {
namespace {

/// The MIME format of drags inside Tallow; Qt does not start a drag without any format.
constexpr const char* kOwnFormat = "application/x-tallow-jukebox";

constexpr QByteArrayView kFileScheme = "file://";

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
    std::string path = QByteArray::fromPercentEncoding(uri.mid(begin)).toStdString();
    if (path.find('\0') != std::string::npos) continue;
    if (std::optional<std::string> file = PathOfFileUri(machine, std::move(path)))
      files.push_back(*std::move(file));
  }
  return files;
}

QByteArray UriOfPath(const std::string& path) {
  return kFileScheme.toByteArray() +
         QByteArray::fromStdString(PathInFileUri(path)).toPercentEncoding("/:");
}

}  // namespace tallow
