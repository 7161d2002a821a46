// SPDX-License-Identifier: GPL-3.0-or-later
#include "details/tag_children.h"

#include <atomic>
#include <cstddef>
#include <gtest/gtest.h>
#include <string>
#include <thread>
#include <vector>

#include "details/tag_reader.h"
#include "tests/id3v2_tag.h"
#include "tests/served_details.h"
#include "tests/tagged_file.h"
#include "tests/temp_folder.h"

namespace tallow {
namespace {

class TagChildrenTest : public testing::Test {
 protected:
  /// The tests are their own child, see tests/served_details.h.
  TagChildren children_{{.program = OwnProgram(), .arguments = {std::string(kServeDetailsOption)}}};
  TempFolder folder_;
};

TEST_F(TagChildrenTest, ReadsWhatIsReadHere) {
  const std::string song =
      folder_.File("a.mp3", Audio(300) + Tag({.artist = "Кино", .year = "1988"}));
  const SongTags tags = children_.Read(song);
  EXPECT_EQ(tags, ReadSongTags(song));
  EXPECT_EQ(tags.artist, "Кино");
  EXPECT_FALSE(children_.Read(folder_ / "missing.mp3").found);
}

TEST_F(TagChildrenTest, APlainMp3FileIsReadInThisProcess) {
  // A child would end at this name.
  const std::string song =
      folder_.File(std::string(kEndingName), Id3v2Tag({{"TIT2", "Title"}}) + Audio(300));
  EXPECT_EQ(children_.Read(song).title, "Title");
}

TEST_F(TagChildrenTest, ThreadsReadAtTheSameTimeAndABadFileCostsOnlyItsOwnTags) {
  const std::string good = folder_.File("good.mp3", Audio(300) + Tag({.title = "Title"}));
  const std::string bad =
      folder_.File(std::string(kCrashingName), Audio(300) + Tag({.title = "Title"}));
  std::vector<std::thread> threads;
  for (int k = 0; k < 3; ++k) {
    threads.emplace_back([&] {
      for (int round = 0; round < 3; ++round) {
        EXPECT_EQ(children_.Read(good).title, "Title");
        EXPECT_FALSE(children_.Read(bad).found);
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
}

TEST_F(TagChildrenTest, MoreThreadsThanChildrenReadAllFiles) {
  TagChildren one({.program = OwnProgram(), .arguments = {std::string(kServeDetailsOption)}}, 1);
  const std::string cover(10'000, 'x');
  std::vector<std::string> songs;
  for (int k = 0; k < 24; ++k) {
    const std::string title = "Title " + std::to_string(k);
    songs.push_back(folder_.File(std::to_string(k) + ".mp3",
                                 Id3v2Tag({{"TIT2", title}, {"TXXX", cover}}) + "x" + Audio(9000)));
  }
  // These must not keep the only child.
  songs.push_back(folder_ / "missing.mp3");
  songs.push_back(folder_.File(std::string(kEndingName)));
  std::atomic<std::size_t> next = 0;
  std::vector<std::string> titles(songs.size());
  std::vector<std::thread> threads;
  for (int k = 0; k < 6; ++k) {
    threads.emplace_back([&] {
      for (std::size_t song = next++; song < songs.size(); song = next++)
        titles[song] = one.Read(songs[song]).title;
    });
  }
  for (std::thread& thread : threads) thread.join();
  for (int k = 0; k < 24; ++k)
    EXPECT_EQ(titles[static_cast<std::size_t>(k)], "Title " + std::to_string(k));
  EXPECT_EQ(titles[24], "");
  EXPECT_EQ(titles[25], "");
}

TEST(TagChildren, AProgramThatIsNoChildIsReplacedByThisProcess) {
  const TempFolder folder;
  TagChildren children({.program = folder / "missing", .arguments = {}});
  EXPECT_EQ(children.Read(folder.File("a.mp3", Audio(300) + Tag({.title = "Title"}))).title,
            "Title");
}

}  // namespace
}  // namespace tallow
