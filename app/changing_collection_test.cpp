// SPDX-License-Identifier: GPL-3.0-or-later
// A collection that changes between starts: whatever happens to files and names, every entry of a
// jukebox stays the song that was added, and keeps the rank that was given.
#include <algorithm>
#include <filesystem>
#include <map>
#include <random>

#include "app/new_songs.h"
#include "app/search/file_search.h"
#include "jukebox/jukebox_edits.h"
#include "tests/row_numbers.h"
#include "tests/system_fixture.h"

namespace tallow {
namespace {

namespace fs = std::filesystem;

/// The collection: files in folders, each with a unique content that its size identifies.
class Collection {
 public:
  Collection(const TempFolder& folder, std::mt19937& random) : folder_(folder), random_(random) {
    for (int k = 0; k < kFolders; ++k) {
      // One name in two letter cases, and new names, some of which occur in several folders.
      Add(k, random_() % 2 == 0 ? "Intro.mp3" : "intro.mp3");
      for (int n = 0; n < kOthers; ++n) Add(k, NewName());
    }
  }

  std::size_t size() const { return files_.size(); }

  /// Adds, removes, renames and moves some files, and restores some removed files.
  void Change() {
    for (auto n = 3 + random_() % 6; n > 0; --n) {
      switch (random_() % 6) {
        case 0:
          Add(RandomFolder(), NewName());
          break;
        case 1:
          Add(RandomFolder(), random_() % 2 == 0 ? "Intro.mp3" : "intro.mp3");
          break;
        case 2:
          Remove();
          break;
        case 3:
          Move(RandomFolder(), NewName());
          break;
        case 4:
          Move(RandomFolder(), {});
          break;
        default:
          PutBack();
      }
    }
  }

 private:
  static constexpr int kFolders = 60;
  static constexpr int kOthers = 7;

  int RandomFolder() { return static_cast<int>(random_() % kFolders); }
  std::string NewName() {
    // Some names repeat.
    const auto number = random_() % 8 == 0 ? random_() % 20 : ++names_ + 100;
    return (number % 3 == 0 ? "Song " : "song ") + std::to_string(number) + ".mp3";
  }
  std::string PathIn(int folder, const std::string& name) {
    return folder_ / ("f" + std::to_string(folder) + "/" + name);
  }
  void Add(int folder, const std::string& name) {
    const std::string path = PathIn(folder, name);
    if (files_.contains(PathKey(path))) return;
    folder_.File("f" + std::to_string(folder) + "/" + name, Audio(200 + ++last_));
    files_.emplace(PathKey(path), path);
  }
  std::string RandomFile() {
    return std::next(files_.begin(), static_cast<std::ptrdiff_t>(random_() % files_.size()))
        ->second;
  }
  void Remove() {
    const std::string path = RandomFile();
    removed_.emplace_back(path, ReadWholeFile(path).value());
    fs::remove(fs::path(path));
    files_.erase(PathKey(path));
  }
  void Move(int folder, std::string name) {
    const std::string from = RandomFile();
    if (name.empty()) name = std::string(NameOfPath(from));
    const std::string to = PathIn(folder, name);
    if (files_.contains(PathKey(to))) return;
    fs::rename(fs::path(from), fs::path(to));
    files_.erase(PathKey(from));
    files_.emplace(PathKey(to), to);
  }
  void PutBack() {
    if (removed_.empty()) return;
    const auto [path, content] = removed_.back();
    removed_.pop_back();
    if (files_.contains(PathKey(path))) return;
    WriteFileAtomically(path, content);
    files_.emplace(PathKey(path), path);
  }

  const TempFolder& folder_;
  std::mt19937& random_;
  std::size_t last_ = 0;
  unsigned names_ = 0;
  std::map<std::string, std::string> files_;  ///< paths, keyed by the form that the system compares
  std::vector<std::pair<std::string, std::string>> removed_;
};

/// A song as the user knows it: its name and its content, which the file size identifies.
struct KnownSong {
  std::string name;
  std::uint64_t content = 0;
  auto operator<=>(const KnownSong&) const = default;
};

class ChangingCollection : public SystemTest, protected NewSongsWindows {
 protected:
  SearchProgress& ShowSearching() override { return windows->progress; }
  void UnloadSearching() override {}
  void EnableFrame(bool) override {}
  Jukebox* ActiveJukebox() override { return windows->open[0]; }
  std::span<Jukebox* const> OpenJukeboxes() override { return windows->open; }
  MessageAnswer Show(const Message&) override { return MessageAnswer::kOk; }
  void Notice(const std::vector<std::string>&) override {}
  void NoticeScan(const std::vector<std::string>&) override {}

  Jukebox& Box() { return *windows->open[0]; }
  Folder& Mine() { return *Box().Nodes().Find("By Mood"); }

  std::uint64_t ContentOfRow(std::int32_t row) {
    const auto stamp = StampOf(
        std::string(tallow->library.Mp3Info(1, row)).append(tallow->library.Mp3Info(2, row)));
    return stamp ? stamp->size : 0;
  }
  KnownSong SongOf(std::int32_t row) {
    return {std::string(tallow->library.Mp3Info(2, row)), ContentOfRow(row)};
  }

  /// Every entry is the song that was added, or is hidden; every song is in its place; every song
  /// has the rank that was given.
  void ExpectAllIsWell() {
    ExpectRowsAreNumbers(tallow->library);
    const clsMain& library = tallow->library;
    std::map<KnownSong, std::int32_t> present;
    for (std::int32_t row = 1; row <= library.UBoundOfMp3Array(); ++row)
      if (library.IsPresent(row)) present[SongOf(row)] = row;
    const auto& items = Mine().Items();
    ASSERT_EQ(items.size(), mine.size());
    for (std::size_t k = 0; k < mine.size(); ++k) {
      const std::int32_t record = items[k].SubItem();
      const auto found = present.find(mine[k]);
      if (found != present.end()) {
        ASSERT_EQ(record, found->second) << mine[k].name;
      } else {
        ASSERT_TRUE(library.IsHidden(record)) << mine[k].name;
      }
    }
    for (const auto& [song, rank] : ranks)
      if (const auto found = present.find(song); found != present.end()) {
        ASSERT_EQ(library.Mp3Info(kSongRank, found->second), rank) << song.name;
      }
  }

  void AddToMine(std::mt19937& random) {
    std::vector<SongEntry> songs;
    for (int k = 0; k < 12; ++k) {
      const auto row = static_cast<std::int32_t>(
          1 + random() % static_cast<unsigned>(tallow->library.UBoundOfMp3Array()));
      if (!tallow->library.IsPresent(row) || ContentOfRow(row) == 0) continue;
      const KnownSong song = SongOf(row);
      if (std::find(mine.begin(), mine.end(), song) != mine.end()) continue;
      mine.push_back(song);
      songs.emplace_back(row, 2);
      if (k % 2 == 0) {
        ranks[song] = std::to_string(3 + random() % 5);
        tallow->library.Mp3Info(kSongRank, row, ranks[song]);
      }
    }
    JukeboxEdits(Box(), tallow->clipboard).AddSongs(Mine(), songs);
    EXPECT_TRUE(tallow->library.Save());
  }

  void SaveJukebox() {
    const std::string path = application / "Grouping/mine.juk";
    ASSERT_TRUE(Box().Save(path, tallow->library)) << Box().FileProblem();
    tallow->settings.LocOfLastSavedJukeBox(path);
    tallow->SaveSettings();
  }

  std::vector<KnownSong> mine;
  std::map<KnownSong, std::string> ranks;
};

TEST_F(ChangingCollection, EverySongStaysTheSongThatItWas) {
  // Under Wine, each file access is slow.
  const unsigned seeds = kPathsIgnoreCase ? 2 : 30;
  for (unsigned seed = 1; seed <= seeds; ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    mine.clear();
    ranks.clear();
    fs::remove_all(fs::path(application.path()) / "Grouping");
    fs::remove_all(fs::path(music.path()));
    CreateFolders(music.path());
    music.File("z/winamp.exe");
    Collection collection(music, random);
    ASSERT_GT(collection.size(), 400U);
    for (int start = 0; start < 8; ++start) {
      SCOPED_TRACE("start " + std::to_string(start));
      ASSERT_TRUE(Start());
      ExpectAllIsWell();
      if (HasFatalFailure()) return;
      AddToMine(random);
      if (start % 2 == 1) {
        collection.Change();
        BringInNewSongs(
            random() % 2 == 0 ? NewSongsPlace::kKnownFolders : NewSongsPlace::kWholeComputer,
            *tallow, *this, [this](SearchProgress& shown) {
              return FileSearch(*tallow, drives, &shown).SearchDrivesForMp3s(true, {});
            });
        ExpectAllIsWell();
        if (HasFatalFailure()) return;
      }
      std::int64_t changes = 0;
      Box().ShowFolder(Mine(), tallow->library, changes);
      if (start % 3 == 1) Box().ColumnClick(tallow->library);
      if (start % 3 == 1) Box().Undo();
      SaveJukebox();
      ExpectAllIsWell();
      if (HasFatalFailure()) return;
      collection.Change();
    }
  }
}

}  // namespace
}  // namespace tallow
