// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/dialogs/frm_help.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QMenuBar>
#include <QRegularExpression>
#include <QScreen>
#include <QTest>
#include <QTextBrowser>
#include <QTextDocument>

#include "tests/frame_fixture.h"
#include "ui/support/message_box.h"

namespace tallow {
namespace {

class FrmHelp : public FrameTest {
 protected:
  static QString Text(const QString& page) {
    QFile file(QStringLiteral(":/manual/%1.md").arg(page));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << page.toStdString();
    return QString::fromUtf8(file.readAll());
  }
  static QStringList ShownPages(const frmHelp& help) {
    QStringList shown;
    const auto* const list = help.findChild<QListWidget*>("Contents");
    for (int row = 0; row < list->count(); ++row)
      if (!list->item(row)->isHidden())
        shown.append(list->item(row)->data(Qt::UserRole).toString());
    return shown;
  }
};

TEST_F(FrmHelp, EveryPageHasAHeadingAndIsInTheList) {
  const QStringList pages = frmHelp::Pages();
  EXPECT_EQ(pages.front(), "index");
  EXPECT_GE(pages.size(), 14);
  for (const QString& page : pages) EXPECT_TRUE(Text(page).startsWith("# ")) << page.toStdString();
}

TEST_F(FrmHelp, EveryLinkLeadsToAPage) {
  const QRegularExpression link(QStringLiteral("\\]\\(([^)]*)\\)"));
  for (const QString& page : frmHelp::Pages()) {
    auto match = link.globalMatch(Text(page));
    while (match.hasNext()) {
      const QString to = match.next().captured(1);
      const bool is_page = to.endsWith(".md") && frmHelp::Pages().contains(to.chopped(3));
      const bool is_picture = !QImage(":/manual/" + to).isNull();
      EXPECT_TRUE(is_page || is_picture) << page.toStdString() << ": " << to.toStdString();
    }
  }
}

TEST_F(FrmHelp, ShowsPagesAndFollowsTheirList) {
  frmHelp help;
  EXPECT_EQ(help.Page(), "index");
  help.ShowPage("playing");
  EXPECT_EQ(help.Page(), "playing");
  EXPECT_TRUE(help.findChild<QTextBrowser*>()->toPlainText().startsWith("Playing songs"));
  auto* const list = help.findChild<QListWidget*>();
  EXPECT_TRUE(QTest::qWaitFor([&] {
    return list->currentItem() != nullptr && list->currentItem()->text() == "Playing songs";
  }));
  help.ShowPage("no such page");
  EXPECT_EQ(help.Page(), "index");
  QCoreApplication::processEvents();
  list->setCurrentRow(3);
  EXPECT_EQ(help.Page(), frmHelp::Pages()[3]);
}

TEST_F(FrmHelp, TheMenuPageNamesEveryMenuItem) {
  QTextDocument page;
  page.setMarkdown(Text("menus"));
  const QString text = page.toPlainText();
  for (const QAction* const menu : frame.menuBar()->actions()) {
    EXPECT_TRUE(text.contains(menu->text().remove('&'))) << menu->text().toStdString();
    if (menu->text() == "&WindowList") continue;
    for (const QAction* const item : menu->menu()->actions()) {
      const QString caption = item->text().remove('&').section(QStringLiteral(" ("), 0, 0);
      EXPECT_TRUE(text.contains(caption)) << caption.toStdString();
    }
  }
}

TEST_F(FrmHelp, FitsTheScreen) {
  const frmHelp help;
  const QSize screen = help.screen()->availableSize();
  EXPECT_LT(help.width(), screen.width());
  EXPECT_LT(help.height(), screen.height());
}

TEST_F(FrmHelp, EscClearsTheSearchFirstAndThenCloses) {
  frmHelp help;
  help.show();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&help));
  auto* const search = help.findChild<QLineEdit*>("Search");
  search->setFocus();
  search->setText("qqqq");
  EXPECT_TRUE(help.findChild<QLabel*>("NothingFound")->isVisible());
  QTest::keyClick(search, Qt::Key_Escape);
  EXPECT_EQ(search->text(), "");
  EXPECT_FALSE(help.findChild<QLabel*>("NothingFound")->isVisible());
  EXPECT_TRUE(help.isVisible());
  QTest::keyClick(help.findChild<QTextBrowser*>(), Qt::Key_Escape);
  EXPECT_FALSE(help.isVisible());
}

TEST_F(FrmHelp, TheSearchListsOnlyPagesWithAllWords) {
  frmHelp help;
  auto* const search = help.findChild<QLineEdit*>("Search");
  search->setText("gapless nowhere-to-be-found");
  EXPECT_EQ(ShownPages(help), QStringList());
  search->setText("KEYPAD ctrl+t");
  EXPECT_EQ(ShownPages(help), QStringList());
  // Only the visible text is searched, not the targets of links.
  search->setText("new-songs.md");
  EXPECT_EQ(ShownPages(help), QStringList());
  search->setText("ctrl+t ctrl+r");
  EXPECT_EQ(ShownPages(help), QStringList{"keys"});
  EXPECT_EQ(help.Page(), "keys");
  EXPECT_FALSE(help.findChild<QTextBrowser*>()->extraSelections().isEmpty());
  search->clear();
  EXPECT_EQ(ShownPages(help), frmHelp::Pages());
  EXPECT_TRUE(help.findChild<QTextBrowser*>()->extraSelections().isEmpty());
}

TEST_F(FrmHelp, F1InADialogOpensItsHelpPageInFrontOfTheDialog) {
  frmMain& window = ShowJukebox();
  window.Jukebox().Nodes().AddChild(nullptr, "two");
  const std::pair<const char*, const char*> expected[] = {
      {"mnuFind", "find"}, {"mnuTip", "windows"}, {"mnuChangeBackgroup", "picture"}};
  for (const auto& [item, page] : expected) {
    QString opened;
    bool is_over_it = false;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, [&] {
      QWidget* const dialog = QApplication::activeModalWidget();
      QWidget* const focus = QApplication::focusWidget();
      if (dialog == nullptr || focus == nullptr || !dialog->isAncestorOf(focus)) return;
      timer.stop();
      QTest::keyClick(QApplication::focusWidget(), Qt::Key_F1);
      if (const auto* const help = dialog->findChild<frmHelp*>()) {
        opened = help->Page();
        is_over_it = help->isVisible();
      }
      static_cast<QDialog*>(dialog)->reject();
    });
    timer.start(5);
    Item(item).trigger();
    EXPECT_EQ(opened, page);
    EXPECT_TRUE(is_over_it) << item;
  }
}

TEST_F(FrmHelp, F1WorksInAMenuInAMessageAndInTheHelpWindow) {
  frmMain& window = ShowJukebox();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&frame));
  auto* const menu = frame.findChild<QMenu*>(QStringLiteral("mnuSongs"));
  menu->popup(frame.pos());
  ASSERT_EQ(QApplication::activePopupWidget(), menu);
  QTest::keyClick(menu, Qt::Key_F1);
  EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
  frmHelp* help = nullptr;
  for (QWidget* const top : QApplication::topLevelWidgets())
    if (auto* const found = qobject_cast<frmHelp*>(top)) help = found;
  ASSERT_NE(help, nullptr);
  EXPECT_EQ(help->Page(), "menus");
  QTest::keyClick(help->findChild<QTextBrowser*>(), Qt::Key_F1);
  EXPECT_EQ(help->Page(), "menus");
  help->close();

  QString opened;
  QTimer::singleShot(50, [&] {
    QWidget* const box = QApplication::activeModalWidget();
    ASSERT_NE(box, nullptr);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_F1);
    if (const auto* const over = box->findChild<frmHelp*>()) opened = over->Page();
    static_cast<QDialog*>(box)->reject();
  });
  ShowMessageBox({.text = "This is said."}, &window);
  EXPECT_EQ(opened, "trouble");
}

TEST_F(FrmHelp, DoesNotOutliveTheFrame) {
  ShowJukebox();
  Item("mnuHelpp").trigger();
  const auto is_open = [] {
    const QWidgetList all = QApplication::topLevelWidgets();
    return std::any_of(all.begin(), all.end(), [](const QWidget* top) {
      return top->objectName() == QLatin1String("frmHelp") && top->isVisible();
    });
  };
  ASSERT_TRUE(is_open());
  Item("mnuExit").trigger();
  EXPECT_FALSE(frame.isVisible());
  EXPECT_FALSE(is_open());
}

TEST_F(FrmHelp, F1OpensThePageOfTheFocusedWindow) {
  frmMain& window = ShowJukebox();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&frame));
  window.findChild<QTreeView*>()->setFocus();
  QTest::keyClick(window.findChild<QTreeView*>(), Qt::Key_F1);
  frmHelp* help = nullptr;
  const auto opened = [&] {
    for (QWidget* const top : QApplication::topLevelWidgets())
      if (auto* const found = qobject_cast<frmHelp*>(top)) help = found;
    return help != nullptr;
  };
  ASSERT_TRUE(opened());
  EXPECT_EQ(help->Page(), "jukebox");
  help->close();
  DeleteClosedWindows();
  help = nullptr;
  Item("mnuHelpp").trigger();
  ASSERT_TRUE(opened());
  EXPECT_EQ(help->Page(), "index");
}

}  // namespace
}  // namespace tallow
