// SPDX-License-Identifier: GPL-3.0-or-later
// Lists, search and properties with nothing but the tree of accessible objects, as a screen reader
// has it.
#include <gtest/gtest.h>

#include <QAccessible>
#include <QHeaderView>
#include <QMenu>
#include <QTest>

#include "tests/frame_fixture.h"
#include "ui/dialogs/frm_properties.h"
#include "ui/jukebox/pv_explorer.h"
#include "ui/jukebox/song_list_view.h"

namespace tallow {
namespace {

using Role = QAccessible::Role;

/// The first object of a role and a name that is reached from another one; null for none. Does not
/// search the cells of views below: without a screen reader, a view does not report changes, and
/// the objects of its cells stay as they were when they were first reached.
QAccessibleInterface* Reach(QAccessibleInterface* from, Role role, const QString& name) {
  if (from == nullptr) return nullptr;
  for (int k = 0; k < from->childCount(); ++k) {
    QAccessibleInterface* const child = from->child(k);
    if (child == nullptr) continue;
    if (child->role() == role && child->text(QAccessible::Name) == name) return child;
    if (child->tableInterface() != nullptr) continue;
    if (QAccessibleInterface* const found = Reach(child, role, name)) return found;
  }
  return nullptr;
}

/// The names of the children of a role, in order.
QStringList ChildrenOf(QAccessibleInterface& parent, Role role) {
  QStringList names;
  for (int k = 0; k < parent.childCount(); ++k)
    if (QAccessibleInterface* const child = parent.child(k);
        child != nullptr && child->role() == role)
      names.append(child->text(QAccessible::Name));
  return names;
}

class AccessibleTree : public FrameTest {
 protected:
  AccessibleTree() {
    music.File("Moon.mp3");
    AddSong(music.path(), "Moon.mp3", "1", "5");
    tallow.preferences.SetSwitches(
        {.columns_of_details = true, .find_field = true, .more_commands = true});
    window = &ShowJukebox();
    Folder& folder = window->Jukebox().Nodes().ChildAt(0);
    folder.Items().emplace_back(3, 5);
    window->Jukebox().ListRefilled(library);
    QApplication::setActiveWindow(&frame);
    Q_UNUSED(QTest::qWaitForWindowActive(&frame));
  }

  QAccessibleInterface* InFrame(Role role, const QString& name) {
    return Reach(QAccessible::queryAccessibleInterface(&frame), role, name);
  }
  /// The text of a cell of the list.
  QString Cell(int row, int column) {
    QAccessibleInterface* const list = InFrame(QAccessible::Table, QStringLiteral("Songs"));
    QAccessibleInterface* const cell =
        list != nullptr ? list->tableInterface()->cellAt(row, column) : nullptr;
    return cell != nullptr ? cell->text(QAccessible::Name) : QString();
  }
  QStringList Headers() {
    return ChildrenOf(*InFrame(QAccessible::Table, QStringLiteral("Songs")),
                      QAccessible::ColumnHeader);
  }
  SongListView& List() { return *window->findChild<SongListView*>(QStringLiteral("ListView")); }

  frmMain* window = nullptr;
};

TEST_F(AccessibleTree, TheFieldAndTheSongsFoundAreReached) {
  QAccessibleInterface* const field =
      InFrame(QAccessible::EditableText, QStringLiteral("Find songs"));
  ASSERT_NE(field, nullptr);
  EXPECT_FALSE(field->text(QAccessible::Description).isEmpty());
  ASSERT_NE(field->editableTextInterface(), nullptr);
  field->editableTextInterface()->insertText(0, QStringLiteral("moon"));
  ASSERT_EQ(InFrame(QAccessible::Table, QStringLiteral("Songs"))->tableInterface()->rowCount(), 1);
  // The first cell has the whole row.
  EXPECT_EQ(Cell(0, 0), "1, Moon, rank 5 of 7");
}

TEST_F(AccessibleTree, TheButtonsOfTheFieldHaveNames) {
  QAccessibleInterface* const field =
      InFrame(QAccessible::EditableText, QStringLiteral("Find songs"));
  ASSERT_NE(field, nullptr);
  EXPECT_EQ(ChildrenOf(*field, QAccessible::Button),
            (QStringList{"Clear the field", "Find songs"}));
}

TEST_F(AccessibleTree, TheStatusBarHasTheSumsAndTheNumberOfHits) {
  EXPECT_TRUE(QTest::qWaitFor(
      [this] { return InFrame(QAccessible::StaticText, QStringLiteral("3 songs")) != nullptr; }));
  InFrame(QAccessible::EditableText, QStringLiteral("Find songs"))
      ->editableTextInterface()
      ->insertText(0, QStringLiteral("moon"));
  const QStringList messages =
      ChildrenOf(*QAccessible::queryAccessibleInterface(&frame), QAccessible::StatusBar);
  ASSERT_EQ(messages.size(), 1);
  EXPECT_TRUE(messages[0].startsWith("1 song found in ")) << messages[0].toStdString();
  EXPECT_TRUE(QTest::qWaitFor(
      [this] { return InFrame(QAccessible::StaticText, QStringLiteral("1 song")) != nullptr; }));
}

TEST_F(AccessibleTree, TheDescriptionOfTheListSaysWhyItIsEmpty) {
  const auto description = [this] {
    return InFrame(QAccessible::Table, QStringLiteral("Songs"))->text(QAccessible::Description);
  };
  const QString of_songs = description();
  EXPECT_TRUE(of_songs.startsWith("Enter plays the song"));
  Folder& empty = window->Jukebox().Nodes().AddChild(nullptr, "empty");
  window->PVExplorer1().Select(empty);
  EXPECT_TRUE(description().startsWith("This folder is empty."));
  window->PVExplorer1().Select(window->Jukebox().Nodes().ChildAt(0));
  EXPECT_EQ(description(), of_songs);
  InFrame(QAccessible::EditableText, QStringLiteral("Find songs"))
      ->editableTextInterface()
      ->insertText(0, QStringLiteral("nowhere"));
  EXPECT_TRUE(description().startsWith("No song has all these words"));
}

TEST_F(AccessibleTree, RanksAreReadAsNumbers) {
  const int rank = static_cast<int>(Headers().indexOf(QStringLiteral("Rank")));
  ASSERT_GE(rank, 0);
  EXPECT_EQ(Cell(0, rank), "not ranked");
  EXPECT_EQ(Cell(2, rank), "rank 5 of 7");
}

TEST_F(AccessibleTree, TheHeadersSayHowTheListIsSorted) {
  QStringList headers{"Playing", "Position", "Title", "Artist", "Album", "Year", "Length", "Rank"};
  EXPECT_EQ(Headers(), headers);
  const QHeaderView& header = *List().horizontalHeader();
  const auto click = [&](int section) {
    QTest::mouseClick(header.viewport(), Qt::LeftButton, {},
                      QPoint(header.sectionViewportPosition(section) + 10, 8));
  };
  click(2);
  headers[2] = "Title, sorted";
  EXPECT_EQ(Headers(), headers);
  click(2);
  headers[2] = "Title, sorted in reverse";
  EXPECT_EQ(Headers(), headers);
  click(3);
  headers[2] = "Title";
  headers[3] = "Artist, sorted";
  EXPECT_EQ(Headers(), headers);
}

TEST_F(AccessibleTree, TheMenusHaveTheItems) {
  for (const char* const name : {"Undo", "Redo", "Find While Typing"})
    EXPECT_NE(Reach(QAccessible::queryAccessibleInterface(
                        frame.findChild<QMenu*>(QStringLiteral("mnuEdit"))),
                    QAccessible::MenuItem, QLatin1String(name)),
              nullptr)
        << name;
  for (const char* const name : {"Show In Folder", "Columns", "Properties..."})
    EXPECT_NE(Reach(QAccessible::queryAccessibleInterface(
                        window->findChild<QMenu*>(QStringLiteral("ListMenu"))),
                    QAccessible::MenuItem, QLatin1String(name)),
              nullptr)
        << name;
  for (const char* const name : {"Rename", "Play Next", "Properties..."})
    EXPECT_NE(Reach(QAccessible::queryAccessibleInterface(
                        window->findChild<QMenu*>(QStringLiteral("TreeMenu"))),
                    QAccessible::MenuItem, QLatin1String(name)),
              nullptr)
        << name;
}

TEST_F(AccessibleTree, ThePropertiesAreReadWithTheirNames) {
  bool was_open = false;
  QTimer timer;
  QObject::connect(&timer, &QTimer::timeout, [&] {
    auto* const dialog = qobject_cast<frmProperties*>(QApplication::activeModalWidget());
    if (dialog == nullptr) return;
    timer.stop();
    was_open = true;
    QAccessibleInterface* const root = QAccessible::queryAccessibleInterface(dialog);
    QAccessibleInterface* const list = Reach(root, QAccessible::Tree, QStringLiteral("Properties"));
    ASSERT_NE(list, nullptr);
    QAccessibleTableInterface& table = *list->tableInterface();
    EXPECT_EQ(table.cellAt(0, 0)->text(QAccessible::Name), "Title");
    EXPECT_EQ(table.cellAt(0, 1)->text(QAccessible::Name), "Moon");
    QAccessibleInterface* const folders =
        Reach(root, QAccessible::Tree, QStringLiteral("Folders that hold the song"));
    ASSERT_NE(folders, nullptr);
    EXPECT_NE(Reach(folders, QAccessible::TreeItem, QStringLiteral("one")), nullptr);
    for (const char* const name : {"Show In File Manager", "Close"})
      EXPECT_NE(Reach(root, QAccessible::Button, QLatin1String(name)), nullptr) << name;
    dialog->reject();
  });
  timer.start(5);
  List().SelectRows(2, 2);
  QTest::keyClick(&List(), Qt::Key_Return, Qt::AltModifier);
  EXPECT_TRUE(was_open);
}

}  // namespace
}  // namespace tallow
