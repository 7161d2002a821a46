// SPDX-License-Identifier: GPL-3.0-or-later
#include "jukebox/sorting.h"

#include <gtest/gtest.h>
#include <map>
#include <optional>
#include <random>

#include "jukebox/initial_jukebox.h"
#include "jukebox/jukebox.h"
#include "tests/library_fixture.h"
#include "tests/literal_tag.h"
#include "tests/tagged_file.h"
#include "util/like.h"
#include "util/number.h"
#include "util/text.h"

namespace tallow {
namespace {

class SortingTest : public LibraryTest {
 protected:
  /// Creates a file with a tag and adds it as a song; returns its row.
  std::int32_t Song(const TagTexts& texts, const std::string& rank = "2") {
    const std::int32_t row = library.UBoundOfMp3Array() + 1;
    const std::string name = std::to_string(row) + ".mp3";
    music.File(name, Audio(300) + Tag(texts));
    AddSong(music.path(), name, "1", rank);
    return row;
  }

  Folder& Add(Jukebox& jukebox, const std::string& text, Folder* parent = nullptr) {
    return jukebox.Nodes().AddChild(parent, text);
  }

  /// Adds all automatic folders to a jukebox.
  void AddAutomaticFolders(Jukebox& jukebox) {
    for (const char* text : {"All Songs", "Artist", "Year", "Genre", "New", "Decades"})
      Add(jukebox, text);
    for (const char* text :
         {"20's", "30's", "40's", "50's", "60's", "70's", "80's", "90's", "00's"})
      Add(jukebox, text, jukebox.Nodes().Find("Decades"));
  }

  void Fill(int mode = kFillNewToo) {
    Jukebox* const windows[] = {&jukebox};
    FillAutomaticFolders(mode, false, {}, library, windows);
  }

  /// Returns the record numbers in a folder such as "Artist/ABBA"; "none" when the folder does not
  /// exist.
  std::string In(const std::string& path, Jukebox* of = nullptr) {
    FolderTree& tree = (of == nullptr ? jukebox : *of).Nodes();
    const std::size_t slash = path.find('/');
    Folder* folder = tree.Find(path.substr(0, slash));
    if (folder != nullptr && slash != std::string::npos)
      folder = tree.Find(path.substr(slash + 1), folder);
    if (folder == nullptr) return "none";
    std::string records;
    for (const SongEntry& entry : folder->Items())
      records += (records.empty() ? "" : " ") + std::to_string(entry.SubItem());
    return records;
  }

  /// Returns the texts of the direct subfolders of a folder.
  std::string Below(const std::string& text) {
    std::string texts;
    Folder* const folder = jukebox.Nodes().Find(text);
    for (Folder* child = folder->Child(); child != nullptr; child = child->Next())
      texts += (texts.empty() ? "" : "|") + child->Text();
    return texts;
  }

  Jukebox jukebox;
};

TEST_F(SortingTest, ASongIsFiledByItsTag) {
  AddAutomaticFolders(jukebox);
  Song({.artist = "ABBA", .year = "1976", .genra = 13}, "7");
  Fill();
  EXPECT_EQ(In("All Songs"), "1");
  EXPECT_EQ(In("New"), "1");
  EXPECT_EQ(In("Artist/ABBA"), "1");
  EXPECT_EQ(In("Year/1976"), "1");
  EXPECT_EQ(In("Decades/70's"), "1");
  EXPECT_EQ(In("Genre/Pop"), "1");
  const SongEntry& entry = jukebox.Nodes().Find("All Songs")->Items()[0];
  EXPECT_EQ(EntryText(entry, library), "1");
  EXPECT_EQ(entry.Icon(), 7);
  EXPECT_TRUE(jukebox.IsFormDirty());
}

TEST_F(SortingTest, ASongWithoutATagIsInAllSongsAndNewOnly) {
  AddAutomaticFolders(jukebox);
  music.File("plain.mp3", Audio(500));
  AddSong(music.path(), "plain.mp3");
  Fill();
  EXPECT_EQ(In("All Songs"), "1");
  EXPECT_EQ(In("New"), "1");
  EXPECT_EQ(Below("Artist") + Below("Year") + Below("Genre"), "");
}

TEST_F(SortingTest, AnEmptyLibraryFilesNothingAndEndsTheRun) {
  Jukebox first;
  AddAutomaticFolders(first);
  AddAutomaticFolders(jukebox);
  Jukebox* const windows[] = {&first, &jukebox};
  FillAutomaticFolders(kFillNewToo, false, {}, library, windows);
  EXPECT_TRUE(jukebox.IsFormDirty());
  EXPECT_FALSE(first.IsFormDirty());
}

TEST_F(SortingTest, ASecondRunAddsNothingAndNewKeepsTheFirst) {
  AddAutomaticFolders(jukebox);
  Song({.artist = "ABBA", .year = "1976", .genra = 13});
  Fill();
  Fill();
  EXPECT_EQ(In("All Songs"), "1");
  EXPECT_EQ(In("New"), "1");
  EXPECT_EQ(In("Artist/ABBA"), "1");
  Song({.artist = "ABBA"});
  Fill();
  EXPECT_EQ(In("New"), "1 2");
  EXPECT_EQ(In("Artist/ABBA"), "1 2");
}

TEST_F(SortingTest, ModeOneLeavesNewAlone) {
  AddAutomaticFolders(jukebox);
  Song({.artist = "ABBA"});
  Fill(kFillAllButNew);
  EXPECT_EQ(In("All Songs"), "1");
  EXPECT_EQ(In("New"), "");
}

TEST_F(SortingTest, YearsHaveFoldersAndDecades) {
  AddAutomaticFolders(jukebox);
  for (const char* year : {"1999", "2005", "1912", "0000", "    ", "2010", "2021", "1930"})
    Song({.year = year});
  Song({.year = std::string(4, '\0')});
  Fill();
  EXPECT_EQ(Below("Year"), "1999|2005|1912|2010|2021|1930");
  EXPECT_EQ(In("Decades/90's"), "1");
  EXPECT_EQ(In("Decades/00's"), "2");
  EXPECT_EQ(In("Decades/20's"), "7");
  EXPECT_EQ(In("Decades/30's"), "8");
  for (const char* decade : {"40's", "50's", "60's", "70's", "80's"})
    EXPECT_EQ(In(std::string("Decades/") + decade), "");
}

TEST_F(SortingTest, EveryDecadeDigitHasItsFolder) {
  AddAutomaticFolders(jukebox);
  for (int decade = 0; decade < 10; ++decade) Song({.year = "19" + std::to_string(decade) + "5"});
  Fill();
  const std::map<std::string, std::string> expected{{"00's", "1"}, {"20's", "3"}, {"30's", "4"},
                                                    {"40's", "5"}, {"50's", "6"}, {"60's", "7"},
                                                    {"70's", "8"}, {"80's", "9"}, {"90's", "10"}};
  for (const auto& [decade, records] : expected) EXPECT_EQ(In("Decades/" + decade), records);
}

TEST_F(SortingTest, ShortYearsHaveNoDecade) {
  AddAutomaticFolders(jukebox);
  Song({.year = "85"});
  Song({.year = std::string("7\0\0\0", 4)});
  Fill();
  EXPECT_EQ(jukebox.Nodes().Find("Year")->Children(), 2);
  for (const char* decade : {"00's", "70's", "80's"})
    EXPECT_EQ(In(std::string("Decades/") + decade), "");
}

TEST_F(SortingTest, WithoutAYearFolderNoDecadeIsFiled) {
  for (const char* text : {"All Songs", "Decades"}) Add(jukebox, text);
  Add(jukebox, "80's", jukebox.Nodes().Find("Decades"));
  Song({.year = "1985"});
  Fill();
  EXPECT_EQ(In("All Songs"), "1");
  EXPECT_EQ(In("Decades/80's"), "");
}

TEST_F(SortingTest, AbsentFoldersAreSkippedAndNotMade) {
  Add(jukebox, "All Songs");
  Song({.artist = "ABBA", .year = "1976", .genra = 13});
  Fill();
  EXPECT_EQ(In("All Songs"), "1");
  EXPECT_EQ(jukebox.Nodes().Count(), 1);
}

TEST_F(SortingTest, WithoutAllSongsNothingIsFiledButTheJukeboxBecomesDirty) {
  for (const char* text : {"New", "Artist"}) Add(jukebox, text);
  Song({.artist = "ABBA"});
  Fill();
  EXPECT_EQ(In("New"), "");
  EXPECT_EQ(Below("Artist"), "");
  EXPECT_TRUE(jukebox.IsFormDirty());
}

TEST_F(SortingTest, ANestedFolderNamedAllSongsIsNotFilled) {
  Folder& mine = Add(jukebox, "Mine");
  Add(jukebox, "All Songs", &mine);
  Song({.artist = "ABBA"});
  Fill();
  EXPECT_TRUE(mine.Child()->Items().empty());
}

TEST_F(SortingTest, OnlyTheNamedJukeboxIsFilled) {
  Jukebox other;
  AddAutomaticFolders(jukebox);
  AddAutomaticFolders(other);
  jukebox.Caption("MIX");
  other.Caption("OTHER");
  Song({.artist = "ABBA"});
  Jukebox* const windows[] = {&jukebox, &other};
  FillAutomaticFolders(kFillNewToo, false, "MIX", library, windows);
  EXPECT_EQ(In("All Songs"), "1");
  EXPECT_EQ(In("All Songs", &other), "");
  EXPECT_FALSE(other.IsFormDirty());
  FillAutomaticFolders(kFillNewToo, false, "", library, windows);
  EXPECT_EQ(In("All Songs", &other), "1");
}

TEST_F(SortingTest, BracketsOfAnArtistBecomeBlanks) {
  AddAutomaticFolders(jukebox);
  Song({.artist = "[Live] Queen"});
  Fill();
  EXPECT_EQ(Below("Artist"), "Live  Queen");
}

TEST_F(SortingTest, AnArtistOfBracketsOnlyIsIgnored) {
  AddAutomaticFolders(jukebox);
  Song({.artist = "[]"});
  Fill();
  EXPECT_EQ(Below("Artist"), "");
}

TEST_F(SortingTest, ArtistsIgnoreCaseAndGenresDoNot) {
  AddAutomaticFolders(jukebox);
  Add(jukebox, "abba", jukebox.Nodes().Find("Artist"));
  Add(jukebox, "rock", jukebox.Nodes().Find("Genre"));
  Song({.artist = "ABBA", .genra = 17});
  Fill();
  EXPECT_EQ(Below("Artist"), "abba");
  EXPECT_EQ(In("Artist/abba"), "1");
  EXPECT_EQ(Below("Genre"), "rock|Rock");
  EXPECT_EQ(In("Genre/Rock"), "1");
}

TEST_F(SortingTest, AFolderMatchesEveryArtistThatBeginsWithItsText) {
  AddAutomaticFolders(jukebox);
  Add(jukebox, "The", jukebox.Nodes().Find("Artist"));
  Song({.artist = "THE WHO"});
  Song({.artist = "theatre of hate"});
  Song({.artist = "Beatles"});
  Song({.artist = "Beatles, The"});
  Fill();
  EXPECT_EQ(In("Artist/The"), "1 2");
  EXPECT_EQ(In("Artist/Beatles"), "3 4");
}

TEST_F(SortingTest, TheFirstMatchingFolderInTreeOrderGetsTheSong) {
  AddAutomaticFolders(jukebox);
  for (const char* text : {"Q*n", "Queen", "Qu"})
    Add(jukebox, text, jukebox.Nodes().Find("Artist"));
  Song({.artist = "Queen Latifah"});
  Fill();
  EXPECT_EQ(In("Artist/Q*n"), "1");
}

TEST_F(SortingTest, AFolderOfTheSameTextGetsTheSongBeforeAnEarlierMatch) {
  AddAutomaticFolders(jukebox);
  for (const char* text : {"Q*n", "Qu", "queen", "Queen"})
    Add(jukebox, text, jukebox.Nodes().Find("Artist"));
  Song({.artist = "Queen"});
  Fill();
  EXPECT_EQ(In("Artist/queen"), "1");
}

TEST_F(SortingTest, AnArtistWithWildcardsHasOneFolder) {
  AddAutomaticFolders(jukebox);
  Song({.artist = "The #1s"});
  Song({.artist = "The #1s"});
  Fill();
  EXPECT_EQ(Below("Artist"), "The #1s");
  EXPECT_EQ(In("Artist/The #1s"), "1 2");
}

TEST_F(SortingTest, NumbersWithoutAGenreAreNotFiled) {
  AddAutomaticFolders(jukebox);
  Song({.genra = 255});
  Song({.genra = 200});
  Song({.genra = 147});
  Fill();
  EXPECT_EQ(Below("Genre"), "Synth Pop");
}

TEST_F(SortingTest, ArtistsAndYearsEndAtTheFirstNul) {
  AddAutomaticFolders(jukebox);
  Song({.artist = "Queen ", .year = std::string("85\0x", 4), .padding = '\0'});
  Song({.artist = "Queen", .year = "85"});
  Song({.artist = std::string("\0x", 2), .padding = '\0'});
  Fill();
  EXPECT_EQ(Below("Artist"), "Queen");
  EXPECT_EQ(Below("Year"), "85");
}

TEST_F(SortingTest, BytesBehindTheFirstNulDoNotChooseTheEncoding) {
  AddAutomaticFolders(jukebox);
  Song({.artist = std::string("Bj\xC3\xB6rk\0\xFF\xFE", 9), .padding = '\0'});
  Song({.artist = std::string("Caf\xE9\0\xC3\xB6", 7), .padding = '\0'});
  Song({.artist = std::string("Bj\xC3\xB6rk \xD0\0x", 10), .padding = '\0'});
  Fill();
  EXPECT_EQ(Below("Artist"), "Bj\xC3\xB6rk|Caf\xC3\xA9");
}

TEST_F(SortingTest, MissingSongsAreNotFiled) {
  AddAutomaticFolders(jukebox);
  AddSong("0", "0", "0");
  AddSong("", "", "");
  Song({.artist = "ABBA"});
  Fill();
  EXPECT_EQ(In("All Songs"), "3");
}

TEST_F(SortingTest, ABadYearIsReportedOnceAfterAllOthersAreFiled) {
  AddAutomaticFolders(jukebox);
  Song({.artist = "One", .year = "19x5", .genra = 17});
  Song({.artist = "Two", .year = "1985"});
  Song({.artist = "Three", .year = "abcd"});
  try {
    Fill();
    FAIL();
  } catch (const FilingError& error) {
    ASSERT_EQ(error.problems().size(), 2U);
    EXPECT_EQ(error.problems()[0],
              music /
                  "1.mp3: the year in the tag, '19x5', is not a number. The song is in no year "
                  "and no decade folder.");
    EXPECT_EQ(error.what(), error.problems()[0]);
    EXPECT_TRUE(error.problems()[1].starts_with(music / "3.mp3: "));
  }
  EXPECT_EQ(In("All Songs"), "1 2 3");
  EXPECT_EQ(Below("Artist"), "One|Two|Three");
  EXPECT_EQ(Below("Year"), "1985");
  EXPECT_EQ(In("Genre/Rock"), "1");
}

TEST_F(SortingTest, AnEntryOutsideTheLibraryIsReportedOnceAndIgnored) {
  AddAutomaticFolders(jukebox);
  jukebox.Nodes().Find("All Songs")->Items().emplace_back(99, 2);
  jukebox.Nodes().Find("All Songs")->Items().emplace_back(0, 2);
  Song({.artist = "ABBA"});
  try {
    Fill();
    FAIL();
  } catch (const FilingError& error) {
    ASSERT_EQ(error.problems().size(), 2U);
    EXPECT_EQ(error.problems()[0],
              "'All Songs' contains an entry for song number 99, but the library has songs 1 to 1. "
              "The entry was skipped.");
  }
  EXPECT_EQ(In("Artist/ABBA"), "1");
}

TEST_F(SortingTest, TheLibraryIsSortedByNumberUnlessSkipped) {
  AddAutomaticFolders(jukebox);
  Song({});
  Song({});
  library.Mp3Info(4, 1, "2");
  library.Mp3Info(4, 2, "1");
  Jukebox* const windows[] = {&jukebox};
  FillAutomaticFolders(kFillNewToo, true, {}, library, windows);
  EXPECT_EQ(Cells(4), (Texts{"2", "1"}));
  FillAutomaticFolders(kFillNewToo, false, {}, library, windows);
  EXPECT_EQ(Cells(4), (Texts{"1", "2"}));
}

TEST_F(SortingTest, TheShownFolderIsLabelled) {
  AddAutomaticFolders(jukebox);
  jukebox.ShowFolder(*jukebox.Nodes().Find("All Songs"), library, tallow.folder_changes);
  Song({});
  Fill();
  EXPECT_EQ(EntryText(jukebox.Nodes().Find("All Songs")->Items()[0], library), "1.  1.mp3");
  EXPECT_EQ(EntryText(jukebox.Nodes().Find("New")->Items()[0], library), "1");
}

TEST_F(SortingTest, MarksSongsThatAreThereAndNotInTheFolder) {
  for (int k = 0; k < 3; ++k) Song({});
  AddSong("0", "0", "0");
  Folder& folder = Add(jukebox, "All Songs");
  folder.Items().emplace_back(2, 2);
  std::vector<char> flags;
  std::vector<std::string> problems;
  MarkSongsToFile(folder, library, flags, problems);
  EXPECT_EQ(flags, (std::vector<char>{1, 0, 1, 0}));
  EXPECT_TRUE(problems.empty());
}

class RefreshTest : public SortingTest {
 protected:
  Texts Refresh(const std::vector<int>& records) {
    Folder& folder = Add(jukebox, "x");
    for (const int record : records) folder.Items().emplace_back(record, 2);
    RefreshFolderList(folder, library);
    Texts texts;
    for (const SongEntry& entry : folder.Items()) texts.push_back(EntryText(entry, library));
    return texts;
  }
};

TEST_F(RefreshTest, EntriesGetLabelAndRank) {
  AddSong("/m/", "a.mp3", "1", "6");
  AddSong("/m/", "b.mp3");
  EXPECT_EQ(Refresh({2, 1}), (Texts{"1.  b.mp3", "2.  a.mp3"}));
  EXPECT_EQ(jukebox.Nodes().ChildAt(0).Items()[1].Icon(), 6);
}

TEST_F(RefreshTest, AfterAMissingSongTheNextEntryIsLabelled) {
  AddSong("/m/", "a.mp3");
  AddSong("0", "0", "0");
  EXPECT_EQ(Refresh({2, 2, 1, 2}), (Texts{"1.  a.mp3"}));
}

TEST_F(RefreshTest, TheEntryAfterAnUnknownNumberStaysUnlabelled) {
  AddSong("/m/", "a.mp3");
  AddSong("0", "0", "0");
  EXPECT_EQ(Refresh({9, 1, 1}), (Texts{"1", "2.  a.mp3"}));
  EXPECT_EQ(Refresh({9, 9, 1}), (Texts{"9", "2.  a.mp3"}));
  EXPECT_EQ(Refresh({9, 2, 1}), (Texts{"2", "2.  a.mp3"}));
  EXPECT_EQ(Refresh({1, 9}), (Texts{"1.  a.mp3"}));
}

/// Reference implementation: removes entries one by one from the list.
void ReferenceRefresh(std::vector<SongEntry>& entries, const clsMain& library) {
  const std::int32_t count = library.UBoundOfMp3Array();
  std::size_t i = 0;
  while (i + 1 <= entries.size()) {
    const std::int32_t record = entries[i].SubItem();
    if (record > count || record < 1) {
      entries.erase(entries.begin() + static_cast<std::ptrdiff_t>(i));
      ++i;
    } else if (NumericValue(library.Mp3Info(3, record)) == 0) {
      entries.erase(entries.begin() + static_cast<std::ptrdiff_t>(i));
    } else {
      entries[i].LabelPosition(static_cast<std::int32_t>(i) + 1);
      entries[i].Icon(NumericValue(library.Mp3Info(5, record)));
      ++i;
    }
  }
}

TEST_F(RefreshTest, RelabellingAgreesWithTheReferenceOnRandomLists) {
  std::mt19937 random(41);
  for (int k = 0; k < 10; ++k) AddSong("/m/", "x", random() % 3 == 0 ? "0" : "1", "5");
  for (int round = 0; round < 3000; ++round) {
    Folder& folder = Add(jukebox, "x");
    for (auto n = random() % 12; n > 0; --n) {
      folder.Items().emplace_back(static_cast<std::int32_t>(random() % 14), 2);
      folder.Items().back().LabelPosition(static_cast<std::int32_t>(random() % 3));
    }
    std::vector<SongEntry> expected = folder.Items();
    ReferenceRefresh(expected, library);
    RefreshFolderList(folder, library);
    ASSERT_EQ(folder.Items().size(), expected.size());
    for (std::size_t k = 0; k < expected.size(); ++k) {
      ASSERT_EQ(folder.Items()[k].SubItem(), expected[k].SubItem());
      ASSERT_EQ(folder.Items()[k].LabelPosition(), expected[k].LabelPosition());
      ASSERT_EQ(folder.Items()[k].Icon(), expected[k].Icon());
    }
  }
}

TEST(StripBrackets, BracketsBecomeBlanksAndEndsAreTrimmed) {
  const std::map<std::string, std::string> expected{{"[Live] Queen", "Live  Queen"},
                                                    {"[[a]]", "a"},
                                                    {" x ", "x"},
                                                    {"][", ""},
                                                    {"a]b[c", "a b c"}};
  for (const auto& [text, stripped] : expected) {
    std::string result = text;
    StripBrackets(result);
    EXPECT_EQ(result, stripped) << text;
  }
}

/// Reference implementation of the filing of one song: reads the tag at once and searches the
/// children of each category linearly.
class ReferenceFiling {
 public:
  ReferenceFiling(Jukebox& jukebox, const clsMain& library)
      : tree_(jukebox.Nodes()), library_(library) {}

  void Run() {
    Folder* const all = tree_.Find("All Songs");
    if (all == nullptr) return;
    std::vector<char> flags;
    std::vector<std::string> problems;
    MarkSongsToFile(*all, library_, flags, problems);
    const auto count = static_cast<std::int32_t>(flags.size());
    for (std::int32_t row = 1; row <= count; ++row)
      if (flags[static_cast<std::size_t>(row - 1)]) Add(*all, row);
    if (Folder* const latest = tree_.Find("New"))
      for (std::int32_t row = 1; row <= count; ++row)
        if (flags[static_cast<std::size_t>(row - 1)]) Add(*latest, row);
    for (std::int32_t row = 1; row <= count; ++row)
      if (flags[static_cast<std::size_t>(row - 1)]) File(row);
  }

 private:
  void File(std::int32_t row) {
    const LiteralTag tag(std::string(library_.Mp3Info(1, row)) +
                         std::string(library_.Mp3Info(2, row)));
    if (!tag.found) return;
    std::string artist = tag.artist;
    std::string year = tag.year;
    StripBrackets(artist);
    StripBrackets(year);
    Folder* const artists = tree_.Find("Artist");
    if (artists != nullptr && !artist.empty()) Add(Prefix(*artists, artist), row);
    Folder* const years = tree_.Find("Year");
    const auto number = TryConvertToInt32(year);
    if (years != nullptr && !year.empty() && year[0] != 0 && number && *number != 0) {
      Add(Prefix(*years, year), row);
      Folder* const decades = tree_.Find("Decades");
      const std::string digit = year.substr(std::min<std::size_t>(2, year.size()), 1);
      if (decades != nullptr && digit != "1" && !digit.empty())
        if (Folder* const decade = tree_.Find(digit + "0's", decades)) Add(*decade, row);
    }
    const std::string genre(GenreNameFromID(tag.genra));
    Folder* const genres = tree_.Find("Genre");
    if (genres != nullptr && genre != "None" && !genre.empty()) {
      for (Folder* child = genres->Child(); child != nullptr; child = child->Next())
        if (Like(child->Text(), genre)) return Add(*child, row);
      Add(tree_.AddChild(genres, genre), row);
    }
  }

  Folder& Prefix(Folder& category, const std::string& value) {
    for (Folder* child = category.Child(); child != nullptr; child = child->Next())
      if (ToLower(value) == ToLower(child->Text())) return *child;
    for (Folder* child = category.Child(); child != nullptr; child = child->Next())
      if (Like(ToLower(value), ToLower(child->Text()) + "*")) return *child;
    return tree_.AddChild(&category, value);
  }

  void Add(Folder& folder, std::int32_t row) {
    folder.Items().emplace_back(NumericValue(library_.Mp3Info(4, row)),
                                NumericValue(library_.Mp3Info(5, row)));
  }

  FolderTree& tree_;
  const clsMain& library_;
};

std::string Describe(const Folder& folder) {
  std::string text = folder.Text() + "(";
  for (const SongEntry& entry : folder.Items())
    text += std::to_string(entry.SubItem()) + ":" + std::to_string(entry.Icon()) + " ";
  for (std::int32_t k = 0; k < folder.Children(); ++k) text += Describe(folder.ChildAt(k));
  return text + ")";
}

TEST_F(SortingTest, FilingAgreesWithTheReferenceOnRandomTags) {
  std::mt19937 random(47);
  static const char* const kArtists[] = {
      "ABBA", "abba gold", "A*",        "Queen?",      "[Q] Queen",    "",
      "Q#",   "The Who",   "\xC9t\xE9", "\xE9t\xE9 2", "Bj\xC3\xB6rk", "Bj\xC3\xB6rk \xD0"};
  // What a writer may leave behind the end of a text.
  static const std::string kBehind[] = {"", "", std::string("\0\xFF\xC3", 3),
                                        std::string("\0x", 2)};
  static const char* const kYears[] = {"1985", "2005", "", "0000", "1912", "85", "19", "2 05", "x"};
  for (int k = 0; k < 400; ++k) {
    if (random() % 10 == 0) {
      AddSong("0", "0", "0");
      continue;
    }
    const std::string artist = kArtists[random() % std::size(kArtists)];
    Song({.artist = artist + kBehind[random() % std::size(kBehind)],
          .year = kYears[random() % 9],
          .genra = static_cast<unsigned char>(random() % 256),
          .padding = random() % 4 == 0 ? '\0' : ' '},
         std::to_string(2 + random() % 6));
  }
  Jukebox reference;
  for (Jukebox* each : {&jukebox, &reference}) {
    AddAutomaticFolders(*each);
    for (const char* text : {"a?b", "The", "#"}) Add(*each, text, each->Nodes().Find("Artist"));
    each->Nodes().Find("All Songs")->Items().emplace_back(5, 2);
  }
  ReferenceFiling(reference, library).Run();
  EXPECT_THROW(Fill(), FilingError);
  ASSERT_EQ(jukebox.Nodes().Children(), reference.Nodes().Children());
  for (std::int32_t k = 0; k < reference.Nodes().Children(); ++k)
    EXPECT_EQ(Describe(jukebox.Nodes().ChildAt(k)), Describe(reference.Nodes().ChildAt(k)));
}

TEST_F(SortingTest, AtMostAHundredEntriesWithoutASongAreReported) {
  AddSong("/m/", "a.mp3");
  Folder& all = Add(jukebox, "All Songs");
  for (int k = 0; k < 1000; ++k) all.Items().emplace_back(0, 2);
  std::vector<char> flags;
  Texts problems;
  MarkSongsToFile(all, library, flags, problems);
  ASSERT_EQ(problems.size(), 101U);
  EXPECT_EQ(problems[100],
            "'All Songs' contains 900 more entries for songs that are not in the library. They "
            "were skipped.");
}

}  // namespace
}  // namespace tallow
