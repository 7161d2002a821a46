// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class QLocalSocket;

namespace tallow {

/// Allows the process at the other end of a connection to bring its window to the front. Windows
/// grants this right only to the process that the user has just started, which may pass it on.
void AllowForeground(const QLocalSocket& other);

}  // namespace tallow
