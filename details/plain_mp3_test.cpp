// SPDX-License-Identifier: GPL-3.0-or-later
#include "details/plain_mp3.h"

#include <cstddef>
#include <gtest/gtest.h>
#include <optional>
#include <random>
#include <string>
#include <string_view>

#include "details/tag_reader.h"
#include "tests/tagged_file.h"
#include "tests/temp_folder.h"

namespace tallow {
namespace {

using std::string_literals::operator""s;

/// A number in four bytes, the highest first.
std::string Number(std::size_t number, unsigned bits) {
  std::string bytes;
  for (int k = 3; k >= 0; --k)
    bytes += static_cast<char>(number >> (static_cast<unsigned>(k) * bits) & ((1U << bits) - 1));
  return bytes;
}

/// The parts of a file that is plain, to be changed by a test.
struct File {
  char version = 4;
  char revision = 0;
  char flags = 0;
  std::string frame_flags = "\0\0"s;
  std::string id = "TPE1";
  std::string text =
      "\x03"
      "Artist"s;
  std::string padding = std::string(100, '\0');
  std::string behind = "\xFF\xFB\x90\x00"s + std::string(400, '\0');

  std::string Frame(const std::string& frame_id, const std::string& content) const {
    return frame_id + Number(content.size(), version == 4 ? 7 : 8) + frame_flags + content;
  }
  std::string Bytes() const {
    const std::string frames =
        Frame(id, text) + Frame("APIC", std::string(5000, 'x')) + Frame("TIT2", "\0Title"s);
    return "ID3"s + version + revision + flags + Number(frames.size() + padding.size(), 7) +
           frames + padding + behind;
  }
};

class PlainMp3 : public testing::Test {
 protected:
  std::optional<SongTags> Read(const std::string& bytes) {
    path_ = folder_.File("a.mp3", bytes);
    return ReadPlainTags(path_);
  }

  TempFolder folder_;
  std::string path_;
};

TEST_F(PlainMp3, HasAWellFormedTagAtItsStart) {
  for (const char version : {'\3', '\4'}) {
    File file{.version = version};
    for (const std::string& padding : {""s, "\0"s, std::string(2000, '\0')}) {
      file.padding = padding;
      for (const std::string& tail : {std::string(), Tag({.artist = "Older", .year = "1988"})}) {
        const auto tags = Read(file.Bytes() + tail);
        ASSERT_TRUE(tags);
        EXPECT_EQ(tags->artist, "Artist");
        EXPECT_EQ(tags->title, "Title");
        EXPECT_EQ(*tags, ReadSongTags(path_));
      }
    }
  }
}

TEST_F(PlainMp3, OtherFilesAreNotPlain) {
  EXPECT_FALSE(Read(File{.version = 2}.Bytes()));
  EXPECT_FALSE(Read(File{.version = 5}.Bytes()));
  EXPECT_FALSE(Read(File{.revision = 1}.Bytes()));
  for (const int bit : {0x80, 0x40, 0x20, 0x10})
    EXPECT_FALSE(Read(File{.flags = static_cast<char>(bit)}.Bytes()));
  EXPECT_FALSE(Read(File{.frame_flags = "\0\x08"s}.Bytes()));  // compressed
  EXPECT_FALSE(Read(File{.frame_flags = "\x40\0"s}.Bytes()));
  EXPECT_FALSE(Read(File{.id = "tpe1"}.Bytes()));
  EXPECT_FALSE(Read(File{.text = ""}.Bytes()));
  EXPECT_FALSE(Read(File{.behind = "ID3\4\0\0"s}.Bytes()));
  EXPECT_FALSE(Read(File{.behind = "x" + File().behind}.Bytes()));
  EXPECT_FALSE(Read(File{.behind = ""}.Bytes()));
  EXPECT_FALSE(Read(File{.behind = File().behind + "APETAGEX" + std::string(24, 'x')}.Bytes()));
  EXPECT_FALSE(Read(
      File{.behind = File().behind + "APETAGEX" + std::string(24, 'x') + Tag({.title = "Title"})}
          .Bytes()));
  EXPECT_FALSE(Read(Audio(400) + Tag({.title = "Title"})));
  EXPECT_FALSE(Read(""));
  EXPECT_FALSE(ReadPlainTags(folder_ / "missing.mp3"));
  EXPECT_FALSE(ReadPlainTags(folder_.File("a.flac", "fLaC" + File().Bytes())));
}

TEST_F(PlainMp3, AFrameThatExceedsItsTagIsNotPlain) {
  const File file;
  std::string bytes = file.Bytes();
  const std::size_t length = bytes.find("APIC") + 4;
  for (const std::size_t wrong : {6000U, 0U, 1U << 20U}) {
    bytes.replace(length, 4, Number(wrong, 7));
    EXPECT_FALSE(Read(bytes)) << wrong;
  }
  bytes.replace(length, 4, "\x80\0\0\1"s);
  EXPECT_FALSE(Read(bytes));
}

TEST_F(PlainMp3, ALengthThatTagLibMayTakeForOneOfId3v23IsNotPlain) {
  // 0x0100 are 128 bytes of ID3v2.4, and 256 of ID3v2.3, where an ID is too.
  File file{.text = std::string(128, 'x'), .padding = ""};
  std::string bytes = file.Bytes();
  ASSERT_TRUE(Read(bytes));
  bytes.replace(10 + 10 + 256, 4, "TALB");
  EXPECT_FALSE(Read(bytes));
}

TEST_F(PlainMp3, TheSizeAndTheNumberOfFramesAreLimited) {
  EXPECT_TRUE(Read(File{.text = "\3" + std::string(900'000, 'x')}.Bytes()));
  EXPECT_FALSE(Read(File{.text = "\3" + std::string(1U << 20U, 'x')}.Bytes()));
  File file;
  std::string frames;
  for (int k = 0; k < kMaxPlainFrames - 3; ++k)
    frames += file.Frame("TXXX",
                         "\3"
                         "a\0b"s);
  const auto with = [&](const std::string& more) {
    return "ID3\4\0\0"s + Number(frames.size() + more.size() + 11, 7) + frames + more +
           std::string(11, '\0') + file.behind;
  };
  std::string three;
  for (int k = 0; k < 3; ++k) three += file.Frame("TPE1", file.text);
  EXPECT_TRUE(Read(with(three)));
  EXPECT_FALSE(Read(with(three + three)));
}

TEST_F(PlainMp3, DamagedFilesHaveTheSameTagsAsInAChild) {
  std::mt19937 random(3);
  int plain = 0;
  for (int k = 0; k < 400; ++k) {
    std::string bytes = File{.version = k % 2 == 0 ? '\3' : '\4'}.Bytes();
    for (auto change = random() % 3; change > 0; --change)
      bytes[random() % 5300] = static_cast<char>(random() % 4 == 0 ? 0 : random());
    if (const auto tags = Read(bytes)) {
      ++plain;
      ASSERT_EQ(*tags, ReadSongTags(path_));
    }
  }
  EXPECT_GT(plain, 50);
  EXPECT_LT(plain, 400);
}

}  // namespace
}  // namespace tallow
