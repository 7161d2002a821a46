// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/dialogs/player_page.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <memory>
#include <optional>

#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

#include "app/data_paths.h"
#include "app/search/player_search.h"
#include "tests/library_fixture.h"
#include "ui/support/qt_path.h"
#include "util/path_text.h"

namespace tallow {
namespace {

/// How a choice of the player acts.
const QString kActsNext =
    "The chosen player is used when you next play songs. A player that runs now is not closed "
    "before that.";

class PlayerPageTest : public LibraryTest {
 protected:
  PlayerPageTest() {
    tallow.preferences.Load(PreferencesPath(tallow.application_folder));
    Use(own);
  }

  /// A program in the temporary folder.
  std::string Program(const std::string& inside) {
    const std::string path = music.File(inside);
    std::filesystem::permissions(path, std::filesystem::perms::owner_all);
    // As the settings have it.
    return PlayerAt(path);
  }
  void Use(const std::string& program) {
    tallow.settings.LocOfWinAmpExe(program);
    tallow.player_path = program;
  }

  PlayerPage& Open() {
    page = std::make_unique<PlayerPage>(PreferencesContext{
        .tallow = tallow,
        .changed = [this] { ++changes; },
        .style_chosen = [] {},
        .show_places = [] {},
        .file_again = [] {},
        .player = {.find_own = [this] { return own_is_there ? own : std::string(); },
                   .find_winamps = [this] { return winamps; },
                   .search =
                       [this] {
                         ++searches;
                         return search_finds;
                       },
                   .devices = [this] { return devices; },
                   .set_gain = [this](ReplayGain gain) { told_gain = gain; },
                   .set_device = [this](const std::string& name) { told_device = name; },
                   .ask_for_program = [this](QWidget*) { return browsed; }}});
    page->show();
    EXPECT_TRUE(QTest::qWaitForWindowExposed(page.get()));
    return *page;
  }
  template <typename Widget>
  Widget& Find(const char* name) {
    return *page->findChild<Widget*>(QLatin1String(name));
  }
  QComboBox& Players() { return Find<QComboBox>("cboPlayer"); }
  QComboBox& Gain() { return Find<QComboBox>("cboGain"); }
  QComboBox& Device() { return Find<QComboBox>("cboDevice"); }
  QLineEdit& ProgramLine() { return Find<QLineEdit>("txtProgram"); }
  QString State() { return Find<QLabel>("lblPlayerState").text(); }
  /// Why the sound cannot be set; empty when nothing is said.
  QString WhyNot() {
    const auto& label = Find<QLabel>("lblWhyNot");
    EXPECT_EQ(label.isVisible(), !label.text().isEmpty());
    return label.text();
  }
  static QStringList TextsOf(const QComboBox& list) {
    QStringList texts;
    for (int row = 0; row < list.count(); ++row) texts.append(list.itemText(row));
    return texts;
  }
  /// Chooses a row as the user does.
  static void Pick(QComboBox& list, int row) {
    list.setFocus();
    list.setCurrentIndex(row);
    emit list.activated(row);
  }
  /// Types a text into the line of the program, and Enter.
  void Type(const std::string& text) {
    ProgramLine().setFocus();
    ProgramLine().selectAll();
    QTest::keyClicks(&ProgramLine(), QtPath(text));
    QTest::keyClick(&ProgramLine(), Qt::Key_Return);
  }
  /// The preferences on playing, as the next start reads them.
  template <typename Value>
  Value Stored(Value (PlayingPreferences::*get)() const) {
    Preferences stored;
    stored.Load(PreferencesPath(tallow.application_folder));
    return (PlayingPreferences(stored).*get)();
  }
  /// The player of the next start.
  std::string StoredPlayer() {
    clsINI stored;
    stored.GetandLoadIniInfo(tallow.settings_path);
    return stored.LocOfWinAmpExe();
  }

  const std::string own = Program("own/tallow-player.exe");
  const std::string winamp = Program("a/winamp.exe");
  std::vector<std::string> winamps{winamp};
  bool own_is_there = true;
  std::optional<std::string> search_finds = "";
  std::optional<std::string> browsed;
  std::vector<SoundDevice> devices;
  std::optional<ReplayGain> told_gain;
  std::string told_device;
  std::unique_ptr<PlayerPage> page;
  int changes = 0;
  int searches = 0;
};

TEST_F(PlayerPageTest, EveryTextIsThereOnce) {
  Open();
  QStringList texts;
  for (const QAbstractButton* const button : page->findChildren<QAbstractButton*>())
    if (!button->text().isEmpty()) texts.append(button->text().remove('&'));
  for (const QLabel* const label : page->findChildren<QLabel*>())
    if (!label->text().isEmpty()) texts.append(label->text().remove('&'));
  texts.sort();
  QStringList expected{
      "Player:",
      "Program:",
      "Browse...",
      PlayerProgramName() == "winamp.exe" ? "Search for Winamp" : "Search for a Player",
      kActsNext,
      "Begin with the volume and balance of last time",
      "Without this, the player begins at half of the volume, with both sides equally loud.",
      "Restore the queue at start, paused",
      "The songs that were to come are there again, at the place where Tallow was closed. Nothing "
      "plays until you press Play.",
      "Mark the song that plays in lists",
      "A triangle and bold text mark the song that plays. A song that could not be played has a "
      "mark that says why.",
      "ReplayGain:",
      "Sound device:",
      "The sound devices are listed here while the player runs."};
  expected.sort();
  EXPECT_EQ(texts, expected) << texts.join('\n').toStdString();
}

TEST_F(PlayerPageTest, EveryControlHasANameAndADescription) {
  Open();
  int controls = 0;
  // Without the parts of the lists.
  for (const QWidget* const control :
       page->findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly)) {
    if (control->focusPolicy() == Qt::NoFocus) continue;
    ++controls;
    EXPECT_FALSE(control->objectName().isEmpty()) << control->metaObject()->className();
    EXPECT_FALSE(control->accessibleDescription().isEmpty()) << control->objectName().toStdString();
  }
  EXPECT_EQ(controls, 9);
}

TEST_F(PlayerPageTest, OffersOwnPlayerAndWinampAndStoresTheChoiceAtOnce) {
  Open();
  const QString in_folder = "Winamp in " + QtPath(std::string(FolderOfPath(winamp)));
  EXPECT_EQ(TextsOf(Players()), (QStringList{"Tallow's own player", in_folder}));
  EXPECT_EQ(Players().currentIndex(), 0);
  EXPECT_EQ(ProgramLine().text(), QtPath(own));
  Pick(Players(), 1);
  EXPECT_EQ(tallow.player_path, winamp);
  EXPECT_EQ(StoredPlayer(), winamp);
  EXPECT_EQ(ProgramLine().text(), QtPath(winamp));
  EXPECT_EQ(changes, 1);
  EXPECT_EQ(State(), "");
  Pick(Players(), 0);
  EXPECT_EQ(StoredPlayer(), own);
  EXPECT_EQ(Players().currentText(), "Tallow's own player");
}

TEST_F(PlayerPageTest, APathIsTypedOrBrowsed) {
  Open();
  const std::string typed = Program("typed/player.exe");
  Type(typed);
  EXPECT_EQ(StoredPlayer(), typed);
  EXPECT_EQ(Players().currentText(), QtPath(typed));
  browsed = Program("browsed/winamp.exe");
  Find<QPushButton>("cmdBrowse").click();
  EXPECT_EQ(StoredPlayer(), *browsed);
  EXPECT_EQ(Players().currentText(), "Winamp in " + QtPath(std::string(FolderOfPath(*browsed))));
  EXPECT_EQ(changes, 2);
  browsed.reset();
  Find<QPushButton>("cmdBrowse").click();
  EXPECT_EQ(changes, 2);
}

TEST_F(PlayerPageTest, AWrongPathIsSaidAndStaysToBeCorrected) {
  Open();
  const std::string gone = music.path() + "gone.exe";
  Type(gone);
  EXPECT_EQ(State(), QtPath("There is no program " + gone + "."));
  EXPECT_EQ(ProgramLine().text(), QtPath(gone));
  EXPECT_EQ(tallow.player_path, own);
  EXPECT_EQ(changes, 0);
  Type(winamp);
  EXPECT_EQ(State(), "");
  EXPECT_EQ(tallow.player_path, winamp);
}

TEST_F(PlayerPageTest, EnterInTheProgramLeavesTheDialogOpen) {
  Open();
  QDialog dialog;
  QPushButton close(&dialog);
  close.setDefault(true);
  QObject::connect(&close, &QPushButton::clicked, &dialog, &QDialog::accept);
  page->setParent(&dialog);
  page->show();
  dialog.show();
  const std::string gone = music.path() + "gone.exe";
  Type(gone);
  EXPECT_TRUE(dialog.isVisible());
  EXPECT_EQ(State(), QtPath("There is no program " + gone + "."));
  Type(winamp);
  EXPECT_TRUE(dialog.isVisible());
  EXPECT_EQ(tallow.player_path, winamp);
  page->setParent(nullptr);
}

TEST_F(PlayerPageTest, ASearchOffersWhatItFound) {
  winamps.clear();
  Open();
  EXPECT_EQ(searches, 0);
  QPushButton& search = Find<QPushButton>("cmdSearch");
  search_finds.reset();
  search.click();
  EXPECT_EQ(State(), "The search was cancelled.");
  search_finds = "";
  search.click();
  EXPECT_EQ(State(), "No other player was found.");
  EXPECT_EQ(Find<QLabel>("lblPlayerActs").text(), kActsNext);
  const std::string found = Program("found/winamp.exe");
  search_finds = found;
  search.click();
  search.click();
  EXPECT_EQ(searches, 4);
  EXPECT_EQ(State(), "Found; choose it above.");
  // The user chooses.
  EXPECT_EQ(tallow.player_path, own);
  EXPECT_EQ(Players().count(), 2);
  Pick(Players(), 1);
  EXPECT_EQ(StoredPlayer(), found);
  EXPECT_EQ(State(), "");
  Pick(Players(), 0);
  EXPECT_EQ(Players().count(), 2);
}

TEST_F(PlayerPageTest, ASearchLooksInTheUsualPlacesBeforeItSaysThatThereIsNone) {
  own_is_there = false;
  winamps.clear();
  Use("");
  Open();
  QPushButton& search = Find<QPushButton>("cmdSearch");
  search.click();
  EXPECT_EQ(State(), QtPath("No " + std::string(PlayerProgramName()) +
                            " was found on the fixed disks of this computer."));
  // It was installed in the meantime.
  own_is_there = true;
  search.click();
  EXPECT_EQ(State(), "Found; choose it above.");
  EXPECT_EQ(TextsOf(Players()), QStringList{"Tallow's own player"});
  EXPECT_EQ(tallow.player_path, "");
}

TEST_F(PlayerPageTest, WithoutAnyPlayerThePageSaysSo) {
  own_is_there = false;
  winamps.clear();
  Use("");
  Open();
  EXPECT_EQ(Players().count(), 0);
  EXPECT_FALSE(Players().isEnabled());
  EXPECT_EQ(Players().placeholderText(), "No player is chosen");
  EXPECT_EQ(WhyNot(), "No player is chosen. Choose one above.");
  EXPECT_FALSE(Gain().isEnabled());
}

TEST_F(PlayerPageTest, TheBoxesHaveTheDefaultsOfTheStyleAndStoreAtOnce) {
  const std::pair<const char*, bool (PlayingPreferences::*)() const> boxes[] = {
      {"chkKeepsVolume", &PlayingPreferences::KeepsVolume},
      {"chkRestoresQueue", &PlayingPreferences::RestoresQueue},
      {"chkMarks", &PlayingPreferences::ShowsMarks}};
  Open();
  for (const auto& [name, get] : boxes) EXPECT_FALSE(Find<QCheckBox>(name).isChecked()) << name;
  page->hide();
  tallow.preferences.SetStyle(Style::kModern);
  page->show();
  for (const auto& [name, get] : boxes) {
    QCheckBox& box = Find<QCheckBox>(name);
    EXPECT_TRUE(box.isChecked()) << name;
    changes = 0;
    box.click();
    EXPECT_FALSE(Stored(get)) << name;
    EXPECT_EQ(changes, 1);
    box.click();
    EXPECT_TRUE(Stored(get)) << name;
  }
}

TEST_F(PlayerPageTest, ReplayGainIsStoredAndToldToThePlayer) {
  Open();
  EXPECT_EQ(TextsOf(Gain()),
            (QStringList{"Off", "Track: each song equally loud",
                         "Album: each album equally loud, its songs as they were recorded"}));
  EXPECT_EQ(Gain().currentIndex(), 0);
  Pick(Gain(), 2);
  EXPECT_EQ(Stored(&PlayingPreferences::Gain), ReplayGain::kAlbum);
  EXPECT_EQ(told_gain, ReplayGain::kAlbum);
  EXPECT_EQ(changes, 1);
  Open();
  EXPECT_EQ(Gain().currentIndex(), 2);
}

TEST_F(PlayerPageTest, TheDevicesOfTheRunningPlayerAreOffered) {
  devices = {{"auto", "Autoselect device"}, {"pulse/usb", "USB Headset"}, {"alsa/hdmi", ""}};
  Open();
  EXPECT_EQ(TextsOf(Device()), (QStringList{"Chosen by the system", "USB Headset", "alsa/hdmi"}));
  EXPECT_EQ(WhyNot(), "");
  EXPECT_EQ(Device().currentIndex(), 0);
  Pick(Device(), 1);
  EXPECT_EQ(Stored(&PlayingPreferences::Device), "pulse/usb");
  EXPECT_EQ(told_device, "pulse/usb");
  EXPECT_EQ(changes, 1);
  Pick(Device(), 0);
  EXPECT_EQ(told_device, "auto");
}

TEST_F(PlayerPageTest, TheStoredDeviceIsOfferedThoughItIsNotThere) {
  PlayingPreferences(tallow.preferences).SetDevice("pulse/usb");
  Open();
  EXPECT_EQ(TextsOf(Device()), (QStringList{"Chosen by the system", "pulse/usb"}));
  EXPECT_EQ(Device().currentIndex(), 1);
  EXPECT_EQ(WhyNot(), "The sound devices are listed here while the player runs.");
  devices = {{"alsa/hdmi", "Screen"}};
  Open();
  EXPECT_EQ(TextsOf(Device()),
            (QStringList{"Chosen by the system", "Screen", "pulse/usb (not there)"}));
  EXPECT_EQ(Device().currentIndex(), 2);
  EXPECT_EQ(Stored(&PlayingPreferences::Device), "pulse/usb");
}

TEST_F(PlayerPageTest, WithWinampTheSoundIsGreyAndSaysWhy) {
  Open();
  EXPECT_TRUE(Gain().isEnabled());
  EXPECT_TRUE(Device().isEnabled());
  Pick(Players(), 1);
  EXPECT_FALSE(Gain().isEnabled());
  EXPECT_FALSE(Device().isEnabled());
  const QString reason = "Winamp cannot do this. Tallow's own player can; choose it above.";
  EXPECT_EQ(WhyNot(), reason);
  EXPECT_EQ(Gain().toolTip(), reason);
  EXPECT_EQ(Device().toolTip(), reason);
  Pick(Players(), 0);
  EXPECT_TRUE(Gain().isEnabled());
  EXPECT_EQ(Gain().toolTip(), "");
}

TEST_F(PlayerPageTest, ALongPathDoesNotWidenThePage) {
  Open();
  const int width = page->minimumSizeHint().width();
  winamps.push_back(Program(std::string(120, 'x') + "/winamp.exe"));
  Open();
  EXPECT_EQ(page->minimumSizeHint().width(), width);
}

}  // namespace
}  // namespace tallow
