// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/support/display_text.h"

#include "util/text.h"

namespace tallow {

QString DisplayMessage(std::string_view text) {
  const std::string_view shown = StripAtNul(text);
  return QString::fromUtf8(shown.data(), static_cast<qsizetype>(shown.size()));
}

QString DisplayText(std::string_view text) {
  QString shown = DisplayMessage(text);
  for (QChar& c : shown)
    if (c.category() == QChar::Other_Control) c = QChar(u' ');
  return shown;
}

QStringList DisplayMessages(const std::vector<std::string>& texts) {
  QStringList messages;
  for (const std::string& text : texts) messages.append(DisplayMessage(text));
  return messages;
}

}  // namespace tallow
