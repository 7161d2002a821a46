// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/support/shown_title.h"

#include <QWidget>

namespace tallow {
namespace {

const QString kMark = QStringLiteral("[*]");
const QString kTwoMarks = QStringLiteral("[*][*]");

}  // namespace

QString TitleWithMark(const QString& caption) {
  QString title = caption;
  return title.replace(kMark, kTwoMarks) + kMark;
}

QString ShownTitle(const QWidget& window) {
  const QString title = window.windowTitle();
  QString shown;
  for (qsizetype k = 0; k < title.size();) {
    const QStringView rest = QStringView(title).mid(k);
    if (rest.startsWith(kTwoMarks)) {
      shown += kMark;
      k += kTwoMarks.size();
    } else if (rest.startsWith(kMark)) {
      if (window.isWindowModified()) shown += QLatin1Char('*');
      k += kMark.size();
    } else {
      shown += title[k++];
    }
  }
  return shown;
}

}  // namespace tallow
