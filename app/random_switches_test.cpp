// SPDX-License-Identifier: GPL-3.0-or-later
// A hundred random switches to and fro, over a collection with namesakes, other formats, songs on a
// drive that is away and folders of the user: no entry and no rank is lost, however often.
#include <filesystem>
#include <random>

#include "app/search/file_search.h"
#include "app/style_changes.h"
#include "jukebox/special_folders.h"
#include "tests/id3v2_tag.h"
#include "tests/row_numbers.h"
#include "tests/system_fixture.h"

namespace tallow {
namespace {

namespace fs = std::filesystem;

class RandomSwitches : public SystemTest, protected StyleWindows {
 protected:
  RandomSwitches() {
    // Namesakes with unlike tags, and songs whose newer tags say more than the old ones.
    const char* const kArtists[] = {"Queen", "Queens of the Stone Age", "Кино", "ABBA", "A*"};
    const char* const kDates[] = {"1976", "12/05/1999", "2024", "1912", ""};
    for (int k = 0; k < 40; ++k) {
      const std::string artist = kArtists[random() % 5];
      const std::string date = kDates[random() % 5];
      const std::string newer = Id3v2Tag({{"TPE1", artist},
                                          {"TALB", k % 2 == 0 ? "Hits" : "Live"},
                                          {"TDRC", date},
                                          {"TRCK", std::to_string(k % 7)},
                                          {"TCON", k % 3 == 0 ? "Rock" : "Pop"}});
      const std::string old =
          k % 3 == 0
              ? std::string()
              : Tag({.artist = artist, .year = date, .genra = static_cast<unsigned char>(k % 20)});
      const std::string folder = k % 5 == 0 ? "stick/" : "f" + std::to_string(k % 4) + "/";
      const std::string name = "song " + std::to_string(k % 13);
      // Of this format, only size and ID3 tag count.
      const std::string file = folder + name + (k % 4 == 0 ? ".aac" : ".mp3");
      if (FileExists(music / file)) continue;
      music.File(file, newer + Audio(400 + static_cast<std::size_t>(k)) + old);
    }
  }

  // Each start mounts the drives that are there.
  void StartHere() {
    windows.emplace();
    tallow.emplace(application.path());
    tallow->library.UseDrives([this] { return mounted; }, {});
    system.emplace(*tallow, drives, *windows);
    ASSERT_TRUE(system->Main(runtime_file));
    tallow->preferences.OnChange([this](const Switches& before) { changes->Follow(before); });
    changes.emplace(*tallow, static_cast<StyleWindows&>(*this));
  }

  /// Folders of the user at top level and inside automatic ones, in both jukeboxes.
  void MakeFoldersOfTheUser(Jukebox& jukebox) {
    FolderTree& tree = jukebox.Nodes();
    for (Folder* const above : {static_cast<Folder*>(nullptr), tree.Find("By Mood")}) {
      Folder& mine = tree.AddChild(above, "Mine");
      for (std::int32_t row = tallow->library.UBoundOfMp3Array(); row > 0; row -= 2)
        mine.Items().emplace_back(row, tallow->library.Song(row).Rank());
      tree.AddChild(&mine, "Album").Items().emplace_back(1, 2);
    }
  }

  /// All entries below a folder, as texts: those of automatic folders sorted, because filing
  /// appends songs in another order than the user sees them.
  /// \param listed only the entries that are listed
  std::string Describe(Folder& folder, const std::string& path, bool listed) const {
    const std::string place = path + "/" + folder.Text();
    std::vector<std::string> entries;
    for (const SongEntry& entry : folder.Items())
      if (!listed || !tallow->library.IsHidden(entry.SubItem()))
        entries.push_back(std::to_string(entry.SubItem()));
    std::vector<std::string> below;
    for (std::int32_t k = 0; k < folder.Children(); ++k)
      below.push_back(Describe(folder.ChildAt(k), place, listed));
    if (IsAutomaticFolder(folder)) {
      std::sort(entries.begin(), entries.end());
      std::sort(below.begin(), below.end());
    }
    std::string text;
    // A folder without a listed song may be there or not.
    if (!entries.empty() || !IsAutomaticFolder(folder)) {
      text = place + ":";
      for (const std::string& entry : entries) text += " " + entry;
      text += "\n";
    }
    for (const std::string& lines : below) text += lines;
    return text;
  }
  std::string Describe(bool listed) const {
    std::string text;
    for (Jukebox* const jukebox : windows->open)
      for (std::int32_t k = 0; k < jukebox->Nodes().Children(); ++k)
        text += Describe(jukebox->Nodes().ChildAt(k), jukebox->Caption(), listed);
    return text;
  }
  /// Rank, name and folder of every song.
  std::vector<std::string> Songs() const {
    std::vector<std::string> songs;
    for (std::int32_t row = 1; row <= tallow->library.UBoundOfMp3Array(); ++row) {
      const SongView song = tallow->library.Song(row);
      songs.push_back(std::to_string(song.Rank()) + " " + song.Path());
    }
    return songs;
  }

  /// Shows some folder of each jukebox, as a click on it does.
  void ShowFoldersAtRandom() {
    for (Jukebox* const jukebox : windows->open) {
      FolderTree& tree = jukebox->Nodes();
      Folder* folder = &tree.ChildAt(static_cast<std::int32_t>(random() % 8) % tree.Children());
      while (folder->Children() > 0 && random() % 3 != 0)
        folder = &folder->ChildAt(static_cast<std::int32_t>(random() % 50) % folder->Children());
      jukebox->ShowFolder(*folder, tallow->library, tallow->folder_changes);
    }
  }

  void Choose(Style style) {
    tallow->preferences.SetStyle(style);
    changes->FinishStyle();
  }
  /// Switches a whole style or some single switches, as the preferences dialog does.
  void SwitchAtRandom() {
    Preferences& preferences = tallow->preferences;
    if (random() % 3 == 0) return Choose(random() % 2 == 0 ? Style::kClassic : Style::kModern);
    for (auto n = 1 + random() % 3; n > 0; --n) {
      Switches switches = preferences.switches();
      bool& one = switches.*StyleSwitches()[random() % StyleSwitches().size()].member;
      one = !one;
      preferences.SetSwitches(switches);
    }
    changes->Finish();
  }
  /// All folders and entries of a jukebox, in their order.
  static std::string Describe(const Folder& folder) {
    std::string text = folder.Text() + "(";
    for (const SongEntry& entry : folder.Items()) text += std::to_string(entry.SubItem()) + " ";
    for (std::int32_t k = 0; k < folder.Children(); ++k) text += Describe(folder.ChildAt(k));
    return text + ")";
  }
  static std::string Describe(const Jukebox& jukebox) {
    std::string text;
    for (std::int32_t k = 0; k < jukebox.Nodes().Children(); ++k)
      text += Describe(jukebox.Nodes().ChildAt(k)) + "\n";
    return text;
  }
  /// Forgets the steps so far, and records what the jukeboxes hold after each step from now on.
  void RecordSteps() {
    states.clear();
    for (Jukebox* const jukebox : windows->open) {
      jukebox->History().Clear();
      states.push_back({Describe(*jukebox)});
    }
  }
  /// Called after each filing.
  void NoticeScan(const std::vector<std::string>& /*lines*/) override {
    for (std::size_t k = 0; k < states.size(); ++k)
      if (windows->open[k]->History().Steps() == states[k].size())
        states[k].push_back(Describe(*windows->open[k]));
  }
  void ExpectEachStepIsUndoneAndRedone() {
    for (std::size_t k = 0; k < states.size(); ++k) {
      Jukebox& jukebox = *windows->open[k];
      ASSERT_EQ(jukebox.History().Steps(), states[k].size() - 1);
      for (std::size_t step = states[k].size() - 1; step > 0; --step) {
        EXPECT_TRUE(jukebox.Undo().done);
        ASSERT_EQ(Describe(jukebox), states[k][step - 1]) << step;
      }
      for (std::size_t step = 1; step < states[k].size(); ++step) {
        EXPECT_TRUE(jukebox.Redo().done);
        ASSERT_EQ(Describe(jukebox), states[k][step]) << step;
      }
    }
  }

  NewSongsResult Search(NewSongsPlace place) override {
    ++searches;
    clsMain& library = tallow->library;
    library.BeginScan(place == NewSongsPlace::kWholeComputer ? ScanKind::kComputer
                                                             : ScanKind::kFolderList);
    library.CheckToSeeIfFilesAreMissingAndMakeFalse();
    std::int32_t known = library.UBoundOfMp3Array();
    if (place == NewSongsPlace::kWholeComputer) {
      FileSearch(*tallow, drives, &progress).SearchDrivesForMp3s(true, {});
      library.DeleteIdenticalFileNamesAndPaths(known);
      library.WriteOutMp3DirectoryLocations();
    } else {
      library.AddAnyAdditionalMp3FromTheNormalDirectories();
    }
    library.FinishScan(true);
    try {
      FillAutomaticFolders(kFillNewToo, false, {}, library, windows->open, nullptr, {},
                           tallow->details.TagReader());
    } catch (const FilingError&) {
      // The classic style cannot file "12/0".
    }
    return {};
  }
  void Notice(const std::vector<std::string>& /*lines*/) override {}
  std::span<Jukebox* const> OpenJukeboxes() override { return windows->open; }
  /// The user does not always want songs to be filed again.
  MessageAnswer Show(const Message& /*message*/) override {
    return random() % 4 == 0 ? MessageAnswer::kNo : MessageAnswer::kYes;
  }

  std::mt19937 random{15};
  const std::string stick = music.Folder("stick");
  MountedVolumes mounted{{music.path(), {"uuid A", kSep}, false}, {stick, {"uuid B", kSep}, false}};
  RecordedProgress progress;
  std::optional<StyleChanges> changes;
  int searches = 0;
  std::vector<std::vector<std::string>> states;  ///< of each jukebox, after each step
};

TEST_F(RandomSwitches, LoseNoEntryAndNoRank) {
  StartHere();
  Choose(Style::kModern);
  clsMain& library = tallow->library;
  Jukebox& other = windows->NewJukebox();
  other.Caption("OTHER");
  for (const char* const text : {"All Songs", "Artist", "By Mood", "Album"})
    other.Nodes().AddChild(nullptr, text);
  Search(NewSongsPlace::kWholeComputer);
  for (Jukebox* const jukebox : windows->open) MakeFoldersOfTheUser(*jukebox);
  for (std::int32_t row = 1; row <= library.UBoundOfMp3Array(); ++row)
    library.Mp3Info(kSongRank, row, std::to_string(2 + row % 6));
  // The stick is taken out while the program runs.
  fs::rename(fs::path(stick), fs::path(application / "stick"));
  CreateFolders(stick);
  mounted.pop_back();
  Search(NewSongsPlace::kKnownFolders);
  ASSERT_FALSE(library.AwayPlaces().empty());

  const auto settle = [&](Style style) {
    Choose(style == Style::kModern ? Style::kClassic : Style::kModern);
    Choose(style);
  };
  settle(Style::kClassic);
  const std::string classic = Describe(true);
  settle(Style::kModern);
  const std::string modern = Describe(false);
  const std::vector<std::string> songs = Songs();
  EXPECT_NE(Describe(true), classic);
  RecordSteps();
  for (int round = 0; round < 100; ++round) {
    ShowFoldersAtRandom();
    SwitchAtRandom();
    ShowFoldersAtRandom();
    ASSERT_EQ(Songs(), songs) << round;
    ExpectRowsAreNumbers(library);
    if (round % 10 != 9) continue;
    settle(Style::kClassic);
    ASSERT_EQ(Describe(true), classic) << round;
    settle(Style::kModern);
    ASSERT_EQ(Describe(false), modern) << round;
  }
  EXPECT_GT(searches, 20);
  EXPECT_GT(states[0].size(), 40U);
  ExpectEachStepIsUndoneAndRedone();
}

}  // namespace
}  // namespace tallow
