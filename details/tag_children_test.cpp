// SPDX-License-Identifier: GPL-3.0-or-later
#include "details/tag_children.h"

#include <gtest/gtest.h>
#include <string>
#include <thread>
#include <vector>

#include "details/tag_reader.h"
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

TEST(TagChildren, AProgramThatIsNoChildIsReplacedByThisProcess) {
  const TempFolder folder;
  TagChildren children({.program = folder / "missing", .arguments = {}});
  EXPECT_EQ(children.Read(folder.File("a.mp3", Audio(300) + Tag({.title = "Title"}))).title,
            "Title");
}

}  // namespace
}  // namespace tallow
