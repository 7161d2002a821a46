// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/dialogs/frm_properties.h"

#include <gtest/gtest.h>

#include <QClipboard>
#include <QGuiApplication>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
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
