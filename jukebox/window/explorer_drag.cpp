// SPDX-License-Identifier: GPL-3.0-or-later
#include "jukebox/window/explorer_drag.h"

#include <utility>

#include <QUrl>

#include "jukebox/window/pv_explorer.h"

namespace tallow {
namespace {

/// Without any format a drag would not be offered at all.
constexpr const char* kOwnFormat = "application/x-tallow-jukebox";

}  // namespace

ExplorerDrag::ExplorerDrag(PVExplorer& source, Folder& from, bool songs, std::vector<int> rows)
    : source_(&source), from_(&from), songs_(songs), rows_(std::move(rows)) {
  setData(QLatin1String(kOwnFormat), QByteArray());
}

QStringList DraggedFiles(const QMimeData& data) {
  QStringList files;
  for (const QUrl& url : data.urls())
    if (url.isLocalFile()) files.append(url.toLocalFile());
  return files;
}

}  // namespace tallow
