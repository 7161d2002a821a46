// SPDX-License-Identifier: GPL-3.0-or-later
#include <windows.h>

#include <QLocalSocket>

#include "ui/support/foreground.h"

namespace tallow {

void AllowForeground(const QLocalSocket& other) {
  ULONG process = 0;
  if (GetNamedPipeServerProcessId(reinterpret_cast<HANDLE>(other.socketDescriptor()), &process))
    AllowSetForegroundWindow(process);
}

}  // namespace tallow
