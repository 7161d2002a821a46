// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/player/tool_tip_text.h"

#include <QTextDocument>

namespace tallow {

QString ToolTipText(const QString& text) {
  // Only rich text wraps in a tooltip.
  return text.isEmpty() ? text : Qt::convertFromPlainText(text, Qt::WhiteSpaceNormal);
}

}  // namespace tallow
