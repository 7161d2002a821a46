// SPDX-License-Identifier: GPL-3.0-or-later
// Filing by the switches of the modern style.
#include <random>

#include "details/tag_date.h"
#include "jukebox/file_again.h"
#include "jukebox/filing_rules.h"
#include "jukebox/jukebox_edits.h"
#include "jukebox/jukebox_reader.h"
#include "tests/literal_filing.h"
#include "tests/modern_fixture.h"

namespace tallow {
namespace {

TEST(FilingRules, AYearIsTheFirstGroupOfExactlyFourDigits) {
  const std::map<std::string, std::string> expected{{"1999", "1999"},
                                                    {"12/05/1999", "1999"},
                                                    {"1999-05-12", "1999"},
                                                    {"19990512", ""},
                                                    {"c1987", "1987"},
                                                    {"85", ""},
                                                    {"", ""},
                                                    {"12345 2001", "2001"},
                                                    {"0000", ""},
                                                    {"2001 2002", "2001"},
                                                    {"may 2003", "2003"},
                                                    {"20 05", ""}};
  for (const auto& [date, year] : expected) EXPECT_EQ(FourDigitYear(date), year) << date;
}

TEST(FilingRules, DecadesStartIn1920AndHaveTheWholeYearFrom2010) {
  const std::map<int, std::string> expected{{0, ""},          {1912, ""},      {1919, ""},
                                            {1920, "20's"},   {1925, "20's"},  {1999, "90's"},
                                            {2000, "00's"},   {2009, "00's"},  {2010, "2010's"},
                                            {2024, "2020's"}, {9999, "9990's"}};
  for (const auto& [year, text] : expected) {
    EXPECT_EQ(DecadeText(year), text);
    EXPECT_EQ(FirstYearOfDecade(text), text.empty() ? 0 : year - year % 10);
  }
  for (const char* const text : {"", "'s", "10's", "1980", "1980's", "x0's", "25's", "2015's"})
    EXPECT_EQ(FirstYearOfDecade(text), 0) << text;
}

TEST(FilingRules, AnAlbumIsNamedWithItsArtist) {
  EXPECT_EQ(AlbumFolderText({.artist = "Queen", .album = "Jazz"}), "Jazz (Queen)");
  EXPECT_EQ(AlbumFolderText({.artist = "A; B", .album_artist = "A", .album = "X"}), "X (A)");
  EXPECT_EQ(AlbumFolderText({.album = "Jazz"}), "Jazz");
  EXPECT_EQ(AlbumFolderText({.artist = "Queen"}), "");
}

TEST_F(ModernFilingTest, ArtistsAreWholeNames) {
  library.UseSwitches(kModernStyle);
  MakeFolders(jukebox);
  Song({.artist = "Queen"});
  Song({.artist = "Queens of the Stone Age"});
  Song({.artist = "QUEEN "});
  Song({.artist = "Bj\xC3\xB6rk"});
  Song({.artist = "BJO\xCC\x88RK"});
  Song({.artist = "[Live] A*"});
  Song({.artist = "A; B", .album_artist = "A"});
  Fill();
  EXPECT_EQ(Below("Artist"), "[Live] A*|A|Bj\xC3\xB6rk|Queen|Queens of the Stone Age");
  EXPECT_EQ(In("Artist/Queen"), "1 3");
  EXPECT_EQ(In("Artist/Bj\xC3\xB6rk"), "4 5");
}

TEST_F(ModernFilingTest, WholeNamesApplyToId3v1TagsToo) {
  library.UseSwitches({.whole_artists = true});
  MakeFolders(jukebox);
  Song({}, {.artist = "Queen"});
  Song({}, {.artist = "Queensryche"});
  Fill();
  EXPECT_EQ(Below("Artist"), "Queen|Queensryche");
}

TEST_F(ModernFilingTest, NewerTagsFollowTheClassicRulesOtherwise) {
  library.UseSwitches({.newer_tags = true});
  MakeFolders(jukebox);
  Song({.artist = "Queen", .date = "1985", .genre = "Rock"}, {.artist = "other"});
  Song({.artist = "Queensryche"});
  Fill();
  EXPECT_EQ(Below("Artist"), "Queen");
  EXPECT_EQ(Below("Year"), "1985");
  EXPECT_EQ(In("Genre/Rock"), "1");
}

TEST_F(ModernFilingTest, ADateInAClassicYearFolderIsItsYear) {
  library.UseSwitches({.newer_tags = true});
  MakeFolders(jukebox);
  Song({.date = "1988-05-12"});
  EXPECT_TRUE(Fill());
  EXPECT_EQ(Below("Year"), "1988");
  EXPECT_EQ(In("Decades/80's"), "1");
}

TEST_F(ModernFilingTest, WithoutAReaderNewerTagsAreId3v1Tags) {
  library.UseSwitches(kModernStyle);
  MakeFolders(jukebox);
  Song({.artist = "newer"}, {.artist = "old", .album = "X", .year = "1985"});
  Jukebox* const windows[] = {&jukebox};
  FillAutomaticFolders(kFillNewToo, false, {}, library, windows);
  EXPECT_EQ(Below("Artist"), "old");
  EXPECT_EQ(In("Album/X (old)"), "1");
}

TEST_F(ModernFilingTest, YearsAndDecadesComeFromDates) {
  library.UseSwitches(kModernStyle);
  MakeFolders(jukebox);
  for (const char* const date :
       {"12/05/1999", "2024", "2005-01-01", "1912", "1925", "0000", "x", "2011", "2010"})
    Song({.date = date});
  jukebox.Nodes().AddChild(At("Year"), "19");
  Fill();
  EXPECT_EQ(Below("Year"), "19|1912|1925|1999|2005|2010|2011|2024");
  EXPECT_EQ(Below("Decades"), "20's|30's|40's|50's|60's|70's|80's|90's|00's|2010's|2020's");
  EXPECT_EQ(In("Decades/2010's"), "8 9");
  EXPECT_EQ(In("Decades/2020's"), "2");
  EXPECT_EQ(In("Decades/20's"), "5");
  EXPECT_EQ(In("Decades/00's"), "3");
}

TEST_F(ModernFilingTest, AlbumsOfOneTitleAreToldApartAndAreInTrackOrder) {
  library.UseSwitches(kModernStyle);
  MakeFolders(jukebox);
  Song({.artist = "Queen", .album = "Hits", .disc = 2, .track = 1});
  Song({.artist = "Queen", .album = "Hits", .disc = 1, .track = 10});
  Song({.artist = "Queen", .album = "Hits", .track = 9});
  Song({.artist = "Queen", .album = "Hits"});
  Song({.artist = "ABBA", .album = "Hits", .track = 1});
  Fill();
  EXPECT_EQ(Below("Album"), "Hits (ABBA)|Hits (Queen)");
  EXPECT_EQ(In("Album/Hits (Queen)"), "3 2 4 1");
}

TEST_F(ModernFilingTest, ALaterSongOfAnAlbumIsPutInPlace) {
  library.UseSwitches(kModernStyle);
  MakeFolders(jukebox);
  Song({.artist = "Queen", .album = "Jazz", .track = 1});
  Song({.artist = "Queen", .album = "Jazz", .track = 3});
  Fill();
  Song({.artist = "Queen", .album = "Jazz", .track = 2});
  Fill();
  EXPECT_EQ(In("Album/Jazz (Queen)"), "1 3 2");
}

TEST_F(ModernFilingTest, AnAlbumFolderOfTheUserIsNotFilled) {
  library.UseSwitches(kModernStyle);
  MakeFolders(jukebox, false);
  jukebox.Nodes().AddChild(nullptr, "Album");
  Song({.artist = "Queen", .album = "Jazz"});
  Fill();
  EXPECT_EQ(Below("Album"), "");
  EXPECT_FALSE(IsSpecialFolder(*At("Album")));
  Jukebox* const windows[] = {&jukebox};
  FileAgainByTags({}, library, windows, {}, {}, FileAgainScope::kAlbum);
  Folder* const album = FindAlbumFolder(jukebox.Nodes());
  ASSERT_NE(album, nullptr);
  EXPECT_TRUE(IsSpecialFolder(*album));
  EXPECT_FALSE(IsSpecialFolder(*At("Album")));
  JukeboxClipboard clipboard;
  EXPECT_FALSE(JukeboxEdits(jukebox, clipboard).Rename(*album, "Mine"));
  jukebox.Undo();
  EXPECT_EQ(FindAlbumFolder(jukebox.Nodes()), nullptr);
  jukebox.Redo();
  EXPECT_EQ(FindAlbumFolder(jukebox.Nodes()), album);
}

TEST_F(ModernFilingTest, TheMarkIsSavedAndACopyIsNotMarked) {
  MakeFolders(jukebox);
  const std::string path = music / "a.juk";
  ASSERT_TRUE(jukebox.Save(path, library));
  Jukebox loaded;
  ASSERT_TRUE(loaded.Load(path, library));
  EXPECT_NE(FindAlbumFolder(loaded.Nodes()), nullptr);
  EXPECT_EQ(loaded.Encode(library), jukebox.Encode(library));
  EXPECT_FALSE(loaded.Nodes().Copy(*FindAlbumFolder(loaded.Nodes()))->Automatic());
  FindAlbumFolder(loaded.Nodes())->Automatic(false);
  EXPECT_NE(ContentHash(loaded.Nodes()), ContentHash(jukebox.Nodes()));
  EXPECT_EQ(loaded.Encode(library).find("automatic"), std::string::npos);
}

TEST_F(ModernFilingTest, TheMarkMustBeABoolean) {
  const std::string file =
      R"({"format":"Tallow jukebox","version":1,"folders":[)"
      R"({"key":1,"text":"Album","parent":0,"open":true,"songs":[],"automatic":)";
  EXPECT_TRUE(DecodeJukebox(file + "true}]}").folders[0].automatic);
  EXPECT_FALSE(DecodeJukebox(file + "false}]}").folders[0].automatic);
  EXPECT_THROW(DecodeJukebox(file + "1}]}"), JukeboxFileError);
  EXPECT_THROW(DecodeJukebox(file + R"("x"}]})"), JukeboxFileError);
  EXPECT_THROW(DecodeJukebox(file + R"(true,"automatic":true}]})"), JukeboxFileError);
}

TEST_F(ModernFilingTest, OnlyASampleJukeboxOfTheModernStyleHasAlbums) {
  Song({.artist = "Queen", .album = "Jazz"});
  Jukebox* const windows[] = {&jukebox};
  Jukebox classic;
  Jukebox* const classic_windows[] = {&classic};
  BuildInitialJukebox(library, classic, classic_windows, [] {});
  EXPECT_EQ(classic.Nodes().Find("Album"), nullptr);
  library.UseSwitches(kModernStyle);
  BuildInitialJukebox(
      library, jukebox, windows, [] {}, nullptr, {}, Reader());
  EXPECT_EQ(In("Album/Jazz (Queen)"), "1");
  EXPECT_EQ(At("Album")->Index(), At("Decades")->Index() + 1);
}

TEST_F(ModernFilingTest, NewFoldersArePutInPlaceAndOldOnesStay) {
  library.UseSwitches(kModernStyle);
  MakeFolders(jukebox);
  for (const char* const text : {"Zappa", "Disc 10", "b"})
    jukebox.Nodes().AddChild(At("Artist"), text);
  for (const char* const artist : {"Disc 9", "The Who", "a", "ZZ Top", "Disc 2"})
    Song({.artist = artist});
  Fill();
  EXPECT_EQ(Below("Artist"), "a|Disc 2|Disc 9|The Who|Zappa|Disc 10|b|ZZ Top");
}

TEST_F(ModernFilingTest, StepsBeforeAnArrangementCanBeUndone) {
  library.UseSwitches(kModernStyle);
  MakeFolders(jukebox);
  for (const char* const text : {"b", "d", "f"}) jukebox.Nodes().AddChild(At("Artist"), text);
  JukeboxClipboard clipboard;
  JukeboxEdits edits(jukebox, clipboard);
  edits.DeleteFolder(*At("Artist/d"));
  edits.DeleteFolder(*At("Artist/b"));
  jukebox.Undo();
  Song({.artist = "a"});
  Song({.artist = "c"});
  Fill();
  EXPECT_EQ(Below("Artist"), "a|b|c|f");
  jukebox.Redo();
  EXPECT_EQ(Below("Artist"), "f|a|c");
  jukebox.Undo();
  EXPECT_EQ(Below("Artist"), "a|b|c|f");
  jukebox.Undo();
  EXPECT_EQ(Below("Artist"), "b|d|f|a|c");
  jukebox.Redo();
  EXPECT_EQ(Below("Artist"), "a|b|c|f");
}

TEST_F(ModernFilingTest, FilingAgreesWithTheReferenceOnRandomTagsAndSwitches) {
  static const char* const kArtists[] = {"ABBA",         "abba gold", "A*", "Queen", "Queens",
                                         "[Q] x",        "",          "Q#", "queen", "Bj\xC3\xB6rk",
                                         "Bjo\xCC\x88rk"};
  static const char* const kDates[] = {"1985", "2005",       "",   "0000", "1912",
                                       "2024", "12/05/1999", "19", "2011"};
  static const char* const kGenres[] = {"Rock", "rock", "", "None", "Pop"};
  std::mt19937 random(53);
  const auto any = [&](const auto& texts) {
    return std::string(texts[random() % std::size(texts)]);
  };
  for (int round = 0; round < 20; ++round) {
    Jukebox fast;
    Jukebox slow;
    for (Jukebox* const each : {&fast, &slow}) {
      MakeFolders(*each, round % 3 != 0);
      for (const char* const text : {"Qu", "The", "#"})
        each->Nodes().AddChild(each->Nodes().Find("Artist"), text);
    }
    for (int part = 0; part < 3; ++part) {
      const auto flip = [&] { return random() % 2 == 0; };
      library.UseSwitches({.newer_tags = flip(),
                           .whole_artists = flip(),
                           .four_digit_years = flip(),
                           .all_decades = flip(),
                           .albums = flip(),
                           .natural_order = flip()});
      for (int k = 0; k < 8; ++k)
        Song({.artist = any(kArtists),
              .album_artist = flip() ? any(kArtists) : "",
              .album = flip() ? "Hits" : "",
              .date = any(kDates),
              .genre = any(kGenres),
              .disc = static_cast<std::int32_t>(random() % 3),
              .track = static_cast<std::int32_t>(random() % 4)},
             {.artist = any(kArtists) + (flip() ? std::string("\0\xFF\xC3", 3) : ""),
              .album = flip() ? "Best" : "",
              .year = any(kDates),
              .genra = static_cast<unsigned char>(random() % 4),
              .padding = flip() ? '\0' : ' '});
      Jukebox* const windows[] = {&fast};
      LiteralFiling(slow.Nodes(), library, Reader()).Fill();
      try {
        FillAutomaticFolders(kFillNewToo, false, {}, library, windows, nullptr, {}, Reader());
      } catch (const FilingError&) {
        // Some dates are no numbers.
      }
      ASSERT_EQ(Describe(fast.Nodes()), Describe(slow.Nodes())) << round << " " << part;
    }
  }
}

}  // namespace
}  // namespace tallow
