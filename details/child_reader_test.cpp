// SPDX-License-Identifier: GPL-3.0-or-later
#include "details/child_reader.h"

#include <chrono>
#include <gtest/gtest.h>
#include <limits>
#include <string>
#include <string_view>

#include "details/details_message.h"
#include "details/tag_reader.h"
#include "tests/served_details.h"
#include "tests/tagged_file.h"
#include "tests/temp_folder.h"

namespace tallow {
namespace {

bool Never() { return false; }

class Children : public testing::Test {
 protected:
  /// The tests are their own child, see tests/served_details.h.
  ChildSettings settings_{.program = OwnProgram(), .arguments = {std::string(kServeDetailsOption)}};
  TempFolder folder_;
};

TEST_F(Children, ReadWhatIsReadHere) {
  ChildReader reader(settings_);
  for (const char* const title : {"Кино", "上を向いて", "Title"}) {
    const std::string path = folder_.File("a.mp3", Audio(400) + Tag({.title = title}));
    const SongDetails details = reader.Read(path, Never);
    EXPECT_EQ(details, ReadSongDetails(path));
    EXPECT_EQ(details.tags.title, title);
  }
}

TEST_F(Children, AFileThatEndsTheChildHasNoTagsAndTheNextIsRead) {
  ChildReader reader(settings_);
  const std::string good = folder_.File("good.mp3", Audio(400) + Tag({.title = "Title"}));
  for (const std::string_view name : {kEndingName, kCrashingName, kEndingName, kBabblingName}) {
    const std::string bad = folder_.File(std::string(name), Audio(400) + Tag({.title = "Title"}));
    EXPECT_EQ(reader.Read(good, Never).tags.title, "Title");
    const SongDetails details = reader.Read(bad, Never);
    EXPECT_TRUE(details.failed);
    EXPECT_FALSE(details.tags.found);
    EXPECT_EQ(details.stamp, StampOf(bad));
  }
  EXPECT_EQ(reader.Read(good, Never).tags.title, "Title");
}

TEST_F(Children, AFileThatHangsTheChildHasNoTagsAndTheNextIsRead) {
  settings_.max_wait = std::chrono::milliseconds(300);
  ChildReader reader(settings_);
  EXPECT_TRUE(reader.Read(folder_.File(kHangingName), Never).failed);
  settings_.max_wait = std::chrono::seconds(20);
  ChildReader patient(settings_);
  const std::string good = folder_.File("good.mp3", Audio(400) + Tag({.title = "Title"}));
  EXPECT_EQ(patient.Read(good, Never).tags.title, "Title");
}

TEST_F(Children, AFileWhoseDiskDoesNotAnswerIsUnreadAndNotKnownToHaveNoTags) {
  settings_.max_wait = std::chrono::milliseconds(300);
  ChildReader reader(settings_);
  const std::string path = folder_.File(std::string(kWaitingName), Audio(400));
  const SongDetails details = reader.Read(path, Never);
  EXPECT_TRUE(details.failed);
  EXPECT_TRUE(details.tags.unread);
  EXPECT_EQ(details.stamp, FileStamp());
  EXPECT_EQ(reader.ReadTags(path), SongTags{.unread = true});
}

TEST_F(Children, AFileThatEndsTheChildIsNotUnread) {
  ChildReader reader(settings_);
  EXPECT_EQ(reader.ReadTags(folder_.File(std::string(kEndingName))), SongTags());
}

TEST_F(Children, AMissingFileIsUnread) {
  ChildReader reader(settings_);
  EXPECT_EQ(reader.ReadTags(folder_ / "missing.mp3"), SongTags{.unread = true});
  EXPECT_EQ(ReadSongTags(folder_ / "missing.mp3"), SongTags{.unread = true});
}

TEST_F(Children, AStopEndsTheWait) {
  ChildReader reader(settings_);
  const std::string good = folder_.File("good.mp3", Audio(400) + Tag({.title = "Title"}));
  ASSERT_EQ(reader.Read(good, Never).tags.title, "Title");
  int asked = 0;
  EXPECT_TRUE(reader.Read(folder_.File(kHangingName), [&] { return ++asked > 2; }).failed);
}

TEST_F(Children, AProgramThatIsNoChildIsReplacedByThisProcess) {
  const std::string path = folder_.File("a.mp3", Audio(400) + Tag({.title = "Title"}));
  for (const std::string& argument : {std::string("--gtest_list_tests"), std::string("--help")}) {
    ChildReader reader({.program = OwnProgram(), .arguments = {argument}});
    EXPECT_EQ(reader.Read(path, Never).tags.title, "Title");
  }
  ChildReader missing({.program = folder_ / "missing", .arguments = {}});
  EXPECT_EQ(missing.Read(path, Never).tags.title, "Title");
}

TEST(DetailsMessage, DecodesWhatWasEncoded) {
  SongDetails details;
  details.tags = {
      .found = true, .unread = true, .title = "a\0b", .artist = "Кино", .disc = 2, .track = -1};
  details.comment = std::string(4000, 'x');
  details.length_ms = std::numeric_limits<std::int32_t>::max();
  details.format = "MP3";
  details.has_id3v1 = true;
  details.stamp = {std::numeric_limits<std::uint64_t>::max(), -5};
  details.failed = true;
  const std::string bytes = EncodeDetails(details);
  EXPECT_EQ(DecodeDetails(bytes), details);
  for (std::size_t length = 0; length < bytes.size(); ++length)
    ASSERT_EQ(DecodeDetails(bytes.substr(0, length)), std::nullopt);
  EXPECT_EQ(DecodeDetails(bytes + "x"), std::nullopt);
  EXPECT_EQ(MessageOf("ab"), std::string("\x02\0\0\0ab", 6));
  EXPECT_EQ(MessageLength(MessageOf(std::string(70'000, 'x'))), 70'000U);
}

}  // namespace
}  // namespace tallow
