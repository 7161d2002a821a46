// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class QLocalSocket;

namespace tallow {

/// Lets the program at the other end of a connection bring its window to the front, which on Windows only
/// the program may that the user has just started.
void LetComeToFront(const QLocalSocket& other);

}  // namespace tallow
