// SPDX-License-Identifier: GPL-3.0-or-later
#include "details/tag_reader.h"

#include <gtest/gtest.h>
#include <initializer_list>
#include <string>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

#include "details/file_kind.h"
#include "details/tag_fields.h"
#include "tests/tagged_file.h"
#include "tests/temp_folder.h"
#include "util/path_text.h"

namespace tallow {
namespace {

using namespace std::string_literals;
using namespace std::string_view_literals;

std::string BigEndian(std::size_t number, int bytes, unsigned bits = 8) {
  std::string text;
  for (int k = bytes - 1; k >= 0; --k)
    text += static_cast<char>((number >> (static_cast<unsigned>(k) * bits)) & ((1U << bits) - 1));
  return text;
}

std::string LittleEndian(std::size_t number) {
  std::string text = BigEndian(number, 4);
  return {text.rbegin(), text.rend()};
}

/// An ID3v2 tag. The texts of the frames begin with the byte of their encoding.
///
/// \param version 2, 3 or 4
std::string Id3v2(int version, const std::vector<std::pair<std::string, std::string>>& frames) {
  std::string body;
  for (const auto& [id, text] : frames) {
    body += id;
    if (version == 2)
      body += BigEndian(text.size(), 3);
    else
      body += BigEndian(text.size(), 4, version == 4 ? 7 : 8) + "\0\0"s;
    body += text;
  }
  return "ID3" + std::string(1, static_cast<char>(version)) + "\0\0"s +
         BigEndian(body.size(), 4, 7) + body;
}

/// An atom of an MP4 file.
std::string Atom(const std::string& name, const std::string& content) {
  return BigEndian(content.size() + 8, 4) + name + content;
}

/// A text in UTF-16 with its mark, as ID3v2.2 and 2.3 have it. The text must be ASCII or from the
/// Basic Multilingual Plane.
std::string Utf16(std::u16string_view text) {
  std::string bytes = "\x01\xFF\xFE";
  for (const char16_t c : text) {
    bytes += static_cast<char>(c & 0xFFU);
    bytes += static_cast<char>(c >> 8U);
  }
  return bytes;
}

/// An APE tag with a footer alone.
std::string Ape(const std::vector<std::pair<std::string, std::string>>& items) {
  std::string body;
  for (const auto& [key, value] : items)
    body += LittleEndian(value.size()) + LittleEndian(0) + key + "\0"s + value;
  return body + "APETAGEX" + LittleEndian(2000) + LittleEndian(body.size() + 32) +
         LittleEndian(items.size()) + LittleEndian(0) + std::string(8, '\0');
}

class TagReader : public testing::Test {
 protected:
  SongTags Read(const std::string& content, const std::string& name = "a.mp3") {
    return ReadSongTags(folder_.File(name, content));
  }
  TempFolder folder_;
};

TEST_F(TagReader, Id3v22InUtf16) {
  const SongTags tags = Read(Id3v2(2, {{"TT2", Utf16(u"上を向いて")},
                                       {"TP1", Utf16(u"Кино")},
                                       {"TP2", Utf16(u"Various")},
                                       {"TAL", Utf16(u"Café")},
                                       {"TYE", "\0"s + "1961"},
                                       {"TRK", "\0"s + "1/12"},
                                       {"TPA", "\0"s + "2/3"},
                                       {"TCO", "\0"s + "(17)"}}) +
                             Audio(3000));
  EXPECT_EQ(tags, (SongTags{.found = true,
                            .title = "上を向いて",
                            .artist = "Кино",
                            .album_artist = "Various",
                            .album = "Café",
                            .date = "1961",
                            .genre = "Rock",
                            .disc = 2,
                            .track = 1}));
}

TEST_F(TagReader, YearAndDayOfId3v23AreOneDate) {
  EXPECT_EQ(Read(Id3v2(3, {{"TYER", "\0"s + "1999"}, {"TDAT", "\0"s + "1205"}}) + Audio(900)).date,
            "1999-05-12");
  EXPECT_EQ(Read(Id3v2(3, {{"TYER", "\0"s + "12/05/1999"}}) + Audio(900)).date, "12/05/1999");
}

TEST_F(TagReader, SeveralArtistsAreJoined) {
  EXPECT_EQ(Read(Id3v2(4, {{"TPE1",
                            "\x03"
                            "Simon\0Garfunkel"s}}) +
                 Audio(900))
                .artist,
            "Simon; Garfunkel");
}

TEST_F(TagReader, TextsEndAtTheFirstNulAndAreTrimmed) {
  const SongTags tags =
      Read(Audio(900) +
           Tag({.title = " Title", .artist = "Queen\0junk"s, .album = "Album  ", .padding = '\0'}));
  EXPECT_EQ(tags.title, "Title");
  EXPECT_EQ(tags.artist, "Queen");
  EXPECT_EQ(tags.album, "Album");
  EXPECT_EQ(tags.date, "");
  EXPECT_EQ(Read(Id3v2(3, {{"TIT2", "\0 Title \t\r\n\0\0"s}}) + Audio(900)).title, "Title");
}

TEST_F(TagReader, Id3v1AloneIsRead) {
  const SongTags tags = Read(Audio(900) + Tag({.title = "Caf\xE9",
                                               .artist = "Björk",
                                               .year = "1997",
                                               .comment = std::string(28, ' ') + "\0\7"s,
                                               .genra = 7}));
  EXPECT_EQ(tags, (SongTags{.found = true,
                            .title = "Café",
                            .artist = "Björk",
                            .date = "1997",
                            .genre = "Hip Hop",
                            .track = 7}));
}

TEST_F(TagReader, AFileWithoutTagsHasNone) {
  EXPECT_EQ(Read(Audio(5000)), SongTags());
  EXPECT_EQ(Read(""), SongTags());
  EXPECT_EQ(ReadSongTags(folder_ / "missing.mp3"), SongTags{.unread = true});
  EXPECT_TRUE(ReadSongDetails(folder_ / "missing.mp3").failed);
}

TEST_F(TagReader, Id3v2WithoutFieldsLeavesTheApeTagVisible) {
  const std::string ape = Ape({{"Title", "From APE"}, {"Artist", "Симон"}, {"Track", "1/12"}});
  EXPECT_EQ(Read(Id3v2(3, {{"TSSE", "\0"s + "LAME"}}) + Audio(900) + ape).title, "From APE");
  EXPECT_EQ(Read(Id3v2(3, {{"TIT2", "\0"s + "From ID3v2"}}) + Audio(900) + ape).artist, "");
  const SongTags tags = Read(Audio(900) + ape + Tag({.title = "Older", .album = "Album"}));
  EXPECT_EQ(tags.title, "From APE");
  EXPECT_EQ(tags.artist, "Симон");
  EXPECT_EQ(tags.track, 1);
  EXPECT_EQ(tags.album, "Album");
}

TEST_F(TagReader, GenreNumbersBecomeTheNamesOfTheJukebox) {
  const auto genre = [&](const std::string& text) {
    return Read(Id3v2(3, {{"TCON", "\0"s + text}}) + Audio(900)).genre;
  };
  EXPECT_EQ(genre("(17)"), "Rock");
  EXPECT_EQ(genre("17"), "Rock");
  EXPECT_EQ(genre("(7)"), "Hip Hop");
  EXPECT_EQ(genre("(17)Rock"), "Rock");
  EXPECT_EQ(genre("Hip-Hop"), "Hip-Hop");
  EXPECT_EQ(genre("(187)"), "Indie Rock");
  EXPECT_EQ(genre("1980"), "1980");
  // The name of this number has changed since the jukebox's list was made.
  EXPECT_EQ(genre("(133)"), "Worldbeat");
  EXPECT_EQ(Read(Audio(900) + Tag({.title = "a", .genra = 133})).genre, "Worldbeat");
}

TEST_F(TagReader, TextsDeclaredAsLatin1MayBeUtf8) {
  EXPECT_EQ(Read(Id3v2(3, {{"TPE1", "\0"s + "Кино"}}) + Audio(900)).artist, "Кино");
  EXPECT_EQ(Read(Id3v2(3, {{"TPE1", "\0"s + "Bj\xF6rk"}}) + Audio(900)).artist, "Björk");
}

TEST_F(TagReader, MonkeysAudioAndMusepackHaveApeTags) {
  const std::string ape = Ape({{"Title", "Кукушка"},
                               {"Artist", "Кино"},
                               {"Album Artist", "Цой"},
                               {"Album", "Чёрный альбом"},
                               {"Year", "1990"},
                               {"Genre", "Rock"},
                               {"Track", "2/12"},
                               {"Disc", "1"}});
  const SongTags expected{.found = true,
                          .title = "Кукушка",
                          .artist = "Кино",
                          .album_artist = "Цой",
                          .album = "Чёрный альбом",
                          .date = "1990",
                          .genre = "Rock",
                          .disc = 1,
                          .track = 2};
  EXPECT_EQ(Read("MAC \x96\x0F" + std::string(200, '\0') + ape, "a.ape"), expected);
  EXPECT_EQ(Read("MP+\x07" + std::string(200, '\0') + ape, "a.mpc"), expected);
  EXPECT_EQ(Read("MPCK" + std::string(200, '\0') + ape, "a.mpc"), expected);
}

TEST_F(TagReader, OfAacOnlyAnId3TagIsRead) {
  const std::string aac = "\xFF\xF1\x50\x80" + std::string(2000, '\0');
  EXPECT_EQ(Read(Id3v2(3, {{"TIT2", "\0"s + "Title"}}) + aac, "a.aac").title, "Title");
  EXPECT_EQ(Read(aac + Tag({.title = "Older"}), "a.aac").title, "Older");
  EXPECT_EQ(Read(aac, "a.aac"), SongTags());
}

TEST_F(TagReader, AnOverlongTagGivesWhatIsBeforeTheLimit) {
  const std::string path = folder_.File(
      "a.mp3",
      Id3v2(3, {{"TIT2", "\0"s + "Title"}, {"PRIV", std::string(100'000, 'x')}}) + Audio(9000));
  const SongDetails details = ReadSongDetails(path, {.max_bytes = 20'000});
  EXPECT_TRUE(details.failed);
  EXPECT_EQ(details.tags.title, "Title");
  EXPECT_FALSE(ReadSongDetails(path).failed);
}

TEST_F(TagReader, AMillionAtomsInsideEachOtherGiveUpTheFile) {
  // Each atom has the rest of the file as its content.
  constexpr std::size_t kDepth = 1'000'000;
  std::string bytes = Atom("ftyp", "M4A \0\0\0\0"s);
  for (std::size_t left = kDepth; left > 0; --left) bytes += BigEndian(left * 8, 4) + "moov";
  const SongDetails details = ReadSongDetails(folder_.File("a.m4a", bytes));
  EXPECT_TRUE(details.failed);
  EXPECT_FALSE(details.tags.found);
  EXPECT_EQ(details.format, "MP4");
}

TEST_F(TagReader, ChaptersInsideEachOtherAreNotEntered) {
  constexpr std::size_t kDepth = 100'000;
  // An identifier, four numbers, and the chapters inside.
  const std::string fields = "a\0"s + std::string(16, '\0');
  std::string chapters;
  for (std::size_t left = kDepth; left > 0; --left)
    chapters += "CHAP" + BigEndian(left * (10 + fields.size()) - 10, 4, 7) + "\0\0"s + fields;
  const std::string body = "TIT2" + BigEndian(6, 4, 7) + "\0\0\3Title"s + chapters;
  const SongDetails details = ReadSongDetails(
      folder_.File("a.mp3", "ID3\4\0\0"s + BigEndian(body.size(), 4, 7) + body + Audio(900)));
  EXPECT_FALSE(details.failed);
  EXPECT_EQ(details.tags.title, "Title");
}

TEST_F(TagReader, ACompressedFrameGivesUpTheFile) {
  // The flag of a compressed frame of ID3v2.3, and of 2.4.
  for (const auto& [version, flags] : {std::pair(3, 0x80), std::pair(4, 0x08)}) {
    std::string tag = Id3v2(version, {{"TIT2", "\0"s + "Title"}, {"PRIV", std::string(40, 'x')}});
    tag[tag.find("PRIV") + 9] = static_cast<char>(flags);
    for (const char* const name : {"a.mp3", "a.flac", "a.wav"}) {
      std::string bytes = tag;
      if (name == "a.flac"sv) bytes += "fLaC";
      if (name == "a.wav"sv) {
        bytes = "WAVEid3 " + LittleEndian(tag.size()) + tag;
        bytes = "RIFF" + LittleEndian(bytes.size()) + bytes;
      }
      const SongDetails details = ReadSongDetails(folder_.File(name, bytes + Audio(900)));
      EXPECT_EQ(details.tags.title, details.failed ? "" : "Title") << name;
      // Without zlib, TagLib leaves such a frame out, and inflates nothing.
      EXPECT_TRUE(details.failed || kSeparator == '\\') << name;
    }
  }
}

TEST_F(TagReader, TellsFilesWithNewerTagsAloneFromThoseWithId3v1) {
  const auto details = [this](const std::string& content) {
    return ReadSongDetails(folder_.File("a.mp3", content));
  };
  const std::string newer = Id3v2(3, {{"TIT2", "\0"s + "Title"}});
  const std::string ape = Ape({{"Title", "Title"}});
  const std::string older = Tag({.title = "Older"});
  EXPECT_TRUE(details(newer + Audio(900)).HasOnlyNewerTags());
  EXPECT_TRUE(details(Audio(900) + ape).HasOnlyNewerTags());
  for (const std::string& content :
       {newer + Audio(900) + older, Audio(900) + ape + older, Audio(900) + older}) {
    EXPECT_TRUE(details(content).has_id3v1);
    EXPECT_FALSE(details(content).HasOnlyNewerTags());
  }
  EXPECT_FALSE(details(Audio(900)).has_id3v1);
  EXPECT_FALSE(details(Audio(900)).HasOnlyNewerTags());
  EXPECT_FALSE(details(older.substr(1)).has_id3v1);
  // A limit that the newer tag exceeds.
  const std::string path = folder_.File(
      "b.mp3", Id3v2(3, {{"TIT2", "\0"s + "Title"}, {"PRIV", std::string(100'000, 'x')}}) +
                   Audio(9000) + older);
  EXPECT_FALSE(ReadSongDetails(path, {.max_bytes = 20'000}).HasOnlyNewerTags());
}

TEST_F(TagReader, LongTextsAreCutAtACharacter) {
  std::string text = "\x03";
  for (int k = 0; k < 5000; ++k) text += "я";
  const std::string title = Read(Id3v2(4, {{"TIT2", text}}) + Audio(900)).title;
  EXPECT_EQ(title.size(), kMaxTagText);
  EXPECT_TRUE(title.ends_with("я"));
}

TEST_F(TagReader, SeveralThreadsReadAtOnce) {
  const std::string path = folder_.File(
      "a.mp3", Id3v2(3, {{"TIT2", Utf16(u"Кино")}, {"TCON", "\0"s + "(7)"}}) + Audio(900));
  const SongTags expected = ReadSongTags(path);
  std::vector<std::thread> threads;
  for (int thread = 0; thread < 4; ++thread) {
    threads.emplace_back([&] {
      for (int k = 0; k < 100; ++k) EXPECT_EQ(ReadSongTags(path), expected);
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(expected.genre, "Hip Hop");
}

TEST(FileKind, ExtensionsIgnoreCase) {
  EXPECT_EQ(KindByExtension("/m/a.FLAC"), FileKind::kFlac);
  EXPECT_EQ(KindByExtension("a.m4b"), FileKind::kMp4);
  EXPECT_EQ(KindByExtension("/m.mp3/a"), FileKind::kUnknown);
  EXPECT_EQ(KindByExtension("a.txt"), FileKind::kUnknown);
}

TEST(LeadingNumber, IsTheTrackBeforeTheSlash) {
  EXPECT_EQ(LeadingNumber("1/12"), 1);
  EXPECT_EQ(LeadingNumber("012"), 12);
  EXPECT_EQ(LeadingNumber("A1"), 0);
  EXPECT_EQ(LeadingNumber("-3"), 0);
  EXPECT_EQ(LeadingNumber("99999999999"), 0);
}

}  // namespace
}  // namespace tallow
