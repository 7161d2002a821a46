// SPDX-License-Identifier: GPL-3.0-or-later
#include <QFile>

#include "ui/support/local_server_folder.h"
#include "util/runtime_folder_linux.h"

namespace tallow {

QString LocalServerFolder() { return QFile::decodeName(RuntimeFolder().c_str()); }

bool LocalServersArePrivate() { return true; }

}  // namespace tallow
