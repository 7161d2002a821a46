// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

class QWidget;

namespace tallow {

/// Returns a caption as the title of a window that shows whether it is unsaved: Qt shows a star at
/// the end while the window is modified, see QWidget::windowModified.
QString TitleWithMark(const QString& caption);

/// Returns the title of a window as Qt shows it: "[*]" becomes a star or nothing, and "[*][*]"
/// becomes "[*]".
QString ShownTitle(const QWidget& window);

}  // namespace tallow
