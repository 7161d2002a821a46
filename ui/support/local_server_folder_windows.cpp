// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/support/local_server_folder.h"

namespace tallow {

QString LocalServerFolder() { return {}; }

bool LocalServersArePrivate() { return false; }

}  // namespace tallow
