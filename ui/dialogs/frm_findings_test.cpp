// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/dialogs/frm_findings.h"

#include <filesystem>

#include <QPushButton>
#include <QTreeWidget>

#include "tests/library_fixture.h"
#include "tests/recorded_messages.h"

namespace tallow {
namespace {

class FrmFindings : public LibraryTest {
 protected:
  FrmFindings() {
    library.UseDrives([this] { return mounted; }, {});
    for (const char* const name : {"one/a.mp3", "one/b.mp3", "two/c.mp3", "two/a.mp3"}) {
      const std::string path = music.File(name);
      library.AddSong(FolderOfPath(path), NameOfPath(path), 1);
    }
    library.ImportFoundSongs(0);
    library.FinishScan(true);
    std::filesystem::remove_all(std::filesystem::path(one));
    mounted.clear();
    library.CheckToSeeIfFilesAreMissingAndMakeFalse();
  }
  static QStringList Texts(const frmFindings& dialog) {
    QStringList texts;
    const auto* const list = dialog.findChild<QTreeWidget*>(QStringLiteral("lstFindings"));
    for (int k = 0; k < list->topLevelItemCount(); ++k) {
      const QTreeWidgetItem* const heading = list->topLevelItem(k);
      texts.append(heading->text(0));
      for (int n = 0; n < heading->childCount(); ++n)
        texts.append(heading->child(n)->text(0) + " | " + heading->child(n)->text(1));
    }
    return texts;
  }
  static QString Text(const std::string& text) { return QString::fromStdString(text); }

  const std::string one = music / "one/";
  const std::string two = music / "two/";
  MountedVolumes mounted{{one, {"uuid A", kSep}, false}, {two, {"uuid B", kSep}, false}};
  RecordedMessages messages;
  int forgotten = 0;
};

TEST_F(FrmFindings, ListsAwayPlacesAndSkippedFiles) {
  frmFindings dialog(library, messages.Shower(), [this] { ++forgotten; });
  EXPECT_EQ(Texts(dialog),
            (QStringList{"Away (songs keep their ranks and folders)", Text(one) + " | 2 songs",
                         "Skipped because a song with that file name exists",
                         Text(two + "a.mp3") + " | kept instead: " + Text(one + "a.mp3")}));
  EXPECT_TRUE(dialog.findChild<QPushButton*>(QStringLiteral("cmdForget"))->isEnabled());
}

TEST_F(FrmFindings, ForgettingAsksWithTheNumberAndOnlyYesForgets) {
  frmFindings dialog(library, messages.Shower(), [this] { ++forgotten; });
  auto* const forget = dialog.findChild<QPushButton*>(QStringLiteral("cmdForget"));
  EXPECT_EQ(forget->text(), "&Forget Songs of This Drive...");
  messages.answer = MessageAnswer::kNo;
  forget->click();
  ASSERT_EQ(messages.shown.size(), 1U);
  EXPECT_EQ(
      messages.shown[0].text,
      "Forget the 2 songs of " + one +
          "?\n\nThey become missing and disappear from the lists. If their files return, a search "
          "restores them with their ranks.");
  EXPECT_EQ(messages.shown[0].buttons, MessageButtons::kYesNo);
  EXPECT_EQ(forgotten, 0);
  EXPECT_TRUE(library.IsPresent(1));
  messages.answer = MessageAnswer::kYes;
  forget->click();
  EXPECT_EQ(forgotten, 1);
  EXPECT_FALSE(library.IsPresent(1));
  EXPECT_FALSE(forget->isEnabled());
}

TEST_F(FrmFindings, AnEmptyListSaysSo) {
  for (const char* const name : {"one/a.mp3", "one/b.mp3"}) music.File(name);
  RemoveFile(two + "a.mp3");
  library.BeginScan(ScanKind::kFolderList);
  library.CheckToSeeIfFilesAreMissingAndMakeFalse();
  library.AddAnyAdditionalMp3FromTheNormalDirectories();
  frmFindings dialog(library, messages.Shower(), [] {});
  EXPECT_EQ(Texts(dialog), QStringList{"Nothing is away, and nothing was left out."});
}

}  // namespace
}  // namespace tallow
