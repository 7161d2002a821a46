// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/library_details.h"

#include <gtest/gtest.h>
#include <memory>
#include <string>

#include "details/details_store.h"
#include "tests/id3v2_tag.h"
#include "tests/tagged_file.h"
#include "tests/temp_folder.h"
#include "util/atomic_file.h"
#include "util/file_system.h"

namespace tallow {
namespace {

class LibraryDetailsTest : public testing::Test {
 protected:
  /// Stores a title for a file as it is now.
  void Store(const std::string& path, const std::string& title) {
    SongDetails details;
    details.tags = {.found = true, .title = title};
    details.stamp = StampOf(path).value();
    DetailsStore store;
    store.Open(database_);
    store.Put(path, details);
  }

  TempFolder folder_;
  std::string database_ = folder_ / "SongDetails.db";
};

TEST_F(LibraryDetailsTest, ReadsTheTagsOfAFile) {
  const std::string song =
      folder_.File("a.mp3", Id3v2Tag({{"TIT2", "Пачка сигарет"}}) + Audio(300));
  EXPECT_EQ(LibraryDetails(database_).TagReader()(song).title, "Пачка сигарет");
}

TEST_F(LibraryDetailsTest, UsesStoredTagsWhileTheFileIsTheSame) {
  const std::string song = folder_.File("a.mp3", Audio(300) + Tag({.title = "In the file"}));
  Store(song, "Stored");
  LibraryDetails details(database_);
  const ReadTags read = details.TagReader();
  EXPECT_EQ(read(song).title, "Stored");
  WriteFileAtomically(song, Audio(301) + Tag({.title = "Written now"}));
  EXPECT_EQ(read(song).title, "Written now");
}

TEST_F(LibraryDetailsTest, AMissingFileHasNoTags) {
  Store(folder_.File("a.mp3"), "Stored");
  EXPECT_FALSE(LibraryDetails(database_).TagReader()(folder_ / "b.mp3").found);
}

TEST_F(LibraryDetailsTest, AReaderOutlivesTheDetails) {
  const std::string song = folder_.File("a.mp3");
  Store(song, "Stored");
  const ReadTags read = LibraryDetails(database_).TagReader();
  EXPECT_EQ(read(song).title, "Stored");
}

TEST_F(LibraryDetailsTest, OpensNothingBeforeTheFirstFile) {
  const ReadTags read = LibraryDetails(database_).TagReader();
  EXPECT_FALSE(FileExists(database_));
  read(folder_ / "a.mp3");
  EXPECT_TRUE(FileExists(database_));
}

}  // namespace
}  // namespace tallow
