// SPDX-License-Identifier: GPL-3.0-or-later
#include "jukebox/file_again.h"

#include <random>

#include "tests/literal_filing.h"
#include "tests/modern_fixture.h"

namespace tallow {
namespace {

class FileAgainTest : public ModernFilingTest {
 protected:
  FileAgainTest() { MakeFolders(jukebox); }

  bool Again(const std::vector<std::int32_t>& songs, const FilingProgress& progress = {},
             FileAgainScope scope = FileAgainScope::kAll) {
    Jukebox* const windows[] = {&jukebox};
    return FileAgainByTags(songs, library, windows, Reader(), progress, scope);
  }
  bool AllAgain() { return Again(SongsThatArePresent(library)); }
};

TEST_F(FileAgainTest, SongsMoveToTheFoldersOfTheirPresentTags) {
  library.UseSwitches(kModernStyle);
  const std::int32_t song = Song({.artist = "Quen", .album = "Jazz", .date = "1978"});
  Song({.artist = "ABBA"});
  Fill();
  TagsOf(song) = {.found = true, .artist = "Queen", .album = "Jazz", .date = "2011"};
  EXPECT_TRUE(AllAgain());
  EXPECT_EQ(Below("Artist"), "ABBA|Queen");
  EXPECT_EQ(Below("Album"), "Jazz (Queen)");
  EXPECT_EQ(Below("Year"), "2011");
  EXPECT_EQ(In("Decades/70's"), "");
  EXPECT_EQ(In("Decades/2010's"), "1");
  EXPECT_EQ(In("All Songs"), "1 2");
  EXPECT_EQ(In("New"), "1 2");
}

TEST_F(FileAgainTest, TheStepsAreNamed) {
  library.UseSwitches(kModernStyle);
  const std::int32_t song = Song({.artist = "Quen", .album = "Jazz"});
  Fill();
  TagsOf(song) = {.found = true, .artist = "Queen", .album = "Jazz"};
  EXPECT_TRUE(AllAgain());
  EXPECT_EQ(jukebox.History().NameToUndo(), "File Songs Again");
  TagsOf(song) = {.found = true, .artist = "Queen", .album = "News"};
  EXPECT_TRUE(Again({song}, {}, FileAgainScope::kAlbum));
  EXPECT_EQ(jukebox.History().NameToUndo(), "Add Album Folder");
}

TEST_F(FileAgainTest, ASwitchOfTheStyleIsOneStepThatCanBeUndone) {
  Song({.artist = "Queen", .date = "2024"}, {.artist = "Queen", .year = "2024"});
  Song({.artist = "Queens of the Stone Age"}, {.artist = "Queens of the Stone Age"});
  Fill();
  EXPECT_EQ(In("Artist/Queen"), "1 2");
  EXPECT_EQ(In("Decades/20's"), "1");
  const std::string classic = Describe(jukebox.Nodes());
  library.UseSwitches(kModernStyle);
  AllAgain();
  EXPECT_EQ(Below("Artist"), "Queen|Queens of the Stone Age");
  EXPECT_EQ(In("Decades/2020's"), "1");
  const std::string modern = Describe(jukebox.Nodes());
  EXPECT_EQ(jukebox.History().Steps(), 1U);
  EXPECT_TRUE(jukebox.Undo().done);
  EXPECT_EQ(Describe(jukebox.Nodes()), classic);
  EXPECT_TRUE(jukebox.Redo().done);
  EXPECT_EQ(Describe(jukebox.Nodes()), modern);
  library.UseSwitches(kClassicStyle);
  AllAgain();
  EXPECT_EQ(Below("Artist"), "Queen");
  EXPECT_EQ(In("Decades/20's"), "1");
}

TEST_F(FileAgainTest, FoldersOfTheUserAndOtherSongsStay) {
  const std::int32_t song = Song({.artist = "ABBA"}, {.artist = "ABBA"});
  Song({}, {.artist = "Queen"});
  Fill();
  FolderTree& tree = jukebox.Nodes();
  for (Folder* const folder :
       {&tree.AddChild(nullptr, "Mine"), &tree.AddChild(At("All Songs"), "Mine"),
        &tree.AddChild(At("Artist"), "Mine"), At("Genre")})
    folder->Items().emplace_back(song, 2);
  tree.AddChild(At("Artist"), "Empty");
  tree.AddChild(At("Artist/Queen"), "Live").Items().emplace_back(song, 2);
  library.UseSwitches({.newer_tags = true});
  TagsOf(song).artist = "Abba";
  Again({song, 99, -1});
  EXPECT_EQ(In("Mine"), "1");
  EXPECT_EQ(In("All Songs/Mine"), "1");
  EXPECT_EQ(Below("Artist"), "Queen|Empty|Abba");
  EXPECT_EQ(In("Genre"), "");
  EXPECT_EQ(At("Artist/Queen")->Children(), 0);
  jukebox.Undo();
  EXPECT_EQ(Below("Artist"), "ABBA|Queen|Mine|Empty");
  EXPECT_EQ(In("Genre"), "1");
}

TEST_F(FileAgainTest, AFolderThatIsFilledAgainStaysTheSame) {
  Song({}, {.artist = "ABBA"});
  Fill();
  const Folder* const folder = At("Artist/ABBA");
  Song({}, {.artist = "ABBA"});
  Fill();
  AllAgain();
  EXPECT_EQ(At("Artist/ABBA"), folder);
  EXPECT_EQ(jukebox.History().Steps(), 0U);  // nothing has changed
}

TEST_F(FileAgainTest, MissingSongsAndUnreadableFilesStay) {
  const std::int32_t gone = Song({}, {.artist = "ABBA"});
  const std::int32_t unreadable = Song({}, {.artist = "Queen"});
  Fill();
  library.Mp3Info(kFileIsThere, gone, "0");
  library.Mp3Info(kFileName, unreadable, "no such file.mp3");
  AllAgain();
  EXPECT_EQ(In("Artist/ABBA"), "1");
  EXPECT_EQ(In("Artist/Queen"), "2");
}

TEST_F(FileAgainTest, AFileWithoutNewerTagsIsTakenOutUnlessItIsUnreadable) {
  library.UseSwitches(kModernStyle);
  const std::int32_t untagged = Song({.artist = "ABBA"});
  const std::int32_t unreadable = Song({.artist = "Queen"});
  Fill();
  TagsOf(untagged) = {};
  library.Mp3Info(kFileName, unreadable, "no such file.mp3");
  AllAgain();
  EXPECT_EQ(Below("Artist"), "Queen");
  EXPECT_EQ(In("All Songs"), "1 2");
}

TEST_F(FileAgainTest, EachOpenJukeboxFilesTheSongsItHas) {
  library.UseSwitches(kModernStyle);
  Song({.artist = "ABBA"});
  Fill();
  const std::int32_t later = Song({.artist = "Queen"});
  Jukebox other;
  MakeFolders(other);
  Jukebox* const both[] = {&jukebox, &other};
  FillAutomaticFolders(kFillNewToo, false, {}, library, std::span(both).subspan(1), nullptr, {},
                       Reader());
  TagsOf(later).artist = "Queens";
  FileAgainByTags(SongsThatArePresent(library), library, both, Reader());
  EXPECT_EQ(Below("Artist"), "ABBA");
  EXPECT_EQ(jukebox.History().Steps(), 0U);
  EXPECT_NE(other.Nodes().Find("Queens", other.Nodes().Find("Artist")), nullptr);
  EXPECT_EQ(other.History().Steps(), 1U);
}

TEST_F(FileAgainTest, CancelledItHasFiledWholeSongs) {
  library.UseSwitches(kModernStyle);
  for (int k = 0; k < 100; ++k) Song({.artist = "old", .date = "1990"});
  Fill();
  for (int k = 1; k <= 100; ++k) TagsOf(k) = {.found = true, .artist = "new", .date = "2011"};
  EXPECT_FALSE(
      Again(SongsThatArePresent(library), [](std::size_t read, std::size_t) { return read < 70; }));
  EXPECT_EQ(At("Artist/new")->Items().size(), 70U);
  EXPECT_EQ(At("Year/2011")->Items().size(), 70U);
  EXPECT_EQ(At("Decades/2010's")->Items().size(), 70U);
  EXPECT_EQ(At("Artist/old")->Items().size(), 30U);
}

TEST_F(FileAgainTest, ANewAlbumFolderIsFilledAlone) {
  Jukebox* const windows[] = {&jukebox};
  jukebox.Nodes().Take(*At("Album"));
  Song({.artist = "ABBA", .album = "Hits"});
  library.UseSwitches(kModernStyle);
  Fill();
  TagsOf(1).artist = "Queen";
  FileAgainByTags(SongsThatArePresent(library), library, windows, Reader(), {},
                  FileAgainScope::kAlbum);
  EXPECT_EQ(In("Album/Hits (Queen)"), "1");
  EXPECT_EQ(Below("Artist"), "ABBA");
  EXPECT_EQ(jukebox.History().Steps(), 1U);
  jukebox.Undo();
  EXPECT_EQ(At("Album"), nullptr);
  jukebox.Redo();
  EXPECT_EQ(In("Album/Hits (Queen)"), "1");
}

TEST_F(FileAgainTest, ASwitchOfTheStyleGivesTheSampleItsAlbumFolder) {
  jukebox.Nodes().Take(*At("Album"));
  Song({.artist = "ABBA", .album = "Hits"});
  Fill();
  const auto switch_style = [&] {
    Again(SongsThatArePresent(library), {}, FileAgainScope::kStyle);
    return In("Album/Hits (ABBA)");
  };
  library.UseSwitches(kModernStyle);
  EXPECT_EQ(switch_style(), "none");  // the user's own jukebox
  jukebox.Caption(kSampleCaption);
  AllAgain();
  EXPECT_EQ(In("Album/Hits (ABBA)"), "none");
  EXPECT_EQ(switch_style(), "1");
  EXPECT_TRUE(At("Album")->Automatic());
  const std::string modern = Describe(jukebox.Nodes());
  EXPECT_EQ(switch_style(), "1");
  EXPECT_EQ(Describe(jukebox.Nodes()), modern);
}

TEST_F(FileAgainTest, SongsOfAFolderAreThoseOfAllFoldersBelow) {
  Folder& artist = *At("Artist");
  artist.Items().emplace_back(3, 2);
  Folder& abba = jukebox.Nodes().AddChild(&artist, "ABBA");
  for (const int song : {7, 3, 1}) abba.Items().emplace_back(song, 2);
  EXPECT_EQ(SongsIn(artist), (std::vector<std::int32_t>{1, 3, 7}));
}

TEST_F(FileAgainTest, AgreesWithTheReferenceAndIsUndoneOnRandomSwitches) {
  static const char* const kArtists[] = {"ABBA", "abba gold", "A*", "Queen", "Queens", "", "Q#"};
  static const char* const kDates[] = {"1985", "2005", "", "1912", "2024", "2011", "19"};
  static const char* const kGenres[] = {"Rock", "rock", "", "Pop"};
  std::mt19937 random(59);
  const auto flip = [&] { return random() % 2 == 0; };
  const auto any = [&](const auto& texts) {
    return std::string(texts[random() % std::size(texts)]);
  };
  const auto draw = [&] {
    return SongTags{.found = random() % 9 != 0,
                    .artist = any(kArtists),
                    .album = flip() ? "Hits" : "Best",
                    .date = any(kDates),
                    .genre = any(kGenres),
                    .track = static_cast<std::int32_t>(random() % 4)};
  };
  for (int k = 0; k < 20; ++k)
    Song(draw(), {.artist = any(kArtists),
                  .year = any(kDates),
                  .genra = static_cast<unsigned char>(random() % 3)});
  for (int round = 0; round < 40; ++round) {
    Jukebox fast;
    MakeFolders(fast, round % 4 != 0);
    Jukebox* const windows[] = {&fast};
    FillAutomaticFolders(kFillNewToo, false, {}, library, windows, nullptr, {}, Reader());
    std::vector<std::string> states{Describe(fast.Nodes())};
    for (int step = 0; step < 5; ++step) {
      library.UseSwitches({.newer_tags = flip(),
                           .whole_artists = flip(),
                           .four_digit_years = flip(),
                           .all_decades = flip(),
                           .albums = flip(),
                           .natural_order = flip()});
      for (int k = 1; k <= 20; ++k)
        if (random() % 3 == 0) TagsOf(k) = draw();
      std::vector<std::int32_t> songs;
      for (int k = 1; k <= 20; ++k)
        if (random() % 4 != 0) songs.push_back(k);
      Jukebox slow;
      for (std::int32_t k = 0; k < fast.Nodes().Children(); ++k) {
        const Folder& from = fast.Nodes().ChildAt(k);
        slow.Nodes().Put(slow.Nodes().Copy(from), nullptr, k).Automatic(from.Automatic());
      }
      LiteralFiling(slow.Nodes(), library, Reader()).Again(songs);
      FileAgainByTags(songs, library, windows, Reader());
      ASSERT_EQ(Describe(fast.Nodes()), Describe(slow.Nodes())) << round << " " << step;
      if (Describe(fast.Nodes()) != states.back()) states.push_back(Describe(fast.Nodes()));
    }
    ASSERT_EQ(fast.History().Steps(), states.size() - 1);
    for (std::size_t k = states.size() - 1; k > 0; --k) {
      fast.Undo();
      ASSERT_EQ(Describe(fast.Nodes()), states[k - 1]) << round << " " << k;
    }
    for (std::size_t k = 1; k < states.size(); ++k) {
      fast.Redo();
      ASSERT_EQ(Describe(fast.Nodes()), states[k]) << round << " " << k;
    }
    library.UseSwitches(kClassicStyle);
  }
}

}  // namespace
}  // namespace tallow
