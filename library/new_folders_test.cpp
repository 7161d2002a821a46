// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/new_folders.h"

#include <algorithm>
#include <filesystem>
#include <random>
#include <set>

#include "library/excluded_folders.h"
#include "tests/library_fixture.h"
#include "tests/row_numbers.h"
#include "util/path_text.h"

namespace tallow {
namespace {

using Paths = std::set<std::string>;

const std::string kRoot = kSeparator == '/' ? "/" : "C:\\";

/// The path of a folder, given with slashes and without the root.
std::string At(std::string path) {
  std::ranges::replace(path, '/', kSeparator);
  return kRoot + path;
}

std::string Above(const std::string& folder) {
  return std::string(FolderOfPath(std::string_view(folder).substr(0, folder.size() - 1)));
}

/// A computer without files. All paths end in a separator.
struct Computer {
  Paths folders;  ///< those above each are among them
  Paths links;    ///< those of the folders that are links
  Paths known;
  std::string home;
  std::vector<std::string> roots;

  void Add(const std::string& folder) {
    for (std::string path = folder; !path.empty(); path = Above(path)) folders.insert(path);
  }
  std::vector<std::string> Below(const std::string& folder) const {
    std::vector<std::string> below;
    for (const std::string& other : folders)
      if (other != folder && Above(other) == folder) below.push_back(other);
    return below;
  }
};

/// The folders that exist and that a scan lists and uses. Expects that it lists none twice.
Paths Listed(const Computer& computer) {
  std::vector<std::string> folders(computer.known.begin(), computer.known.end());
  NewFolders scan(folders, computer.home, computer.roots);
  Paths listed;
  while (!folders.empty()) {
    for (const std::string& folder : folders) {
      std::vector<SubfolderEntry> entries;
      for (const std::string& below : computer.Below(folder))
        entries.push_back({below.substr(folder.size(), below.size() - folder.size() - 1),
                           computer.links.contains(below)});
      const NewFolders::Role role = scan.Visit(folder, entries);
      EXPECT_EQ(role == NewFolders::Role::kKnown, computer.known.contains(folder)) << folder;
      if (role == NewFolders::Role::kIgnored || !computer.folders.contains(folder)) continue;
      EXPECT_TRUE(listed.insert(folder).second) << folder << " is listed twice";
    }
    folders = scan.TakeNext();
  }
  return listed;
}

/// The rules of NewFolders, word by word, and as slow as they are.
class LiteralRules {
 public:
  explicit LiteralRules(const Computer& computer) : computer_(computer) {}

  Paths Listed() const {
    Paths listed;
    for (const std::string& folder : computer_.folders)
      if (computer_.known.contains(folder) || IsListedParent(folder)) listed.insert(folder);
    for (bool has_changed = true; has_changed;) {
      has_changed = false;
      for (const std::string& folder : computer_.folders)
        if (folder != kRoot && listed.contains(Above(folder)) && IsEntered(folder) &&
            listed.insert(folder).second)
          has_changed = true;
    }
    return listed;
  }

 private:
  bool HasHome() const { return !computer_.home.empty(); }
  bool IsRoot(const std::string& folder) const {
    return folder == kRoot || std::ranges::count(computer_.roots, folder) > 0;
  }
  bool IsAtOrAboveHome(const std::string& folder) const {
    return HasHome() && computer_.home.starts_with(folder);
  }
  bool IsEnd(const std::string& folder) const { return IsRoot(folder) || IsAtOrAboveHome(folder); }
  bool LeadsTo(const std::string& folder, const std::string& known) const {
    if (!known.starts_with(folder) || IsExcludedFolder(known)) return false;
    for (std::string path = known; path != folder; path = Above(path))
      if (IsEnd(path)) return false;
    return true;
  }
  /// The subfolders that lead to songs, whether they exist or not.
  Paths Leading(const std::string& folder) const {
    Paths leading;
    for (const std::string& known : computer_.known) {
      if (!known.starts_with(folder) || known == folder) continue;
      const std::string child = known.substr(0, known.find(kSeparator, folder.size()) + 1);
      if (!IsEnd(child) && LeadsTo(child, known)) leading.insert(child);
    }
    return leading;
  }
  bool IsDiskOfMusic(const std::string& root) const {
    const std::vector<std::string> below = computer_.Below(root);
    const auto entered =
        std::ranges::count_if(below, [&](const std::string& child) { return IsEntered(child); });
    const std::size_t leading = Leading(root).size();
    return leading >= 2 && 2 * leading > static_cast<std::size_t>(entered);
  }
  bool IsListedParent(const std::string& folder) const {
    if (IsRoot(folder)) return !IsAtOrAboveHome(folder) && IsDiskOfMusic(folder);
    if (IsAtOrAboveHome(folder) || (HasHome() && Above(folder) == Above(computer_.home)))
      return false;
    if (HasHome() && folder.starts_with(computer_.home) && folder[computer_.home.size()] == '.')
      return false;
    const Paths leading = Leading(folder);
    if (leading.size() >= 2) return true;
    const bool has_known = std::ranges::any_of(
        leading, [&](const std::string& child) { return computer_.known.contains(child); });
    const std::vector<std::string> below = computer_.Below(folder);
    const auto real = std::ranges::count_if(
        below, [&](const std::string& child) { return !computer_.links.contains(child); });
    return has_known && 2 * leading.size() >= static_cast<std::size_t>(real);
  }
  bool IsEntered(const std::string& folder) const {
    const std::string above = Above(folder);
    if (computer_.links.contains(folder) || IsEnd(folder) || IsExcludedFolder(folder)) return false;
    if (HasHome() && above == computer_.home && folder[above.size()] == '.') return false;
    return !HasHome() || above == computer_.home || !computer_.home.starts_with(above);
  }

  const Computer& computer_;
};

TEST(NewFolders, ASubfolderOfAKnownFolderIsListedAtAnyDepth) {
  Computer computer;
  computer.Add(At("m/a/b/c/"));
  computer.Add(At("m/other/"));
  computer.Add(At("m/more/"));
  computer.known = {At("m/a/")};
  EXPECT_EQ(Listed(computer), (Paths{At("m/a/"), At("m/a/b/"), At("m/a/b/c/")}));
}

TEST(NewFolders, ANewAlbumBesideKnownOnesIsListed) {
  Computer computer;
  for (const char* const folder : {"m/abba/one/", "m/abba/two/", "m/abba/new/"})
    computer.Add(At(folder));
  computer.known = {At("m/abba/one/"), At("m/abba/two/")};
  EXPECT_TRUE(Listed(computer).contains(At("m/abba/new/")));
}

TEST(NewFolders, ANewArtistBesideKnownOnesIsListed) {
  Computer computer;
  for (const char* const folder : {"m/abba/one/", "m/queen/two/", "m/zappa/new/", "m/x/", "m/y/"})
    computer.Add(At(folder));
  computer.known = {At("m/abba/one/"), At("m/queen/two/")};
  EXPECT_TRUE(Listed(computer).contains(At("m/zappa/new/")));
}

TEST(NewFolders, ASecondAlbumOfTheOnlyArtistIsListed) {
  Computer computer;
  computer.Add(At("m/abba/one/"));
  computer.Add(At("m/abba/new/"));
  computer.known = {At("m/abba/one/")};
  EXPECT_TRUE(Listed(computer).contains(At("m/abba/new/")));
  // A folder among many others is not a folder of albums.
  computer.Add(At("m/abba/more/"));
  EXPECT_EQ(Listed(computer), Paths{At("m/abba/one/")});
}

TEST(NewFolders, ARenamedAlbumIsListed) {
  Computer computer;
  computer.Add(At("m/abba/renamed/"));
  computer.known = {At("m/abba/one/")};
  EXPECT_TRUE(Listed(computer).contains(At("m/abba/renamed/")));
}

TEST(NewFolders, ANewArtistInTheRootOfADiskOfMusicIsListed) {
  Computer computer;
  for (const char* const folder :
       {"media/music/abba/", "media/music/queen/one/", "media/music/zappa/new/",
        "media/music/$RECYCLE.BIN/", "media/music/incomplete/"})
    computer.Add(At(folder));
  computer.roots = {At("media/music/")};
  computer.known = {At("media/music/abba/"), At("media/music/queen/one/")};
  EXPECT_EQ(Listed(computer), (Paths{At("media/music/"), At("media/music/abba/"),
                                     At("media/music/queen/"), At("media/music/queen/one/"),
                                     At("media/music/zappa/"), At("media/music/zappa/new/")}));
  // Two folders of four are not most of a disk.
  computer.Add(At("media/music/photos/"));
  EXPECT_FALSE(Listed(computer).contains(At("media/music/zappa/")));
}

TEST(NewFolders, TheRootOfASystemAndADiskWithOneFolderOfMusicAreNoTops) {
  Computer computer;
  computer.home = At("home/ada/");
  for (const char* const folder : {"home/ada/", "music/", "songs/", "more/", "new/"})
    computer.Add(At(folder));
  computer.known = {At("music/"), At("songs/"), At("more/")};
  EXPECT_EQ(Listed(computer), computer.known);
  computer.roots = {At("disk/")};
  computer.Add(At("disk/music/a/"));
  computer.Add(At("disk/photos/"));
  computer.known = {At("disk/music/a/"), At("disk/music/b/")};
  EXPECT_FALSE(Listed(computer).contains(At("disk/photos/")));
}

TEST(NewFolders, FoldersOfTheSystemAndOfProgramsAreNoTops) {
  Computer computer;
  computer.home = At("home/ada/");
  for (const char* const folder :
       {"usr/share/a/", "usr/share/b/", "usr/share/c/", "home/ada/.x/a/", "home/ada/.x/b/",
        "home/ada/.x/c/", "home/ada/music/", "home/ada/AppData/x/a/", "home/ada/AppData/x/b/",
        "home/ada/AppData/x/c/", "home/bob/a/", "home/bob/b/", "home/bob/c/"})
    computer.Add(At(folder));
  computer.known = {
      At("usr/share/a/"),          At("usr/share/b/"),          At("home/ada/.x/a/"),
      At("home/ada/.x/b/"),        At("home/bob/a/"),           At("home/bob/b/"),
      At("home/ada/AppData/x/a/"), At("home/ada/AppData/x/b/"), At("home/ada/music/")};
  EXPECT_EQ(Listed(computer), computer.known);
}

TEST(NewFolders, TheRulesAreThoseOfALiteralSearchOnRandomTrees) {
  std::mt19937 random(1);
  const auto draw = [&](std::size_t below) { return random() % below; };
  const char* const names[] = {"a", "b", "c", "d", ".e", "incomplete"};
  std::size_t found = 0;
  for (int round = 0; round < 3000; ++round) {
    Computer computer;
    for (std::size_t k = 2 + draw(14); k > 0; --k) {
      std::string folder;
      for (std::size_t depth = 1 + draw(5); depth > 0; --depth)
        folder += std::string(names[draw(draw(8) == 0 ? 6 : 4)]) + "/";
      computer.Add(At(folder));
    }
    const std::vector<std::string> all(computer.folders.begin(), computer.folders.end());
    const auto any = [&] { return all[draw(all.size())]; };
    for (std::size_t k = 1 + draw(5); k > 0; --k) computer.known.insert(any());
    if (draw(4) == 0) computer.known.insert(any() + "gone" + kSeparator);
    if (draw(3) == 0) computer.home = any();
    if (computer.home == kRoot) computer.home.clear();
    for (std::size_t k = draw(3); k > 0; --k) computer.roots.push_back(any());
    if (draw(3) == 0) computer.links.insert(any());
    const Paths expected = LiteralRules(computer).Listed();
    ASSERT_EQ(Listed(computer), expected) << "round " << round;
    found += expected.size();
  }
  EXPECT_GT(found, 6000U);
}

/// A library over real files, whose songs were found by a search.
class NewFoldersOnDisk : public LibraryTest {
 protected:
  NewFoldersOnDisk() {
    library.UseDrives([this] { return mounted; }, {});
    library.UseSwitches({.new_subfolders = true});
    mounted.push_back({music.path(), {"uuid A", kSep}, false});
  }
  void Know(const std::string& inside) {
    const std::string path = music.File(inside);
    library.AddSong(FolderOfPath(path), NameOfPath(path), 1);
  }
  void EndSearch() {
    library.BeginScan(ScanKind::kComputer);
    library.ImportFoundSongs(0);
    library.FinishScan(true);
  }
  void Scan(const GoOn& go_on = {}) {
    library.BeginScan(ScanKind::kFolderList);
    library.CheckToSeeIfFilesAreMissingAndMakeFalse();
    library.AddAnyAdditionalMp3FromTheNormalDirectories(go_on);
    library.FinishScan(true);
    ExpectRowsAreNumbers(library);
  }
  Texts Names() const { return Cells(kFileName); }

  MountedVolumes mounted;
};

TEST_F(NewFoldersOnDisk, ASongInANewFolderIsFoundAndItsFolderIsKnown) {
  Know("abba/one/a.mp3");
  EndSearch();
  const std::string path = music.File("abba/one/new/deep/b.mp3");
  music.File("abba/two/c.mp3");
  Scan();
  EXPECT_EQ(Names(), (Texts{"a.mp3", "b.mp3", "c.mp3"}));
  const std::string list = ReadWholeFile(ListPath()).value_or("");
  EXPECT_NE(list.find(FolderOfPath(path)), std::string::npos);
  library.UseSwitches(kClassicStyle);
  music.File("abba/one/new/deep/d.mp3");
  Scan();
  EXPECT_EQ(Names(), (Texts{"a.mp3", "b.mp3", "c.mp3", "d.mp3"}));
}

TEST_F(NewFoldersOnDisk, ANewArtistDirectlyBelowADriveIsFound) {
  Know("abba/a.mp3");
  Know("queen/one/b.mp3");
  EndSearch();
  music.File("zappa/c.mp3");
  Scan();
  EXPECT_EQ(Names(), (Texts{"a.mp3", "b.mp3", "c.mp3"}));
}

TEST_F(NewFoldersOnDisk, InClassicStyleNewFoldersAreNotFound) {
  library.UseSwitches(kClassicStyle);
  Know("abba/one/a.mp3");
  EndSearch();
  music.File("abba/one/new/b.mp3");
  music.File("abba/two/c.mp3");
  Scan();
  EXPECT_EQ(Names(), Texts{"a.mp3"});
}

TEST_F(NewFoldersOnDisk, OtherDrivesAndExcludedFoldersAreNotEntered) {
  Know("abba/a.mp3");
  EndSearch();
  music.File("abba/usb/b.mp3");
  music.File("abba/incomplete/c.mp3");
  music.File("abba/$RECYCLE.BIN/d.mp3");
  mounted.push_back({music.Folder("abba/usb"), {"uuid B", kSep}, false});
  Scan();
  EXPECT_EQ(Names(), Texts{"a.mp3"});
}

TEST_F(NewFoldersOnDisk, ACancelKeepsWhatWasFound) {
  Know("abba/a.mp3");
  EndSearch();
  music.File("abba/1/b.mp3");
  music.File("abba/1/deep/c.mp3");
  Scan([](std::string_view folder) { return !folder.ends_with("1" + kSep); });
  EXPECT_EQ(Names(), (Texts{"a.mp3", "b.mp3"}));
}

TEST_F(NewFoldersOnDisk, ARenamedAlbumKeepsItsRanks) {
  Know("abba/one/a.mp3");
  Know("abba/other/b.mp3");
  EndSearch();
  for (std::int32_t row = 1; row <= 2; ++row) library.Mp3Info(kSongRank, row, "7");
  library.Save();
  const std::string from = music / "abba/one";
  std::filesystem::rename(std::filesystem::path(from), std::filesystem::path(music / "abba/1976"));
  Scan();
  ASSERT_EQ(library.UBoundOfMp3Array(), 3);
  EXPECT_FALSE(library.IsPresent(1));
  EXPECT_EQ(library.Mp3Info(kSongRank, 3), "7");
  EXPECT_EQ(library.Mp3Info(kFileLocation, 3), music.Folder("abba/1976"));
}

}  // namespace
}  // namespace tallow
