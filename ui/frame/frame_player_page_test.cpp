// SPDX-License-Identifier: GPL-3.0-or-later
#include <filesystem>
#include <gtest/gtest.h>
#include <optional>
#include <stdexcept>
#include <string>

#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QTest>

#include "app/search/player_search.h"
#include "tests/frame_fixture.h"
#include "ui/dialogs/frm_splash.h"
#include "ui/support/help_page.h"
#include "ui/support/qt_path.h"

namespace tallow {
namespace {

class FramePlayerPage : public FrameTest {
 protected:
  /// Opens the preferences with the page Player, and calls `act` with the dialog.
  template <typename Act>
  void OnPage(const Act& act) {
    frame.show();
    bool was_open = false;
    QTimer::singleShot(50, [&] {
      auto* const dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
      ASSERT_NE(dialog, nullptr);
      dialog->findChild<QListWidget*>(QStringLiteral("lstPages"))->setCurrentRow(3);
      act(*dialog);
      was_open = true;
      dialog->reject();
    });
    Item("mnuPreferences").trigger();
    EXPECT_TRUE(was_open);
  }
  template <typename Widget>
  static Widget& Find(const QDialog& dialog, const char* name) {
    return *dialog.findChild<Widget*>(QLatin1String(name));
  }
};

TEST_F(FramePlayerPage, TheSearchShowsItsProgressOverTheDialogAndCanBeCancelled) {
  searches.for_disks = [this](SearchProgress& progress) -> std::optional<std::string> {
    progress.SetStatus("Looking for WinAmp in C:\\");
    progress.Repaint();
    EXPECT_FALSE(frame.isEnabled());
    auto* const splash = frame.findChild<frmSplash*>();
    EXPECT_NE(splash, nullptr);
    if (splash == nullptr) return {};
    EXPECT_TRUE(splash->isVisible());
    auto* const cancel = splash->findChild<QPushButton*>(QStringLiteral("cmdCancel"));
    EXPECT_TRUE(cancel->isVisible());
    EXPECT_TRUE(cancel->isEnabled());
    EXPECT_EQ(splash->findChild<QLabel*>(QStringLiteral("lStatus"))->text(),
              "Looking for WinAmp in C:\\");
    QTest::mouseClick(cancel, Qt::LeftButton);
    EXPECT_TRUE(tallow.SearchCancelled);
    tallow.SearchCancelled = false;
    return std::nullopt;
  };
  OnPage([&](QDialog& dialog) {
    Find<QPushButton>(dialog, "cmdSearch").click();
    EXPECT_TRUE(dialog.isEnabled());
    EXPECT_TRUE(frame.isEnabled());
    EXPECT_EQ(frame.findChild<frmSplash*>(), nullptr);
    EXPECT_EQ(Find<QLabel>(dialog, "lblPlayerState").text(), "The search was cancelled.");
  });
  EXPECT_EQ(tallow.player_path, "/opt/player");
}

TEST_F(FramePlayerPage, APlayerThatTheSearchFindsCanBeChosen) {
  const std::string path = music.File("winamp.exe");
  std::filesystem::permissions(path, std::filesystem::perms::owner_all);
  searches.for_disks = [&](SearchProgress&) { return std::optional(path); };
  OnPage([&](QDialog& dialog) {
    Find<QPushButton>(dialog, "cmdSearch").click();
    EXPECT_EQ(tallow.player_path, "/opt/player");
    auto& players = Find<QComboBox>(dialog, "cboPlayer");
    // The last Winamp is the one that was found.
    int row = players.count() - 1;
    while (row >= 0 && !players.itemText(row).startsWith("Winamp in ")) --row;
    ASSERT_GE(row, 0);
    emit players.activated(row);
    EXPECT_EQ(Find<QLineEdit>(dialog, "txtProgram").text(), QtPath(PlayerAt(path)));
  });
  EXPECT_EQ(tallow.player_path, PlayerAt(path));
  EXPECT_EQ(tallow.settings.LocOfWinAmpExe(), PlayerAt(path));
}

TEST_F(FramePlayerPage, AFailedSearchFindsNoPlayer) {
  searches.for_disks = [](SearchProgress&) -> std::optional<std::string> {
    throw std::runtime_error("no memory");
  };
  OnPage([&](QDialog& dialog) {
    Find<QPushButton>(dialog, "cmdSearch").click();
    // Tallow's own player may lie beside the test program.
    const QString text = Find<QLabel>(dialog, "lblPlayerState").text();
    if (Find<QComboBox>(dialog, "cboPlayer").count() > 1)
      EXPECT_EQ(text, "Found; choose it above.");
    else
      EXPECT_TRUE(text.endsWith("of this computer.")) << text.toStdString();
    EXPECT_TRUE(dialog.isEnabled());
  });
}

TEST_F(FramePlayerPage, TheRunningPlayerNamesItsDevicesAndIsToldWhatIsChosen) {
  tallow.player_path = music.File("tallow-player");
  link.kind = PlayerKind::kTallowPlayer;
  link.texts[R"({"do":"devices"})"] =
      R"({"devices":[{"name":"auto","description":"Autoselect device"},
                     {"name":"pulse/usb","description":"USB Headset"}]})";
  OnPage([&](QDialog& dialog) {
    auto& device = Find<QComboBox>(dialog, "cboDevice");
    EXPECT_EQ(device.count(), 2);
    EXPECT_EQ(device.itemText(1), "USB Headset");
    link.Take();
    emit device.activated(1);
    EXPECT_EQ(link.Take(), (Texts{"find", R"(ask {"do":"device","name":"pulse/usb"})"}));
    emit Find<QComboBox>(dialog, "cboGain").activated(1);
    EXPECT_EQ(link.Take(), (Texts{"find", R"(ask {"do":"gain","mode":"track"})"}));
  });
}

TEST_F(FramePlayerPage, WinampAndAPlayerThatDoesNotRunAreAskedNothing) {
  for (const PlayerHandle found : {PlayerHandle{7}, PlayerHandle{0}}) {
    link.found = found;
    OnPage([&](QDialog& dialog) {
      EXPECT_EQ(Find<QComboBox>(dialog, "cboDevice").count(), 1);
      link.Take();
      emit Find<QComboBox>(dialog, "cboGain").activated(2);
      EXPECT_EQ(link.Take(), Texts{"find"});
    });
  }
}

TEST_F(FramePlayerPage, TheHelpKeyOpensThePageOnThePlayer) {
  OnPage([](QDialog& dialog) {
    EXPECT_EQ(HelpPageOf(&Find<QComboBox>(dialog, "cboPlayer")), "player");
  });
}

}  // namespace
}  // namespace tallow
