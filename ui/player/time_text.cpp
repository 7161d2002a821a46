// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/player/time_text.h"

namespace tallow {

QString TimeText(int seconds) {
  const int hours = seconds / 3600;
  const int minutes = seconds / 60 % 60;
  const QString tail = QStringLiteral(":%1").arg(seconds % 60, 2, 10, QLatin1Char('0'));
  if (hours == 0) return QString::number(minutes) + tail;
  return QStringLiteral("%1:%2").arg(hours).arg(minutes, 2, 10, QLatin1Char('0')) + tail;
}

}  // namespace tallow
