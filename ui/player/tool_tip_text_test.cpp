// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/player/tool_tip_text.h"

#include <gtest/gtest.h>

#include <QTextDocument>

namespace tallow {
namespace {

TEST(ToolTipText, ShowsItsTextAsItIsAndWraps) {
  const QString text = QStringLiteral("Rock & <b>Roll</b> <img src=x>\nsecond line");
  const QString tip = ToolTipText(text);
  // Only a tooltip that looks like rich text wraps.
  EXPECT_TRUE(Qt::mightBeRichText(tip));
  QTextDocument shown;
  shown.setHtml(tip);
  EXPECT_EQ(shown.toPlainText(), text);
  EXPECT_EQ(ToolTipText({}), QString());
}

}  // namespace
}  // namespace tallow
