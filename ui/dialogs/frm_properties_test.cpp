// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/dialogs/frm_properties.h"

#include <gtest/gtest.h>

#include <QClipboard>
#include <QGuiApplication>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScreen>
#include <QStyle>
#include <QTest>
#include <QTreeWidget>

namespace tallow {
namespace {

class PropertiesDialog : public testing::Test {
 protected:
  PropertiesContext OneSong() {
    return {.title = QStringLiteral("Properties of \"Dancing Queen\""),
            .properties = {{"Title", "Dancing Queen"}, {"Artist", "ABBA"}},
            .folders = {{"MINE", "Artist / ABBA", [this] { shown += "ABBA "; }},
                        {"MINE", "party", [this] { shown += "party "; }}},
            .names_jukeboxes = true,
            .show_file = [this] { shown += "file "; }};
  }
  static QTreeWidget& List(const frmProperties& dialog, const char* name) {
    return *dialog.findChild<QTreeWidget*>(QLatin1String(name));
  }
  /// "first: second" of each row.
  static QStringList Rows(const QTreeWidget& list) {
    QStringList rows;
    for (int row = 0; row < list.topLevelItemCount(); ++row)
      rows += list.topLevelItem(row)->text(0) + ": " + list.topLevelItem(row)->text(1);
    return rows;
  }

  std::string shown;
};

TEST_F(PropertiesDialog, ShowsThePropertiesOfASongAndItsFolders) {
  const frmProperties dialog(OneSong());
  EXPECT_EQ(dialog.windowTitle(), "Properties of \"Dancing Queen\"");
  EXPECT_EQ(Rows(List(dialog, "lstProperties")),
            (QStringList{"Title: Dancing Queen", "Artist: ABBA"}));
  EXPECT_EQ(Rows(List(dialog, "lstFolders")), (QStringList{"MINE: Artist / ABBA", "MINE: party"}));
  EXPECT_EQ(dialog.findChild<QLabel*>()->text(), "In these &folders of the open jukeboxes:");
}

TEST_F(PropertiesDialog, TheButtonShowsTheFile) {
  const frmProperties dialog(OneSong());
  auto* const button = dialog.findChild<QPushButton*>(QStringLiteral("cmdShowFile"));
  EXPECT_EQ(button->text(), "&Show In File Manager");
  button->click();
  EXPECT_EQ(shown, "file ");
}

TEST_F(PropertiesDialog, ADoubleClickOnAFolderClosesTheDialogAndShowsTheFolder) {
  frmProperties dialog(OneSong());
  dialog.show();
  QTreeWidget& folders = List(dialog, "lstFolders");
  const QPoint place = folders.visualItemRect(folders.topLevelItem(1)).center();
  QTest::mouseClick(folders.viewport(), Qt::LeftButton, {}, place);
  QTest::mouseDClick(folders.viewport(), Qt::LeftButton, {}, place);
  EXPECT_EQ(shown, "party ");
  EXPECT_FALSE(dialog.isVisible());
}

TEST_F(PropertiesDialog, EnterOnAFolderShowsIt) {
  frmProperties dialog(OneSong());
  dialog.show();
  QTest::keyClick(&List(dialog, "lstFolders"), Qt::Key_Return);
  EXPECT_EQ(shown, "ABBA ");
  EXPECT_FALSE(dialog.isVisible());
}

TEST_F(PropertiesDialog, CtrlCCopiesTheValue) {
  frmProperties dialog(OneSong());
  dialog.show();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&dialog));
  QTreeWidget& list = List(dialog, "lstProperties");
  list.setFocus();
  QTest::keyClick(&list, Qt::Key_Down);
  QTest::keyClick(&list, Qt::Key_C, Qt::ControlModifier);
  EXPECT_EQ(QGuiApplication::clipboard()->text(), "ABBA");
}

TEST_F(PropertiesDialog, ALongPathIsWrappedAndCanBeSelected) {
  PropertiesContext context = OneSong();
  QString path = "/music";
  for (int k = 0; k < 40; ++k) path += "/folder";
  context.properties.push_back({"Folder", path.toStdString()});
  context.properties.push_back({"File Size", "4 MB (4,123,456 bytes)"});
  frmProperties dialog(std::move(context));
  dialog.show();
  QTreeWidget& list = List(dialog, "lstProperties");
  QCoreApplication::processEvents();
  const auto height = [&](int row) { return list.visualItemRect(list.topLevelItem(row)).height(); };
  EXPECT_GT(height(2), height(1) * 3 / 2);
  EXPECT_EQ(height(3), height(1));
  // A wider dialog needs fewer lines.
  const int narrow = height(2);
  dialog.resize(3 * dialog.width(), dialog.height());
  QCoreApplication::processEvents();
  EXPECT_LT(height(2), narrow);
  list.setCurrentItem(list.topLevelItem(2), 1);
  QTest::keyClick(&list, Qt::Key_F2);
  auto* const field = list.viewport()->findChild<QLineEdit*>();
  ASSERT_NE(field, nullptr);
  EXPECT_TRUE(field->isReadOnly());
  EXPECT_EQ(field->text(), path);
  EXPECT_EQ(field->accessibleName(), "Folder");
  QTest::keyClick(field, Qt::Key_Escape);
  EXPECT_TRUE(dialog.isVisible());
  EXPECT_EQ(list.topLevelItem(2)->text(1), path);
}

TEST_F(PropertiesDialog, NamesTheJukeboxesOnlyIfSeveralAreOpen) {
  EXPECT_FALSE(List(frmProperties(OneSong()), "lstFolders").isColumnHidden(0));
  PropertiesContext context = OneSong();
  context.names_jukeboxes = false;
  const frmProperties dialog(std::move(context));
  EXPECT_TRUE(List(dialog, "lstFolders").isColumnHidden(0));
  EXPECT_FALSE(List(dialog, "lstFolders").isColumnHidden(1));
}

TEST_F(PropertiesDialog, TheKeyboardMovesTheHighlightOfTheFolders) {
  PropertiesContext context = OneSong();
  context.folders.push_back({"MINE", "third", [this] { shown += "third "; }});
  context.names_jukeboxes = false;
  frmProperties dialog(std::move(context));
  dialog.show();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&dialog));
  QTreeWidget& folders = List(dialog, "lstFolders");
  folders.setFocus();
  const auto highlighted = [&] {
    QStringList texts;
    for (const QTreeWidgetItem* const item : folders.selectedItems()) texts += item->text(1);
    return texts;
  };
  EXPECT_EQ(highlighted(), QStringList{"Artist / ABBA"});
  QTest::keyClick(&folders, Qt::Key_Down);
  EXPECT_EQ(highlighted(), QStringList{"party"});
  QTest::keyClick(&folders, Qt::Key_Down);
  EXPECT_EQ(highlighted(), QStringList{"third"});
  QTest::keyClick(&folders, Qt::Key_Return);
  EXPECT_EQ(shown, "third ");
}

TEST_F(PropertiesDialog, TheSelectionOfTheOtherListIsGrey) {
  frmProperties dialog(OneSong());
  dialog.show();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&dialog));
  QTreeWidget& properties = List(dialog, "lstProperties");
  QTreeWidget& folders = List(dialog, "lstFolders");
  const QColor mark = dialog.palette().color(QPalette::Active, QPalette::Highlight);
  const auto is_marked = [&](QTreeWidget& list) {
    const QRect row = list.visualItemRect(list.topLevelItem(0));
    const QImage image = list.viewport()->grab().toImage();
    return image.pixelColor(row.right() - 5, row.center().y()) == mark;
  };
  EXPECT_TRUE(is_marked(properties));
  EXPECT_FALSE(is_marked(folders));
  folders.setFocus();
  EXPECT_FALSE(is_marked(properties));
  EXPECT_TRUE(is_marked(folders));
}

TEST_F(PropertiesDialog, ALongTitleMakesItNoHigher) {
  PropertiesContext context = OneSong();
  for (int k = 0; k < 16; ++k) context.properties.push_back({"Property", "value"});
  frmProperties usual(context);
  usual.show();
  context.properties.front().value = std::string(200, 'x');
  frmProperties letters(context);
  letters.show();
  QString words;
  for (int k = 0; k < 20; ++k) words += QStringLiteral("ten letters ");
  context.properties.front().value = words.toStdString();
  frmProperties more(context);
  more.show();
  QCoreApplication::processEvents();
  EXPECT_EQ(letters.height(), usual.height());
  EXPECT_EQ(more.height(), usual.height());
  EXPECT_LT(letters.minimumSizeHint().height(), usual.height());
}

TEST_F(PropertiesDialog, FitsTheScreenWithTheFrameOfItsWindow) {
  PropertiesContext context = OneSong();
  for (int k = 0; k < 100; ++k) context.properties.push_back({"Property", "value"});
  frmProperties dialog(std::move(context));
  const int title_bar = dialog.style()->pixelMetric(QStyle::PM_TitleBarHeight);
  ASSERT_GT(title_bar, 0);
  EXPECT_LE(dialog.height() + title_bar, dialog.screen()->availableSize().height());
  EXPECT_GT(dialog.height(), dialog.screen()->availableSize().height() / 2);
}

TEST_F(PropertiesDialog, OfSeveralSongsHasNoFileAndNoFolders) {
  PropertiesContext context = OneSong();
  context.show_file = {};
  context.folders.clear();
  const frmProperties dialog(std::move(context));
  EXPECT_EQ(dialog.findChild<QPushButton*>(QStringLiteral("cmdShowFile")), nullptr);
  EXPECT_EQ(dialog.findChild<QTreeWidget*>(QStringLiteral("lstFolders")), nullptr);
}

}  // namespace
}  // namespace tallow
