// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/search/music_places.h"

#include <algorithm>
#include <filesystem>
#include <gtest/gtest.h>

#include "app/search/file_search.h"
#include "app/search/music_choice.h"
#include "tests/library_fixture.h"
#include "tests/recorded_progress.h"
#include "util/path_text.h"

namespace tallow {
namespace {

class MusicPlacesTest : public LibraryTest {
 protected:
  MusicPlacesTest() { tallow.preferences.Load(preferences_path); }

  /// "root kind ticked" of each place.
  Texts Places(const DriveList& drives) {
    Texts texts;
    for (const MusicPlace& place : MusicPlaces(drives, &choice))
      texts.push_back(place.root + " " + std::to_string(static_cast<int>(place.kind)) +
                      (place.is_ticked ? " ticked" : ""));
    return texts;
  }
  static std::string Text(const std::string& root, PlaceKind kind, bool ticked) {
    return root + " " + std::to_string(static_cast<int>(kind)) + (ticked ? " ticked" : "");
  }
  MusicPlace Place(const DriveList& drives, const std::string& root) {
    for (const MusicPlace& place : MusicPlaces(drives, &choice))
      if (place.root == root) return place;
    ADD_FAILURE() << root;
    return {};
  }
  void Tick(const DriveList& drives, const std::string& root, bool ticked) {
    TickPlace(tallow, Place(drives, root), ticked);
  }
  std::string Add(const DriveList& drives, const std::string& path) {
    // The disks of the tests answer, so no thread uses the drives after the call.
    return AddMusicFolder(tallow, {std::shared_ptr<void>(), &drives}, path);
  }
  /// The state of each place, "root: state".
  Texts States(const DriveList& drives, const Texts& gone = {}) {
    Texts states;
    for (const PlaceLine& line : PlaceLines(tallow, drives, [&](const std::string& root) {
           return std::find(gone.begin(), gone.end(), root) == gone.end();
         }))
      states.push_back(line.place.root + ": " + line.state);
    return states;
  }
  bool Search(const DriveList& drives) {
    return FileSearch(tallow, drives, &progress).SearchDrivesForMp3s(true, {});
  }
  Texts NamedPlaces() const {
    Texts places;
    for (const std::string& line : progress.status)
      places.push_back(line.substr(std::string("Looking for Mp3s in ").size()));
    return places;
  }

  const std::string disk = "C:" + kSep;
  const std::string other = "Z:" + kSep;
  const std::string preferences_path = PreferencesPath(application.path());
  MusicChoice choice{tallow.preferences};
  RecordedProgress progress;
};

TEST_F(MusicPlacesTest, FixedDisksComeFirstAndOnlyTheyAreTicked) {
  // The letters of a Windows computer with a card reader, a DVD drive, a share and a RAM disk.
  const TestDrives drives({{"A:\\", kRemovableDrive},
                           {"C:\\", kFixedDrive},
                           {"D:\\", kFixedDrive},
                           {"E:\\", kCdRom},
                           {"F:\\", kNoDrive},
                           {"R:\\", kRamDisk},
                           {"U:\\", kUnknownDrive},
                           {"Z:\\", kRemoteDrive}});
  EXPECT_EQ(
      Places(drives),
      (Texts{Text("C:\\", PlaceKind::kFixedDisk, true), Text("D:\\", PlaceKind::kFixedDisk, true),
             Text("A:\\", PlaceKind::kRemovable, false), Text("E:\\", PlaceKind::kDisc, false),
             Text("U:\\", PlaceKind::kOther, false), Text("Z:\\", PlaceKind::kShare, false)}));
  EXPECT_TRUE(choice.IsDefault());
  EXPECT_FALSE(FileExists(preferences_path));
}

TEST_F(MusicPlacesTest, AChoiceIsStoredAndCanBeTakenBack) {
  const TestDrives drives({{disk, kFixedDrive}, {other, kRemoteDrive}});
  Tick(drives, disk, false);
  Tick(drives, other, true);
  const Texts expected{Text(disk, PlaceKind::kFixedDisk, false),
                       Text(other, PlaceKind::kShare, true)};
  EXPECT_EQ(Places(drives), expected);
  tallow.preferences.Load(preferences_path);
  EXPECT_EQ(Places(drives), expected);
  Tick(drives, disk, true);
  Tick(drives, other, false);
  EXPECT_TRUE(choice.IsDefault());
}

TEST_F(MusicPlacesTest, AChangedFileOfPreferencesKeepsPathsOfAnyBytes) {
  if (kSeparator == '\\') GTEST_SKIP() << "names of this system are text";
  const std::string folder = music.Folder("caf\xE9 \"x\"");
  EXPECT_EQ(Add(TestDrives({}), folder), "");
  tallow.preferences.Load(preferences_path);
  EXPECT_EQ(choice.Folders(), Texts{folder});
}

TEST_F(MusicPlacesTest, ATickedDriveThatIsNotThereStaysInTheList) {
  const TestDrives with({{disk, kFixedDrive}, {other, kRemovableDrive}});
  const TestDrives without({{disk, kFixedDrive}});
  Tick(with, other, true);
  EXPECT_EQ(Places(without),
            (Texts{Text(disk, PlaceKind::kFixedDisk, true), Text(other, PlaceKind::kAway, true)}));
  EXPECT_EQ(States(without), (Texts{disk + ": Searched", other + ": Away"}));
  Tick(without, other, false);
  EXPECT_EQ(Places(without), Texts{Text(disk, PlaceKind::kFixedDisk, true)});
}

TEST_F(MusicPlacesTest, AFolderIsAddedOnceAndRemovedAgain) {
  const TestDrives drives({{music.path(), kRemovableDrive}});
  const std::string folder = music.Folder("songs");
  EXPECT_EQ(Add(drives, folder.substr(0, folder.size() - 1)), "");
  EXPECT_EQ(Add(drives, folder), folder + " is in the list already.");
  EXPECT_EQ(choice.Folders(), Texts{folder});
  Tick(drives, folder, false);
  EXPECT_EQ(Add(drives, folder), folder + " is in the list already, and is searched from now on.");
  EXPECT_TRUE(choice.IsTicked(folder, true));
  RemoveMusicFolder(tallow, folder);
  EXPECT_TRUE(choice.IsDefault());
}

TEST_F(MusicPlacesTest, AddingADriveTicksIt) {
  const TestDrives drives({{music.path(), kRemovableDrive}});
  EXPECT_EQ(Add(drives, music.path()),
            music.path() + " is in the list already, and is searched from now on.");
  EXPECT_EQ(Places(drives), Texts{Text(music.path(), PlaceKind::kRemovable, true)});
}

TEST_F(MusicPlacesTest, WhatIsNoFolderCannotBeAdded) {
  TestDrives drives({});
  const std::string file = music.File("a.mp3");
  EXPECT_EQ(Add(drives, file), file + " is not a folder that Tallow can open.");
  drives.forbidden_link = music.Folder("proc");
  EXPECT_EQ(Add(drives, drives.forbidden_link),
            drives.forbidden_link + " shows the state of the system and has no music.");
  EXPECT_TRUE(choice.IsDefault());
}

TEST_F(MusicPlacesTest, CountsTheSongsOfEachPlace) {
  const TestDrives drives({{"/", kFixedDrive}, {"/mnt/", kRemoteDrive}});
  for (const char* const folder : {"/a/", "/a/b/", "/mnt/a/", "/mntx/"}) AddSong(folder, "x.mp3");
  AddSong("0", "0", "0");
  const std::vector<MusicPlace> places{{"/", PlaceKind::kFixedDisk, true},
                                       {"/mnt/", PlaceKind::kShare, false},
                                       {"/a/", PlaceKind::kFolder, true},
                                       {"/mnt/a/", PlaceKind::kFolder, true}};
  EXPECT_EQ(SongsInPlaces(places, library), (std::vector<std::int32_t>{3, 1, 2, 1}));
}

TEST_F(MusicPlacesTest, ShowsWhatIsSearchedAndWhatIsNot) {
  TestDrives drives({{music / "c/", kFixedDrive}, {music / "z/", kRemoteDrive}});
  const std::string inside = music.Folder("c/in");
  const std::string share = music.Folder("z");
  Add(drives, inside);
  EXPECT_EQ(States(drives), (Texts{music / "c/" + ": Searched", share + ": Not searched",
                                   inside + ": Not searched yet"}));
  Tick(drives, inside, false);
  Tick(drives, share, true);
  tallow.place_being_searched = music / "c/";
  EXPECT_EQ(States(drives, {share}), (Texts{music / "c/" + ": Being searched", share + ": Away",
                                            inside + ": Searched with " + (music / "c/")}));
  // Another drive is mounted there, so the search of the disk does not enter it.
  tallow.place_being_searched.clear();
  drives.mount_point = inside;
  EXPECT_EQ(States(drives).back(), inside + ": Not searched");
}

TEST_F(MusicPlacesTest, OnlyTickedPlacesAreSearchedAndAllDrivesAreNamed) {
  for (const char* const drive : {"c", "d", "y", "z"})
    music.File(std::string(drive) + "/" + drive + ".mp3");
  const TestDrives drives({{music / "c/", kFixedDrive},
                           {music / "d/", kFixedDrive},
                           {music / "y/", kRemoteDrive},
                           {music / "z/", kRemoteDrive}});
  Tick(drives, music / "c/", false);
  Tick(drives, music / "z/", true);
  EXPECT_TRUE(choice.IsUnread(music / "z/"));
  EXPECT_TRUE(Search(drives));
  EXPECT_EQ(Cells(2), (Texts{"d.mp3", "z.mp3"}));
  EXPECT_EQ(NamedPlaces(), (Texts{music / "c/", music / "d/", music / "y/", music / "z/"}));
  EXPECT_FALSE(choice.IsUnread(music / "z/"));
  EXPECT_EQ(tallow.place_being_searched, "");
}

TEST_F(MusicPlacesTest, AnAddedFolderIsSearchedButNotTwice) {
  music.File("c/in/a.mp3");
  music.File("z/in/b.mp3");
  const TestDrives drives({{music / "c/", kFixedDrive}, {music / "z/", kRemoteDrive}});
  Add(drives, music / "c/in");
  Add(drives, music / "z/in");
  EXPECT_TRUE(Search(drives));
  EXPECT_EQ(Cells(2), (Texts{"a.mp3", "b.mp3"}));
}

TEST_F(MusicPlacesTest, AnAddedFolderOnAnUntickedDiskIsSearched) {
  music.File("c/in/a.mp3");
  music.File("c/b.mp3");
  const TestDrives drives({{music / "c/", kFixedDrive}});
  Add(drives, music / "c/in");
  Tick(drives, music / "c/", false);
  EXPECT_TRUE(Search(drives));
  EXPECT_EQ(Cells(2), Texts{"a.mp3"});
}

TEST_F(MusicPlacesTest, PlacesThatAreAwayAreSkippedAndNamed) {
  music.File("c/a.mp3");
  const std::string gone = music.Folder("gone");
  const std::string empty = music.Folder("empty");
  const TestDrives drives({{music / "c/", kFixedDrive}, {empty, kRemovableDrive}});
  Add(drives, gone);
  std::filesystem::remove(gone.substr(0, gone.size() - 1));
  Tick(drives, empty, true);
  // The mount point of the drive is left as an empty folder.
  const TestDrives later({{music / "c/", kFixedDrive}});
  EXPECT_TRUE(Search(later));
  EXPECT_EQ(Cells(2), Texts{"a.mp3"});
  EXPECT_EQ(NamedPlaces(), (Texts{music / "c/", empty, gone}));
  Texts unread;
  for (const UnreadFolder& folder : library.UnreadFoldersNow()) unread.push_back(folder.path);
  EXPECT_EQ(unread, (Texts{empty, gone}));
  EXPECT_TRUE(choice.IsUnread(gone));
  // A place that is not searched any more is not searched by the next start either.
  RemoveMusicFolder(tallow, gone);
  Tick(later, empty, false);
  EXPECT_TRUE(library.UnreadFoldersNow().empty());
}

TEST_F(MusicPlacesTest, ATickedDriveThatIsAwayIsSearchedWhenItIsBack) {
  const std::string stick = music.Folder("stick");
  const TestDrives drives({{stick, kRemovableDrive}});
  Tick(drives, stick, true);
  music.File("stick/a.mp3");
  EXPECT_TRUE(Search(TestDrives({})));
  EXPECT_EQ(Cells(2), Texts{"a.mp3"});
  EXPECT_TRUE(library.UnreadFoldersNow().empty());
}

TEST_F(MusicPlacesTest, ACancelledSearchLeavesAPlaceUnread) {
  music.File("in/1/a.mp3");
  music.File("in/2/b.mp3");
  Add(TestDrives({}), music / "in");
  progress.on_song = [this] { tallow.SearchCancelled = true; };
  EXPECT_FALSE(Search(TestDrives({})));
  EXPECT_TRUE(choice.IsUnread(music / "in/"));
  EXPECT_EQ(tallow.place_being_searched, "");
}

TEST_F(MusicPlacesTest, GivenDrivesAreTheOnlyPlaces) {
  music.File("c/a.mp3");
  music.File("in/b.mp3");
  const TestDrives drives({{music / "c/", kFixedDrive}});
  Add(drives, music / "in");
  Tick(drives, music / "c/", false);
  tallow.has_given_drives = true;
  EXPECT_EQ(States(drives), Texts{music / "c/" + ": Searched"});
  EXPECT_EQ(PlaceLines(tallow, drives, [](const std::string&) { return true; })[0].kind,
            "Given by --drive");
  EXPECT_TRUE(Search(drives));
  EXPECT_EQ(Cells(2), Texts{"a.mp3"});
}

TEST_F(MusicPlacesTest, LargeCountsHaveGroupsOfDigits) {
  for (int k = 0; k < 1234; ++k) AddSong(music.path(), std::to_string(k) + ".mp3");
  const TestDrives drives({{music.path(), kFixedDrive}});
  EXPECT_EQ(PlaceLines(tallow, drives, [](const std::string&) { return true; })[0].songs, "1,234");
}

TEST_F(MusicPlacesTest, AnEmptyLibrarySaysWhereNoSongsWereFound) {
  EXPECT_EQ(EmptyLibraryText(tallow), "No songs were found on this computer's fixed disks.");
  Add(TestDrives({}), music.path());
  EXPECT_EQ(EmptyLibraryText(tallow), "No songs were found in the places that are searched.");
  tallow.has_given_drives = true;
  EXPECT_EQ(EmptyLibraryText(tallow), "No songs were found in the folders given by --drive.");
  AddSong("0", "0", "0");
  EXPECT_NE(EmptyLibraryText(tallow), "");
  AddSong(music.path(), "a.mp3");
  EXPECT_EQ(EmptyLibraryText(tallow), "");
}

}  // namespace
}  // namespace tallow
