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
  return {heading, rows,
          [heading](std::size_t index) -> StyleFindings::Row {
            return {heading + std::to_string(index), "note " + std::to_string(index)};
          },
          true};
}

QTreeView& ListOf(const QDialog& dialog) {
  return *dialog.findChild<QTreeView*>(QStringLiteral("lstStyleFindings"));
}

/// The rows below a heading, path and note.
QStringList Below(const QTreeView& list, int heading) {
  QStringList rows;
  const QModelIndex above = list.model()->index(heading, 0);
  for (int row = 0; row < list.model()->rowCount(above); ++row)
    rows.append(list.model()->index(row, 0, above).data().toString() + "|" +
                list.model()->index(row, 1, above).data().toString());
  return rows;
}

TEST(FrmStyleFindings, ListsEachPartBelowItsHeading) {
  const frmStyleFindings dialog({Part("a", 2), Part("b", 1)});
  QTreeView& list = ListOf(dialog);
  EXPECT_EQ(RowsOf(list), (QStringList{"a", "b"}));
  EXPECT_EQ(RowsOf(list, 1), (QStringList{"", ""}));
  EXPECT_EQ(Below(list, 0), (QStringList{"a0|note 0", "a1|note 1"}));
  EXPECT_EQ(Below(list, 1), QStringList{"b0|note 0"});
  for (const int heading : {0, 1}) {
    const QModelIndex index = list.model()->index(heading, 0);
    EXPECT_TRUE(list.isFirstColumnSpanned(heading, {}));
    EXPECT_TRUE(list.isExpanded(index));
    EXPECT_TRUE(index.data(Qt::FontRole).value<QFont>().bold());
    EXPECT_EQ(list.model()->index(0, 1, index).parent(), index);
  }
}

TEST(FrmStyleFindings, MakesOnlyTheRowsThatAreShown) {
  std::size_t made = 0;
  frmStyleFindings dialog({{"a", 100'000, [&made](std::size_t index) -> StyleFindings::Row {
                              ++made;
                              return {std::to_string(index), {}};
                            }}});
  dialog.show();
  QCoreApplication::processEvents();
  QTreeView& list = ListOf(dialog);
  EXPECT_EQ(RowsOf(list), QStringList{"a"});
  EXPECT_EQ(made, 0U);
  // The right arrow key opens the heading.
  QTest::keyClick(&list, Qt::Key_Right);
  EXPECT_TRUE(list.isExpanded(list.model()->index(0, 0)));
  QCoreApplication::processEvents();
  EXPECT_GT(made, 0U);
  EXPECT_LT(made, 5000U);
  EXPECT_EQ(list.model()->index(99'999, 0, list.model()->index(0, 0)).data().toString(), "99999");
}

TEST(FrmStyleFindings, RowsWithoutNotesHaveTheWholeWidth) {
  const StyleFindings paths{"a", 2, [](std::size_t) -> StyleFindings::Row {
                              return {std::string(90, 'x'), {}};
                            }};
  frmStyleFindings dialog({paths, Part("b", 2)});
  dialog.show();
  QTreeView& list = ListOf(dialog);
  for (const int width : {900, 1500, 900}) {
    dialog.resize(width, 400);
    QCoreApplication::processEvents();
    for (const int row : {0, 1}) {
      EXPECT_TRUE(list.isFirstColumnSpanned(row, list.model()->index(0, 0)));
      EXPECT_FALSE(list.isFirstColumnSpanned(row, list.model()->index(1, 0)));
    }
    // The columns share the width of the list.
    EXPECT_NEAR(list.columnWidth(0), list.viewport()->width() / 2, 1);
    EXPECT_NEAR(list.columnWidth(1), list.viewport()->width() / 2, 1);
  }
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
