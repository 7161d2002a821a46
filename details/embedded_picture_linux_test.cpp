// SPDX-License-Identifier: GPL-3.0-or-later
// Reads the pictures of files that encoders have made, with the picture added by TagLib.
#include <filesystem>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <taglib/aifffile.h>
#include <taglib/apetag.h>
#include <taglib/asffile.h>
#include <taglib/attachedpictureframe.h>
#include <taglib/flacfile.h>
#include <taglib/id3v2tag.h>
#include <taglib/mp4file.h>
#include <taglib/mpegfile.h>
#include <taglib/oggflacfile.h>
#include <taglib/opusfile.h>
#include <taglib/speexfile.h>
#include <taglib/vorbisfile.h>
#include <taglib/wavfile.h>
#include <taglib/wavpackfile.h>

#include "details/child_reader.h"
#include "details/embedded_picture.h"
#include "tests/encoded_songs_linux.h"
#include "tests/served_details.h"
#include "tests/temp_folder.h"

namespace tallow {
namespace {

class PicturesOfFormats : public testing::Test {
 protected:
  static void SetUpTestSuite() { made_ = std::make_unique<EncodedSongs>(); }
  static void TearDownTestSuite() { made_.reset(); }

  std::string Copy(const std::string& extension) {
    const std::string path = folder_ / ("song." + extension);
    std::filesystem::copy_file(made_->Path(extension), path);
    return path;
  }
  void Expect(const std::string& path) {
    EXPECT_EQ(ReadEmbeddedPicture(path), kPicture) << path;
    ChildReader child({.program = OwnProgram(), .arguments = {std::string(kServeDetailsOption)}});
    EXPECT_EQ(child.ReadPicture(path, [] { return false; }), kPicture) << path;
  }

  static TagLib::ByteVector Bytes(const std::string& text) {
    return {text.data(), static_cast<unsigned>(text.size())};
  }
  static TagLib::ID3v2::Frame* Frame() {
    auto* const frame = new TagLib::ID3v2::AttachedPictureFrame;
    frame->setType(TagLib::ID3v2::AttachedPictureFrame::FrontCover);
    frame->setMimeType("image/png");
    frame->setTextEncoding(TagLib::String::UTF16);
    frame->setDescription(TagLib::String("Обложка", TagLib::String::UTF8));
    frame->setPicture(Bytes(kPicture));
    return frame;
  }
  static TagLib::FLAC::Picture* Block() {
    auto* const block = new TagLib::FLAC::Picture;
    block->setType(TagLib::FLAC::Picture::FrontCover);
    block->setMimeType("image/png");
    block->setData(Bytes(kPicture));
    return block;
  }
  template <typename File>
  void ExpectOgg(const std::string& extension) {
    const std::string path = Copy(extension);
    {
      File file(path.c_str());
      file.tag()->addPicture(Block());
      ASSERT_TRUE(file.save());
    }
    Expect(path);
  }

  static inline const std::string kPicture = "\x89PNG" + std::string(70'000, '\xEE');
  TempFolder folder_;

 private:
  static inline std::unique_ptr<EncodedSongs> made_;
};

TEST_F(PicturesOfFormats, Mp3) {
  const std::string path = Copy("mp3");
  for (const auto version : {TagLib::ID3v2::v4, TagLib::ID3v2::v3}) {
    {
      TagLib::MPEG::File file(path.c_str());
      file.ID3v2Tag(true)->removeFrames("APIC");
      file.ID3v2Tag(true)->addFrame(Frame());
      ASSERT_TRUE(file.save(TagLib::MPEG::File::ID3v2, TagLib::File::StripOthers, version));
    }
    Expect(path);
    EXPECT_EQ(ReadPlainPicture(path), kPicture);
  }
}

TEST_F(PicturesOfFormats, WavAndAiff) {
  const std::string wav = Copy("wav");
  {
    TagLib::RIFF::WAV::File file(wav.c_str());
    file.ID3v2Tag()->addFrame(Frame());
    ASSERT_TRUE(file.save());
  }
  Expect(wav);
  const std::string aiff = Copy("aiff");
  {
    TagLib::RIFF::AIFF::File file(aiff.c_str());
    file.tag()->addFrame(Frame());
    ASSERT_TRUE(file.save());
  }
  Expect(aiff);
}

TEST_F(PicturesOfFormats, Flac) {
  const std::string path = Copy("flac");
  {
    TagLib::FLAC::File file(path.c_str());
    file.addPicture(Block());
    ASSERT_TRUE(file.save());
  }
  Expect(path);
}

TEST_F(PicturesOfFormats, Ogg) {
  ExpectOgg<TagLib::Ogg::Vorbis::File>("ogg");
  ExpectOgg<TagLib::Ogg::Opus::File>("opus");
  ExpectOgg<TagLib::Ogg::Speex::File>("spx");
  ExpectOgg<TagLib::Ogg::FLAC::File>("oga");
}

TEST_F(PicturesOfFormats, Mp4) {
  const std::string path = Copy("m4a");
  {
    TagLib::MP4::File file(path.c_str());
    TagLib::MP4::CoverArtList covers;
    covers.append(TagLib::MP4::CoverArt(TagLib::MP4::CoverArt::PNG, Bytes(kPicture)));
    file.tag()->setItem("covr", covers);
    ASSERT_TRUE(file.save());
  }
  Expect(path);
}

TEST_F(PicturesOfFormats, Wma) {
  const std::string path = Copy("wma");
  {
    TagLib::ASF::File file(path.c_str());
    TagLib::ASF::Picture picture;
    picture.setType(TagLib::ASF::Picture::FrontCover);
    picture.setMimeType("image/png");
    picture.setPicture(Bytes(kPicture));
    file.tag()->setAttribute("WM/Picture", TagLib::ASF::Attribute(picture));
    ASSERT_TRUE(file.save());
  }
  Expect(path);
}

TEST_F(PicturesOfFormats, WavPack) {
  const std::string path = Copy("wv");
  {
    TagLib::WavPack::File file(path.c_str());
    TagLib::APE::Tag* const tag = file.APETag(true);
    tag->setData("Cover Art (Front)", Bytes("cover.png") + '\0' + Bytes(kPicture));
    ASSERT_TRUE(file.save());
  }
  Expect(path);
}

}  // namespace
}  // namespace tallow
