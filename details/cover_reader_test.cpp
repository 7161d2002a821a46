// SPDX-License-Identifier: GPL-3.0-or-later
#include "details/cover_reader.h"

#include <gtest/gtest.h>
#include <optional>
#include <string>
#include <string_view>

#include "tests/picture_frame.h"
#include "tests/served_details.h"
#include "tests/tagged_file.h"
#include "tests/temp_folder.h"

namespace tallow {
namespace {

bool Never() { return false; }

class Covers : public testing::Test {
 protected:
  std::string Read(const std::string& path) const {
    const std::string here = ReadCover(path, std::nullopt, Never);
    EXPECT_EQ(ReadCover(path, children_, Never), here) << path;
    return here;
  }
  std::string Song(const std::string& picture) {
    return folder_.File("song.mp3", TagOfFrames(PictureFrame(picture)) + Audio(800));
  }
  std::string Untagged(std::string_view name = "song.mp3") {
    return folder_.File(std::string(name), Audio(800));
  }

  ChildSettings children_{.program = OwnProgram(), .arguments = {std::string(kServeDetailsOption)}};
  TempFolder folder_;
};

TEST_F(Covers, OfTagsAreUsedBeforeThoseOfTheFolder) {
  folder_.File("cover.jpg", "of the folder");
  EXPECT_EQ(Read(Song("of the song")), "of the song");
  EXPECT_EQ(Read(Untagged()), "of the folder");
}

TEST_F(Covers, LargerThanAPlainTagAreReadInTheChild) {
  const std::string picture(3'000'000, 'x');
  EXPECT_EQ(Read(Song(picture)), picture);
}

TEST_F(Covers, OfTheFolderHaveAnyLetterCaseAndAnOrder) {
  const std::string song = Untagged();
  EXPECT_EQ(Read(song), "");
  for (const char* const name :
       {"FOLDER.PNG", "Folder.jpeg", "folder.JPG", "cover.PNG", "COVER.JPEG", "Cover.Jpg"}) {
    folder_.File(name, name);
    EXPECT_EQ(Read(song), name);
  }
}

TEST_F(Covers, OfOtherNamesAreNotUsed) {
  for (const char* const name : {"cover.gif", "mycover.jpg", "cover.jpg.bak", "back.jpg"})
    folder_.File(name, name);
  EXPECT_EQ(Read(Untagged()), "");
}

TEST_F(Covers, OfTheFolderAreAtMostAsLargeAsThoseOfTags) {
  folder_.File("cover.jpg", std::string((std::size_t{16} << 20U) + 1, 'x'));
  EXPECT_EQ(Read(Untagged()), "");
}

TEST_F(Covers, OfAFileThatEndsTheChildAreThoseOfTheFolder) {
  folder_.File("cover.jpg", "of the folder");
  for (const std::string_view name : {kEndingName, kCrashingName})
    EXPECT_EQ(ReadCover(Untagged(name), children_, Never), "of the folder");
  children_.max_wait = std::chrono::milliseconds(300);
  EXPECT_EQ(ReadCover(Untagged(kHangingName), children_, Never), "of the folder");
}

TEST_F(Covers, AreNotReadOnceStopped) {
  folder_.File("cover.jpg", "of the folder");
  EXPECT_EQ(ReadCover(Untagged(kWaitingName), children_, [] { return true; }), "");
}

TEST_F(Covers, OfAMissingSongAreThoseOfTheFolder) {
  EXPECT_EQ(Read(folder_ / "missing.mp3"), "");
  EXPECT_EQ(Read(folder_ / "no/missing.mp3"), "");
}

}  // namespace
}  // namespace tallow
