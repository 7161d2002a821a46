// SPDX-License-Identifier: GPL-3.0-or-later
// Reads the tags of files that encoders have made and other programs have tagged.
#include <array>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <memory>
#include <sstream>
#include <string>

#include "details/tag_reader.h"
#include "tests/encoded_songs_linux.h"
#include "tests/tagged_file.h"
#include "tests/temp_folder.h"

namespace tallow {
namespace {

const std::array kScripts{
    SongTags{.found = true,
             .title = "Café Señorita",
             .artist = "Björk Ólafs",
             .album_artist = "Étienne Duval",
             .album = "Où est l'été",
             .date = "1999",
             .genre = "Rock",
             .disc = 2,
             .track = 3},
    SongTags{.found = true,
             .title = "Спокойная ночь",
             .artist = "Кино",
             .album_artist = "Виктор Цой",
             .album = "Группа крови",
             .date = "1988",
             .genre = "Русский рок",
             .disc = 1,
             .track = 4},
    SongTags{.found = true,
             .title = "上を向いて歩こう",
             .artist = "坂本 九",
             .album_artist = "いずみたく",
             .album = "メモリアル・ベスト",
             .date = "1961",
             .genre = "歌謡曲",
             .disc = 1,
             .track = 12},
};

/// Encodes a short sound once, in all formats; each test tags copies.
class TagFormats : public testing::Test {
 protected:
  static void SetUpTestSuite() { made_ = std::make_unique<EncodedSongs>(); }
  static void TearDownTestSuite() { made_.reset(); }

  static std::string Base(const std::string& extension) { return made_->Path(extension); }

  /// Copies the sound of a format. \returns the path of the copy
  std::string Copy(const std::string& extension, const std::string& as = "") {
    const std::string path = folder_ / (as.empty() ? "song." + extension : as);
    std::filesystem::copy_file(Base(extension), path,
                               std::filesystem::copy_options::overwrite_existing);
    return path;
  }

  /// Tags a copy with ffmpeg, which copies the sound.
  std::string WithFfmpeg(const std::string& extension, const SongTags& tags,
                         const std::string& options = "") {
    const std::string path = folder_ / ("song." + extension);
    const auto field = [](const std::string& key, const std::string& value) {
      return " -metadata " + key + "=\"" + value + "\"";
    };
    Shell("ffmpeg -y -i " + Base(extension) + " -c copy " + options + field("title", tags.title) +
          field("artist", tags.artist) + field("album_artist", tags.album_artist) +
          field("album", tags.album) + field("date", tags.date) + field("genre", tags.genre) +
          field("track", std::to_string(tags.track) + "/12") +
          field("disc", std::to_string(tags.disc) + "/2") + " " + path);
    return path;
  }

  /// Tags a copy with kid3-cli.
  std::string WithKid3(const std::string& extension, const SongTags& tags,
                       const std::string& command = "") {
    std::string path = Copy(extension);
    const auto field = [](const std::string& key, const std::string& value) {
      return " -c \"set '" + key + "' \\\"" + value + "\\\" 2\"";
    };
    Shell("QT_QPA_PLATFORM=offscreen kid3-cli" + field("title", tags.title) +
          field("artist", tags.artist) + field("albumartist", tags.album_artist) +
          field("album", tags.album) + field("date", tags.date) + field("genre", tags.genre) +
          field("track number", std::to_string(tags.track)) +
          field("disc number", std::to_string(tags.disc)) +
          (command.empty() ? "" : " -c " + command) + " " + path);
    return path;
  }

  TempFolder folder_;

 private:
  static inline std::unique_ptr<EncodedSongs> made_;
};

void ExpectTags(const std::string& path, const SongTags& tags) {
  const SongTags read = ReadSongTags(path);
  EXPECT_TRUE(read.found);
  EXPECT_EQ(read.title, tags.title);
  EXPECT_EQ(read.artist, tags.artist);
  EXPECT_EQ(read.album_artist, tags.album_artist);
  EXPECT_EQ(read.album, tags.album);
  EXPECT_EQ(read.date, tags.date);
  EXPECT_EQ(read.genre, tags.genre);
  EXPECT_EQ(read.disc, tags.disc);
  EXPECT_EQ(read.track, tags.track);
  const SongDetails details = ReadSongDetails(path);
  EXPECT_EQ(details.tags, read);
  EXPECT_FALSE(details.failed);
}

std::string Bytes(const std::string& path) {
  std::ostringstream bytes;
  bytes << std::ifstream(path, std::ios::binary).rdbuf();
  return bytes.str();
}

void Append(const std::string& path, const std::string& bytes) {
  std::ofstream(path, std::ios::binary | std::ios::app) << bytes;
}

TEST_F(TagFormats, Id3v23InUtf16) {
  for (const SongTags& tags : kScripts) {
    const std::string path = WithFfmpeg("mp3", tags, "-id3v2_version 3");
    ASSERT_EQ(Bytes(path).substr(0, 4), std::string("ID3\x03"));
    ExpectTags(path, tags);
  }
}

TEST_F(TagFormats, Id3v24InUtf8) {
  for (const SongTags& tags : kScripts) {
    const std::string path = WithFfmpeg("mp3", tags, "-id3v2_version 4");
    ASSERT_EQ(Bytes(path).substr(0, 4), std::string("ID3\x04"));
    ExpectTags(path, tags);
  }
}

TEST_F(TagFormats, Mp3OfKid3) {
  for (const SongTags& tags : kScripts) {
    ExpectTags(WithKid3("mp3", tags, "to24"), tags);
    ExpectTags(WithKid3("mp3", tags, "to23"), tags);
  }
}

TEST_F(TagFormats, Mp3OfId3v2InLatin1) {
  const std::string path = Copy("mp3");
  Shell("id3v2 -2 -t Title -a 'The Artist' -A Album -y 1999 -g 17 -T 3/12 " + path);
  ExpectTags(path, {.title = "Title",
                    .artist = "The Artist",
                    .album = "Album",
                    .date = "1999",
                    .genre = "Rock",
                    .track = 3});
}

TEST_F(TagFormats, Mp3OfLameWithBothTags) {
  const std::string path = folder_ / "song.mp3";
  for (const SongTags& tags : kScripts) {
    Shell("lame --quiet -b 64 --add-id3v2 --id3v2-utf16 --tt '" + tags.title + "' --ta '" +
          tags.artist + "' --ty 1999 --tn 3/12 " + Base("wav") + " " + path);
    const SongTags read = ReadSongTags(path);
    EXPECT_EQ(read.title, tags.title);
    EXPECT_EQ(read.artist, tags.artist);
    EXPECT_EQ(read.date, "1999");
    EXPECT_EQ(read.track, 3);
  }
}

TEST_F(TagFormats, Id3v2WinsOverAnId3v1ThatDisagrees) {
  const std::string path = WithFfmpeg("mp3", kScripts[2], "-id3v2_version 4");
  Append(path, Tag({.title = "Ue o muite", .artist = "Kyu", .album = "Best", .year = "1999"}));
  ExpectTags(path, kScripts[2]);
}

TEST_F(TagFormats, Id3v1FillsWhatId3v2DoesNotHave) {
  const std::string path = folder_ / "song.mp3";
  Shell("ffmpeg -y -i " + Base("mp3") + " -c copy -metadata title=Newer " + path);
  Append(path, Tag({.title = "Older", .artist = "Queen", .year = "1975", .genra = 17}));
  const SongTags read = ReadSongTags(path);
  EXPECT_EQ(read.title, "Newer");
  EXPECT_EQ(read.artist, "Queen");
  EXPECT_EQ(read.date, "1975");
  EXPECT_EQ(read.genre, "Rock");
}

TEST_F(TagFormats, AnApeTagBehindAnMp3IsReadWithoutId3v2) {
  // The tag of a WavPack file, which WavPack's own encoder writes at the end.
  for (const SongTags& tags : kScripts) {
    const std::string wavpack = folder_ / "ape.wv";
    Shell("wavpack -q -y -w 'Title=" + tags.title + "' -w 'Artist=" + tags.artist + "' " +
          Base("wav") + " -o " + wavpack);
    const std::string bytes = Bytes(wavpack);
    const std::size_t tag = bytes.find("APETAGEX");
    ASSERT_NE(tag, std::string::npos);
    const std::string path = Copy("mp3");
    Append(path, bytes.substr(tag));
    EXPECT_EQ(ReadSongTags(path).title, tags.title);
    EXPECT_EQ(ReadSongTags(path).artist, tags.artist);
    const std::string both = WithFfmpeg("mp3", kScripts[0]);
    Append(both, bytes.substr(tag));
    EXPECT_EQ(ReadSongTags(both).title, kScripts[0].title);
  }
}

TEST_F(TagFormats, ADateWithDayAndMonthIsKept) {
  for (const char* const options : {"-id3v2_version 3", "-id3v2_version 4"}) {
    SongTags tags = kScripts[0];
    tags.date = "12/05/1999";
    EXPECT_EQ(ReadSongTags(WithFfmpeg("mp3", tags, options)).date, "12/05/1999");
  }
  for (const char* const extension : {"flac", "ogg", "opus", "m4a", "wma", "wv", "wav"}) {
    SongTags tags = kScripts[0];
    tags.date = "12/05/1999";
    EXPECT_EQ(ReadSongTags(WithFfmpeg(extension, tags)).date, "12/05/1999") << extension;
  }
}

TEST_F(TagFormats, OtherTagsWinOverAnId3v1ThatDisagrees) {
  for (const char* const extension : {"flac", "wv"}) {
    const std::string path = WithFfmpeg(extension, kScripts[2]);
    Append(path, Tag({.title = "Ue o muite", .artist = "Kyu", .album = "Best", .year = "1999"}));
    ExpectTags(path, kScripts[2]);
  }
}

TEST_F(TagFormats, FlacOfMetaflac) {
  for (const SongTags& tags : kScripts) {
    const std::string path = Copy("flac");
    Shell("metaflac --set-tag='TITLE=" + tags.title + "' --set-tag='ARTIST=" + tags.artist +
          "' --set-tag='ALBUMARTIST=" + tags.album_artist + "' --set-tag=\"ALBUM=" + tags.album +
          "\" --set-tag='DATE=" + tags.date + "' --set-tag='GENRE=" + tags.genre +
          "' --set-tag='TRACKNUMBER=" + std::to_string(tags.track) +
          "/12' --set-tag='DISCNUMBER=" + std::to_string(tags.disc) + "' " + path);
    ExpectTags(path, tags);
  }
}

TEST_F(TagFormats, SeveralArtistsAreJoined) {
  const std::string flac = Copy("flac");
  const std::string ogg = folder_ / "song.ogg";
  const std::string opus = folder_ / "song.opus";
  Shell(
      "metaflac --set-tag='ARTIST=Simon' --set-tag='ARTIST=Garfunkel' --set-tag='ARTIST=Simon'"
      " --set-tag='GENRE=Folk' --set-tag='GENRE=Pop' " +
      flac);
  Shell("oggenc -Q -c ARTIST=Simon -c ARTIST=Garfunkel -G Folk " + Base("wav") + " -o " + ogg);
  Shell("opusenc --quiet --artist Simon --artist Garfunkel --genre Folk " + Base("wav") + " " +
        opus);
  for (const std::string& path : {flac, ogg, opus}) {
    EXPECT_EQ(ReadSongTags(path).artist, "Simon; Garfunkel");
    EXPECT_EQ(ReadSongTags(path).genre, "Folk");
  }
}

TEST_F(TagFormats, VorbisOfOggenc) {
  for (const SongTags& tags : kScripts) {
    const std::string path = folder_ / "song.ogg";
    Shell("oggenc -Q -t '" + tags.title + "' -a '" + tags.artist + "' -l \"" + tags.album +
          "\" -d " + tags.date + " -G '" + tags.genre + "' -N " + std::to_string(tags.track) +
          " -c 'ALBUMARTIST=" + tags.album_artist + "' -c DISCNUMBER=" + std::to_string(tags.disc) +
          " " + Base("wav") + " -o " + path);
    ExpectTags(path, tags);
  }
}

TEST_F(TagFormats, OpusOfOpusenc) {
  for (const SongTags& tags : kScripts) {
    const std::string path = folder_ / "song.opus";
    Shell("opusenc --quiet --title '" + tags.title + "' --artist '" + tags.artist + "' --album \"" +
          tags.album + "\" --date " + tags.date + " --genre '" + tags.genre + "' --tracknumber " +
          std::to_string(tags.track) + " --comment 'ALBUMARTIST=" + tags.album_artist +
          "' --comment DISCNUMBER=" + std::to_string(tags.disc) + " " + Base("wav") + " " + path);
    ExpectTags(path, tags);
  }
}

TEST_F(TagFormats, Mp4OfAtomicParsley) {
  for (const char* const name : {"song.m4a", "song.m4b", "song.mp4"}) {
    for (const SongTags& tags : kScripts) {
      const std::string path = Copy("m4a", name);
      Shell("AtomicParsley " + path + " --overWrite --title '" + tags.title + "' --artist '" +
            tags.artist + "' --albumArtist '" + tags.album_artist + "' --album \"" + tags.album +
            "\" --year " + tags.date + " --genre '" + tags.genre + "' --tracknum " +
            std::to_string(tags.track) + "/12 --disk " + std::to_string(tags.disc) + "/2");
      ExpectTags(path, tags);
    }
  }
}

TEST_F(TagFormats, WavPackOfWavpack) {
  for (const SongTags& tags : kScripts) {
    const std::string path = folder_ / "song.wv";
    Shell("wavpack -q -y -w 'Title=" + tags.title + "' -w 'Artist=" + tags.artist +
          "' -w 'Album Artist=" + tags.album_artist + "' -w \"Album=" + tags.album +
          "\" -w 'Year=" + tags.date + "' -w 'Genre=" + tags.genre +
          "' -w 'Track=" + std::to_string(tags.track) +
          "/12' -w 'Disc=" + std::to_string(tags.disc) + "' " + Base("wav") + " -o " + path);
    ExpectTags(path, tags);
  }
}

TEST_F(TagFormats, FilesOfFfmpeg) {
  for (const char* const extension : {"flac", "ogg", "oga", "opus", "spx", "m4a", "wma", "wv"}) {
    for (const SongTags& tags : kScripts) {
      SCOPED_TRACE(extension);
      ExpectTags(WithFfmpeg(extension, tags), tags);
    }
  }
  for (const char* const extension : {"aiff", "aac"}) {
    for (const SongTags& tags : kScripts) {
      SCOPED_TRACE(extension);
      ExpectTags(WithFfmpeg(extension, tags, "-write_id3v2 1"), tags);
    }
  }
}

TEST_F(TagFormats, WavInfoOfFfmpeg) {
  for (const SongTags& tags : kScripts) {
    SongTags expected = tags;
    // An INFO list has no album artist and no disc.
    expected.album_artist.clear();
    expected.disc = 0;
    ExpectTags(WithFfmpeg("wav", tags), expected);
  }
}

TEST_F(TagFormats, FilesOfKid3) {
  for (const char* const extension : {"opus", "spx", "m4a", "wma", "wav", "aiff"}) {
    for (const SongTags& tags : kScripts) {
      SCOPED_TRACE(extension);
      ExpectTags(WithKid3(extension, tags), tags);
    }
  }
}

TEST_F(TagFormats, TheContentDecidesWhereTheExtensionLies) {
  for (const char* const extension :
       {"flac", "ogg", "oga", "opus", "spx", "m4a", "wma", "wv", "wav", "aiff"}) {
    for (const char* const other : {"mp3", "m4a", "flac", "opus"}) {
      SCOPED_TRACE(std::string(extension) + " as " + other);
      const std::string path = WithFfmpeg(extension, kScripts[1], "-write_id3v2 1");
      const std::string renamed = folder_ / ("renamed." + std::string(other));
      std::filesystem::copy_file(path, renamed, std::filesystem::copy_options::overwrite_existing);
      EXPECT_EQ(ReadSongTags(renamed).title, kScripts[1].title);
    }
  }
}

TEST_F(TagFormats, LengthAndRatesOfEachFormat) {
  struct Expected {
    const char* extension;
    const char* format;
  };
  for (const auto& [extension, format] :
       {Expected{"mp3", "MP3"}, Expected{"flac", "FLAC"}, Expected{"ogg", "Ogg Vorbis"},
        Expected{"oga", "Ogg FLAC"}, Expected{"opus", "Opus"}, Expected{"spx", "Speex"},
        Expected{"m4a", "MP4"}, Expected{"wma", "WMA"}, Expected{"wav", "WAV"},
        Expected{"aiff", "AIFF"}, Expected{"wv", "WavPack"}}) {
    SCOPED_TRACE(extension);
    const std::string path = Copy(extension);
    const SongDetails details = ReadSongDetails(path);
    EXPECT_EQ(details.format, format);
    EXPECT_NEAR(details.length_ms, 1000, 120);
    EXPECT_GT(details.bit_rate, 0);
    EXPECT_GE(details.sample_rate, 16000);
    EXPECT_EQ(details.stamp, StampOf(path));
  }
  // TagLib cannot read the audio of AAC files.
  EXPECT_EQ(ReadSongDetails(Copy("aac")).format, "AAC");
  EXPECT_EQ(ReadSongDetails(Copy("aac")).length_ms, 0);
}

}  // namespace
}  // namespace tallow
