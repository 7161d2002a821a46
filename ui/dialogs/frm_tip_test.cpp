// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/dialogs/frm_tip.h"

#include <gtest/gtest.h>

#include <QCheckBox>
#include <QLabel>
#include <QPushButton>
#include <QSettings>

#include "tests/temp_folder.h"

namespace tallow {
namespace {

class FrmTip : public testing::Test {
 protected:
  ~FrmTip() override { QSettings().setValue(kOption, 0); }

  QString Text(const frmTip& tip) { return tip.findChild<QLabel*>("lblTipText")->text(); }
  QCheckBox& Box(const frmTip& tip) { return *tip.findChild<QCheckBox*>("chkLoadTipsAtStartup"); }

  const QString kOption = QStringLiteral("Options/Show Tips at Startup");
  TempFolder folder;
};

TEST_F(FrmTip, AtStartUpTheOptionDecidesAndDefaultsToShown) {
  const std::string path = folder.File("tips", "a tip");
  const std::pair<QVariant, bool> states[] = {{QVariant(), true}, {1, true}, {0, false}, {2, true}};
  for (const auto& [option, shown] : states) {
    if (option.isValid())
      QSettings().setValue(kOption, option);
    else
      QSettings().remove(kOption);
    frmTip tip(path);
    EXPECT_EQ(tip.Load(), shown);
    EXPECT_EQ(Box(tip).isChecked(), shown);
  }
}

TEST_F(FrmTip, FromTheMenuItIsAlwaysShown) {
  QSettings().setValue(kOption, 0);
  frmTip tip(folder.File("tips", "a tip"));
  tip.ShowFlag(true);
  EXPECT_TRUE(tip.Load());
  EXPECT_FALSE(tip.ShowFlag());
  EXPECT_EQ(Text(tip), "a tip");
  EXPECT_FALSE(Box(tip).isChecked());
  Box(tip).click();
  EXPECT_EQ(QSettings().value(kOption).toInt(), 1);
  Box(tip).click();
  EXPECT_EQ(QSettings().value(kOption).toInt(), 0);
}

TEST_F(FrmTip, NextTipShowsAnother) {
  frmTip tip(folder.File("tips", "a\r\nb"));
  tip.ShowFlag(true);
  ASSERT_TRUE(tip.Load());
  QSet<QString> seen;
  for (int k = 0; k < 200 && seen.size() < 2; ++k) {
    seen.insert(Text(tip));
    tip.findChild<QPushButton*>("cmdNextTip")->click();
  }
  EXPECT_EQ(seen, (QSet<QString>{"a", "b"}));
}

TEST_F(FrmTip, AMissingFileIsReportedAndTheWindowStaysUsable) {
  frmTip tip(folder / "none");
  tip.ShowFlag(true);
  ASSERT_TRUE(tip.Load());
  const QString said = Text(tip);
  EXPECT_TRUE(said.startsWith("That the TIPOFDAY.TXT file was not found? "));
  tip.findChild<QPushButton*>("cmdNextTip")->click();
  EXPECT_EQ(Text(tip), said);
  tip.show();
  tip.findChild<QPushButton*>("cmdOK")->click();
  EXPECT_FALSE(tip.isVisible());
}

TEST_F(FrmTip, AnEmptyFileShowsNothing) {
  frmTip tip(folder.File("tips", ""));
  tip.ShowFlag(true);
  ASSERT_TRUE(tip.Load());
  EXPECT_EQ(Text(tip), "");
}

}  // namespace
}  // namespace tallow
