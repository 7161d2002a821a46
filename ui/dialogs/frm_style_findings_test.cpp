// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/dialogs/frm_style_findings.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

#include <QPushButton>
#include <QTest>
#include <QTreeView>

#include "tests/window_fixture.h"

namespace tallow {
namespace {

StyleFindings Part(const std::string& heading, std::size_t rows) {
  return {heading, rows, [heading](std::size_t index) -> StyleFindings::Row {
            return {heading + std::to_string(index), "note " + std::to_string(index)};
          }};
}

QTreeView& ListOf(const QDialog& dialog) {
  return *dialog.findChild<QTreeView*>(QStringLiteral("lstStyleFindings"));
}

TEST(FrmStyleFindings, ListsEachPartBelowItsHeading) {
  const frmStyleFindings dialog({Part("a", 2), Part("b", 1)});
  QTreeView& list = ListOf(dialog);
  EXPECT_EQ(RowsOf(list), (QStringList{"a (2)", "a0", "a1", "b (1)", "b0"}));
  EXPECT_EQ(RowsOf(list, 1), (QStringList{"", "note 0", "note 1", "", "note 0"}));
  EXPECT_TRUE(list.isFirstColumnSpanned(0, {}));
  EXPECT_FALSE(list.isFirstColumnSpanned(1, {}));
  EXPECT_TRUE(list.isFirstColumnSpanned(3, {}));
  EXPECT_TRUE(list.model()->index(3, 0).data(Qt::FontRole).value<QFont>().bold());
  EXPECT_FALSE(list.model()->index(4, 0).data(Qt::FontRole).isValid());
}

TEST(FrmStyleFindings, MakesOnlyTheRowsThatAreShown) {
  std::size_t made = 0;
  frmStyleFindings dialog({{"a", 100'000, [&made](std::size_t index) -> StyleFindings::Row {
                              ++made;
                              return {std::to_string(index), {}};
                            }}});
  dialog.show();
  QCoreApplication::processEvents();
  EXPECT_GT(made, 0U);
  EXPECT_LT(made, 5000U);
  EXPECT_EQ(ListOf(dialog).model()->index(0, 0).data().toString(), "a (100,000)");
  EXPECT_EQ(ListOf(dialog).model()->index(100'000, 0).data().toString(), "99999");
}

TEST(FrmStyleFindings, EscapeAndCloseCloseIt) {
  for (const bool by_key : {true, false}) {
    frmStyleFindings dialog({Part("a", 1)});
    dialog.show();
    if (by_key)
      QTest::keyClick(&dialog, Qt::Key_Escape);
    else
      dialog.findChild<QPushButton*>(QStringLiteral("cmdClose"))->click();
    EXPECT_FALSE(dialog.isVisible());
  }
}

}  // namespace
}  // namespace tallow
