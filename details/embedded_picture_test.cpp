// SPDX-License-Identifier: GPL-3.0-or-later
#include "details/embedded_picture.h"

#include <gtest/gtest.h>
#include <optional>
#include <string>

#include "tests/picture_frame.h"
#include "tests/tagged_file.h"
#include "tests/temp_folder.h"
#include "util/path_text.h"

namespace tallow {
namespace {

using std::string_literals::operator""s;

class EmbeddedPicture : public testing::Test {
 protected:
  std::string Read(const std::string& bytes, const std::string& name = "a.mp3") {
    path_ = folder_.File(name, bytes);
    return ReadEmbeddedPicture(path_);
  }
  /// Reads an MP3 file with a tag of these frames.
  std::string ReadFrames(const std::string& frames, char version = 4) {
    return Read(TagOfFrames(frames, version) + Audio(800));
  }
  std::optional<std::string> Plain() const { return ReadPlainPicture(path_); }

  TempFolder folder_;
  std::string path_;
};

TEST_F(EmbeddedPicture, IsTheFrontCoverOfSeveral) {
  EXPECT_EQ(ReadFrames(PictureFrame("back", 4) + PictureFrame("front") + PictureFrame("other", 0)),
            "front");
  EXPECT_EQ(Plain(), "front");
}

TEST_F(EmbeddedPicture, IsTheFirstThatIsNoIcon) {
  EXPECT_EQ(ReadFrames(PictureFrame("icon", 1) + PictureFrame("back", 4) + PictureFrame("x", 0)),
            "back");
  EXPECT_EQ(ReadFrames(PictureFrame("icon", 2)), "icon");
}

TEST_F(EmbeddedPicture, IsNoLinkToTheNetwork) {
  EXPECT_EQ(ReadFrames(PictureFrame("http://example.org/a.png", 3, "-->")), "");
}

TEST_F(EmbeddedPicture, MayHoldAnyBytes) {
  const std::string picture = "\xFF\xD8\xFF\xE0\0\0"s + std::string(300'000, '\xFF') + "\0"s;
  EXPECT_EQ(ReadFrames(PictureFrame(picture)), picture);
  EXPECT_EQ(Plain(), picture);
}

TEST_F(EmbeddedPicture, FollowsADescriptionInUtf16) {
  // The first NUL of two bytes is not at an even position of the description.
  const std::string body = "\1image/jpeg\0\3"s + "\xFF\xFE"s + "a\0\0\1\0\0picture"s;
  EXPECT_EQ(ReadFrames("APIC" + FourBytes(body.size(), 7) + "\0\0"s + body), "picture");
}

TEST_F(EmbeddedPicture, IsReadFromTheOldestTagsToo) {
  const std::string body = "\0PNG\3note\0picture"s;
  const std::string frame = "PIC" + FourBytes(body.size(), 8).substr(1) + body;
  EXPECT_EQ(ReadFrames(frame, 2), "picture");
  EXPECT_EQ(Plain(), std::nullopt);
}

TEST_F(EmbeddedPicture, OfADamagedFrameIsNone) {
  const std::string bodies[] = {"\0"s,
                                "\0image/png"s,
                                "\0image/png\0"s,
                                "\0image/png\0\3"s,
                                "\0image/png\0\3note"s,
                                "\0image/png\0\3note\0"s};
  for (const std::string& body : bodies)
    EXPECT_EQ(ReadFrames("APIC" + FourBytes(body.size(), 7) + "\0\0"s + body), "") << body.size();
}

TEST_F(EmbeddedPicture, OfAFileWithoutTagsIsNone) {
  EXPECT_EQ(Read(Audio(800)), "");
  EXPECT_EQ(Plain(), std::nullopt);
  EXPECT_EQ(Read(""), "");
  EXPECT_EQ(ReadEmbeddedPicture(folder_ / "missing.mp3"), "");
}

TEST_F(EmbeddedPicture, OfAPlainFileWithoutOneIsKnownToBeNone) {
  const std::string text = "\3Title"s;
  EXPECT_EQ(ReadFrames("TIT2" + FourBytes(text.size(), 7) + "\0\0"s + text), "");
  EXPECT_EQ(Plain(), "");
}

TEST_F(EmbeddedPicture, IsNotReadBeyondTheLimits) {
  const std::string largest(kMaxPictureBytes, 'x');
  EXPECT_EQ(ReadFrames(PictureFrame(largest)), largest);
  EXPECT_EQ(ReadFrames(PictureFrame(largest + "x")), "");
  ReadFrames(PictureFrame(std::string(100'000, 'x')));
  EXPECT_EQ(ReadEmbeddedPicture(path_, {.max_bytes = 50'000}), "");
}

TEST_F(EmbeddedPicture, InACompressedFrameIsNotInflated) {
  std::string frame = PictureFrame("picture");
  frame[9] = '\x08';
  // Without zlib, TagLib takes the bytes as they are.
  EXPECT_EQ(ReadFrames(frame), kSeparator == '\\' ? "picture" : "");
}

TEST_F(EmbeddedPicture, OfAnApeTagIsUsedWithoutId3v2) {
  const std::string value = "cover.png\0picture"s;
  const auto number = [](std::size_t value_of) {
    const std::string bytes = FourBytes(value_of, 8);
    return std::string(bytes.rbegin(), bytes.rend());
  };
  const std::string item = number(value.size()) + number(2) + "Cover Art (Front)\0"s + value;
  const std::string footer = "APETAGEX" + number(2000) + number(item.size() + 32) + number(1) +
                             number(0) + std::string(8, '\0');
  EXPECT_EQ(Read(Audio(800) + item + footer), "picture");
  EXPECT_EQ(Read(TagOfFrames(PictureFrame("of ID3v2")) + Audio(800) + item + footer), "of ID3v2");
}

}  // namespace
}  // namespace tallow
