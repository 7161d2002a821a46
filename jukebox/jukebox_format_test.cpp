// SPDX-License-Identifier: GPL-3.0-or-later
#include "jukebox/jukebox_format.h"

#include <random>

#include "jukebox/folder_tree.h"
#include "jukebox/jukebox_reader.h"
#include "jukebox/jukebox_writer.h"
#include "jukebox/song_links.h"
#include "tests/library_fixture.h"

namespace tallow {
namespace {

using namespace std::string_literals;

class JukeboxFormat : public LibraryTest {
 protected:
  std::string Encode() const { return EncodeJukebox(tree, columns, library); }
  /// Returns what is wrong with a file; empty when the file is valid.
  static std::string ProblemOf(const std::string& bytes) {
    try {
      DecodeJukebox(bytes);
    } catch (const JukeboxFileError& error) {
      return error.what();
    }
    return {};
  }
  /// Returns a file with the given folders and additional members.
  static std::string File(const std::string& folders, const std::string& more = "") {
    return R"({"format":"Tallow jukebox","version":1,"columns":[],"folders":[)" + folders +
           R"(],"names":{})" + more + "}";
  }
  static std::string FolderText(int key, int parent, const std::string& songs = "") {
    return R"({"key":)" + std::to_string(key) +
           R"(,"text":"x","image":0,"selectedImage":1,"parent":)" + std::to_string(parent) +
           R"(,"open":false,"songs":[)" + songs + "]}";
  }
  /// A tree as text, one line per folder.
  static std::string Describe(const FolderTree& tree) {
    std::string text;
    for (std::int32_t k = 0; k < tree.Children(); ++k) Describe(tree.ChildAt(k), text);
    return text;
  }
  static void Describe(const Folder& folder, std::string& to) {
    to += std::to_string(folder.Level()) + " '" + folder.Text() + "' " +
          std::to_string(folder.Image()) + " " + std::to_string(folder.SelectedImage()) +
          (folder.Open() ? " open" : " closed");
    for (const SongEntry& entry : folder.Items())
      to += " " + std::to_string(entry.SubItem()) + "/" + std::to_string(entry.Icon());
    to += "\n";
    for (std::int32_t k = 0; k < folder.Children(); ++k) Describe(folder.ChildAt(k), to);
  }

  FolderTree tree;
  std::vector<std::string> columns{"Name    --        (click to sort)", "Key"};
};

TEST_F(JukeboxFormat, IsWrittenAsItIsDocumented) {
  for (const char* const name : {"a.mp3", "b.mp3", "c.mp3"}) AddSong("/m/", name);
  Folder& all = tree.AddChild(nullptr, "All Songs");
  for (const int song : {1, 2, 3}) all.Items().emplace_back(song, 2);
  all.Open(true);
  Folder& artist = tree.AddChild(nullptr, "Artist");
  artist.Open(true);
  tree.AddChild(&artist, "ABBA").Items().emplace_back(2, 2);
  const std::string expected = R"json({"format":"Tallow jukebox","version":1,
"columns":["Name    --        (click to sort)","Key"],
"folders":[
{"key":1,"text":"All Songs","image":0,"selectedImage":1,"parent":0,"open":true,"songs":[1,2,3]},
{"key":2,"text":"Artist","image":0,"selectedImage":1,"parent":0,"open":true,"songs":[]},
{"key":3,"text":"ABBA","image":0,"selectedImage":1,"parent":2,"open":false,"songs":[2]}],
"names":{
"1":"a.mp3",
"2":"b.mp3",
"3":"c.mp3"}}
)json";
  EXPECT_EQ(Encode(), expected);
}

TEST_F(JukeboxFormat, AnEmptyJukeboxComesBackEmpty) {
  const JukeboxContent content = DecodeJukebox(Encode());
  EXPECT_EQ(content.columns, columns);
  EXPECT_TRUE(content.folders.empty());
  EXPECT_EQ(content.names.size(), 0U);
}

TEST_F(JukeboxFormat, AnyTextSurvivesSavingAndLoading) {
  const std::string texts[] = {"",
                               "a\0b\0"s,
                               "[x] {y} \"z\" \\ /",
                               "line\r\nbreak\t\x01\x7F",
                               "caf\xE9 \xFF\xFE",
                               "Ünïcödé 曲 \U0001F3B5",
                               "\xEF\xBB\xBF",
                               "\U0010FE80 \U0010FEFF \U0010FE7F \U0010FF00",
                               "\xF4\x8F\xBA",
                               "\xED\xA0\x80"};
  for (const std::string& text : texts) {
    tree.AddChild(nullptr, text);
    AddSong("/m/", text);
    tree.ChildAt(0).Items().emplace_back(library.UBoundOfMp3Array(), 2);
  }
  columns.assign(std::begin(texts), std::end(texts));
  const std::string bytes = Encode();
  EXPECT_TRUE(bytes.find('\0') == std::string::npos);
  const JukeboxContent content = DecodeJukebox(bytes);
  EXPECT_EQ(content.columns, columns);
  for (std::size_t k = 0; k < std::size(texts); ++k) {
    EXPECT_EQ(content.folders[k].text, texts[k]);
    EXPECT_EQ(content.names[k].text, texts[k]);
  }
}

TEST_F(JukeboxFormat, RandomTreesSurviveSavingAndLoading) {
  for (int k = 0; k < 50; ++k)
    AddSong("/m/", std::to_string(k) + ".mp3", "1", std::to_string(2 + k % 6));
  std::mt19937 random(7);
  for (int round = 0; round < 50; ++round) {
    FolderTree some;
    std::vector<Folder*> folders{nullptr};
    for (auto n = random() % 60; n > 0; --n) {
      std::string text(random() % 6, '\0');
      for (char& c : text) c = static_cast<char>(random());
      Folder& folder = some.AddChild(folders[random() % folders.size()], text,
                                     static_cast<std::int32_t>(random() % 4),
                                     static_cast<std::int32_t>(random() % 4));
      folder.Open(random() % 2 == 0);
      for (auto songs = random() % 8; songs > 0; --songs) {
        const auto song = static_cast<std::int32_t>(random() % 55);
        const bool has_row = song >= 1 && song <= 50;
        folder.Items().emplace_back(song, has_row ? 2 + (song - 1) % 6 : 0);
      }
      folders.push_back(&folder);
    }
    const std::string bytes = EncodeJukebox(some, columns, library);
    FolderTree again;
    FillTree(DecodeJukebox(bytes), library, again);
    ASSERT_EQ(Describe(again), Describe(some));
    ASSERT_EQ(EncodeJukebox(again, columns, library), bytes);
  }
}

TEST_F(JukeboxFormat, FilesThatAreNoJukeboxAreRefused) {
  EXPECT_EQ(ProblemOf(""), "at byte 1 it is damaged or cut off");
  EXPECT_EQ(ProblemOf("hello"), "at byte 1 it is damaged or cut off");
  for (const char* const other : {"{}", "[]", "[[[[", "1", "\"x\"", "null", "true", "1.5",
                                  R"({"format":"Tallow jukebox"})", R"({"version":1})"})
    EXPECT_NE(ProblemOf(other), "") << other;
  EXPECT_EQ(ProblemOf(R"({"format":"playlist","version":1})"), "it is not a jukebox file");
  EXPECT_EQ(ProblemOf(R"({"format":"Tallow jukebox","version":2})"),
            "it was written by a newer Tallow (format 2)");
  EXPECT_NE(ProblemOf(R"({"format":"Tallow jukebox","version":0})"), "");
  EXPECT_NE(ProblemOf(R"({"format":"Tallow jukebox","version":"1"})"), "");
  EXPECT_NE(ProblemOf(R"({"format":7,"version":1})"), "");
}

TEST_F(JukeboxFormat, EveryTruncationIsDetected) {
  AddSong("/m/", "a.mp3");
  tree.AddChild(nullptr, "All Songs").Items().emplace_back(1, 2);
  const std::string bytes = Encode();
  ASSERT_EQ(ProblemOf(bytes), "");
  // Only the final line break may be missing.
  for (std::size_t length = 0; length + 1 < bytes.size(); ++length)
    EXPECT_NE(ProblemOf(bytes.substr(0, length)), "") << length;
}

TEST_F(JukeboxFormat, FoldersMustFormATree) {
  EXPECT_EQ(ProblemOf(File(FolderText(1, 0) + "," + FolderText(2, 1))), "");
  EXPECT_EQ(ProblemOf(File(FolderText(1, 0) + "," + FolderText(1, 0))),
            "the folder 'x' has the same key as another folder");
  const std::string lost = "the folder 'x' is in a folder that is not defined before it";
  EXPECT_EQ(ProblemOf(File(FolderText(1, 7))), lost);
  EXPECT_EQ(ProblemOf(File(FolderText(1, 1))), lost);
  EXPECT_EQ(ProblemOf(File(FolderText(1, 2) + "," + FolderText(2, 1))), lost);
}

TEST_F(JukeboxFormat, FoldersMayLieAThousandDeepAndNoDeeper) {
  std::string folders = FolderText(1, 0);
  for (int key = 2; key <= 1001; ++key) folders += "," + FolderText(key, key - 1);
  EXPECT_EQ(ProblemOf(File(folders)), "");
  EXPECT_EQ(ProblemOf(File(folders + "," + FolderText(1002, 1001))),
            "the folder 'x' is nested too deeply");
}

TEST_F(JukeboxFormat, InvalidMembersAreRefused) {
  EXPECT_EQ(ProblemOf(File(R"({"key":1,"text":"x","parent":0,"open":false})")),
            "folder 1 is not complete");
  EXPECT_EQ(ProblemOf(File("{}")), "folder 1 is not complete");
  for (const char* const wrong :
       {R"({"key":0})", R"({"key":-1})", R"({"key":"1"})", R"({"key":1.5})",
        R"({"key":4294967296})", R"({"key":99999999999999999999})", R"({"parent":-1})",
        R"({"text":1})", R"({"text":null})", R"({"open":1})", R"({"songs":1})",
        R"({"songs":["1"]})", R"({"songs":[2147483648]})", R"({"songs":[1.0]})", "7", "\"x\"",
        "null"})
    EXPECT_NE(ProblemOf(File(wrong)), "") << wrong;
  EXPECT_NE(ProblemOf(R"({"format":"Tallow jukebox","version":1,"columns":[1]})"), "");
  EXPECT_NE(ProblemOf(R"({"format":"Tallow jukebox","version":1,"columns":7})"), "");
  EXPECT_NE(ProblemOf(R"({"format":"Tallow jukebox","version":1,"names":{"x":"a"}})"), "");
  EXPECT_NE(ProblemOf(R"({"format":"Tallow jukebox","version":1,"names":{"1":2}})"), "");
}

TEST_F(JukeboxFormat, MissingOrDuplicateMembersAreRefused) {
  const std::string head = R"({"format":"Tallow jukebox","version":1)";
  EXPECT_EQ(ProblemOf(head + "}"), "it is not a jukebox file");
  EXPECT_EQ(ProblemOf(head + R"(,"folders":[]})"), "");
  EXPECT_EQ(ProblemOf(head + R"(,"version":1,"folders":[]})"), "'version' occurs twice");
  EXPECT_EQ(ProblemOf(head + R"(,"format":"Tallow jukebox","folders":[]})"),
            "'format' occurs twice");
  EXPECT_EQ(ProblemOf(head + R"(,"folders":[],"folders":[]})"), "'folders' occurs twice");
  EXPECT_EQ(ProblemOf(File(R"({"key":1,"key":2,"text":"x","parent":0,"open":true,"songs":[]})")),
            "folder 1 has 'key' twice");
  EXPECT_EQ(
      ProblemOf(File(R"({"key":1,"text":"x","parent":0,"open":true,"songs":[1],"songs":[]})")),
      "folder 1 has 'songs' twice");
  EXPECT_EQ(ProblemOf(head + R"(,"folders":[],"names":{"2":"a","1":"b","2":"c"}})"),
            "song 2 has two names");
  EXPECT_EQ(ProblemOf(R"({"format":"Tallow jukebox","version":0,"folders":[]})"),
            "format 0 is unknown");
}

TEST_F(JukeboxFormat, MisplacedArraysAndObjectsAreRefused) {
  const std::string head = R"({"format":"Tallow jukebox","version":1)";
  for (const char* const wrong :
       {R"("folders":{})", R"("folders":[[]])", R"("folders":[],"names":[])",
        R"("folders":[],"columns":{})", R"("folders":[],"columns":[[]])",
        R"("folders":[],"columns":[{}])", R"("folders":[],"names":{"1":[]})",
        R"("folders":[],"names":{"1":{}})"})
    EXPECT_NE(ProblemOf(head + "," + wrong + "}"), "") << wrong;
  for (const char* const wrong : {"[1]", R"({"a":2})"})
    EXPECT_NE(ProblemOf(File(FolderText(1, 0, wrong))), "") << wrong;
  for (const char* const member : {"key", "text", "parent", "open", "image", "selectedImage"})
    for (const char* const value : {"[]", "{}"})
      EXPECT_NE(ProblemOf(File("{\"" + std::string(member) + "\":" + value + "}")), "") << member;
}

TEST_F(JukeboxFormat, NamesOfSongsThatTheLibraryDoesNotHaveAreKept) {
  AddSong("/m/", "a.mp3");
  AddSong("0", "0", "0");
  JukeboxContent content;
  content.folders.emplace_back().key = 1;
  content.folders[0].songs = {1, 2, 40};
  content.names.Add(1, "a.mp3");
  content.names.Add(2, "gone.mp3");
  content.names.Add(40, "forty.mp3");
  content.names.Add(50, "not used.mp3");
  const SongNames absent = AbsentNames(content, library);
  FillTree(content, library, tree);
  const JukeboxContent again = DecodeJukebox(EncodeJukebox(tree, columns, library, absent));
  ASSERT_EQ(again.names.size(), 3U);
  EXPECT_EQ(again.names[0].text, "a.mp3");
  EXPECT_EQ(again.names[1].text, "gone.mp3");
  EXPECT_EQ(again.names[2].record, 40);
  EXPECT_EQ(again.names[2].text, "forty.mp3");
}

TEST_F(JukeboxFormat, UnknownMembersAreIgnored) {
  const std::string more =
      R"(,"later":{"a":[1,[2,{"b":null}],true,1.5,"x"],"folders":[{"key":9}]},"also":3)";
  const JukeboxContent content = DecodeJukebox(File(FolderText(1, 0, "4,5"), more));
  ASSERT_EQ(content.folders.size(), 1U);
  EXPECT_EQ(content.folders[0].songs, (std::vector<std::int32_t>{4, 5}));
}

TEST_F(JukeboxFormat, DeepNestingOfUnknownMembersIsAccepted) {
  const std::string deep = std::string(200000, '[') + std::string(200000, ']');
  EXPECT_EQ(ProblemOf(File("", ",\"later\":" + deep)), "");
  EXPECT_NE(ProblemOf(std::string(200000, '[')), "");
}

TEST_F(JukeboxFormat, ASongWithAnotherNumberIsFoundByItsName) {
  AddSong("/m/", "now another.mp3");
  AddSong("/m/", "a.mp3");
  AddSong("/m/", "twice.mp3");
  AddSong("/n/", "twice.mp3");
  AddSong("/m/", "gone.mp3", "0");
  AddSong("/m/", "kept.mp3");
  JukeboxContent content;
  for (const auto& [record, name] :
       std::initializer_list<std::pair<int, const char*>>{{1, "overridden by the next"},
                                                          {1, "a.mp3"},
                                                          {2, "twice.mp3"},
                                                          {3, "nowhere.mp3"},
                                                          {5, "a.mp3"},
                                                          {6, "overridden by the next"},
                                                          {6, "kept.mp3"},
                                                          {99, "a.mp3"}})
    content.names.Add(record, name);
  content.folders.emplace_back().songs = {1, 2, 3, 4, 5, 6, 99, 1, -1};
  RelinkSongs(content, library);
  // The names are used for number 5, whose song is missing, and for 99, which is outside the
  // library. "twice.mp3" is ambiguous and "nowhere.mp3" is not in the library. Their numbers 2 and
  // 3 belong to other songs, so both entries get placeholder numbers.
  EXPECT_EQ(content.folders[0].songs,
            (std::vector<std::int32_t>{2, -1000000001, -1000000002, 4, 2, 6, 2, 2, -1}));
  EXPECT_EQ(AbsentNames(content, library).at(-1000000002), "nowhere.mp3");
  EXPECT_TRUE(library.IsHidden(-1000000001));
  // Relinking keeps placeholder numbers, until the library has a song with the name.
  RelinkSongs(content, library);
  EXPECT_EQ(content.folders[0].songs[2], -1000000002);
  AddSong("/m/", "nowhere.mp3");
  RelinkSongs(content, library);
  EXPECT_EQ(content.folders[0].songs[2], 7);
}

TEST_F(JukeboxFormat, NumbersInUnknownMembersMayHaveAnySize) {
  EXPECT_EQ(ProblemOf(File("", R"(,"later":9300000000000000000,"added":[1732200000000])")), "");
  EXPECT_EQ(ProblemOf(File(R"({"key":1,"text":"x","parent":0,"open":true,"songs":[],)"
                           R"("added":1732200000000,"size":9300000000000000000})")),
            "");
  EXPECT_EQ(ProblemOf(File(R"({"key":9300000000000000000})")), "a number is too large");
}

TEST_F(JukeboxFormat, DataAfterTheEndIsRefused) {
  const std::string whole = File(FolderText(1, 0));
  ASSERT_EQ(ProblemOf(whole), "");
  EXPECT_EQ(ProblemOf(whole + " \n\t"), "");
  EXPECT_NE(ProblemOf(whole + "x"), "");
  EXPECT_NE(ProblemOf(whole + whole), "");
  EXPECT_EQ(ProblemOf(whole + std::string("\0garbage", 8)),
            "at byte " + std::to_string(whole.size() + 1) + " it is damaged or cut off");
}

TEST_F(JukeboxFormat, SongsAreNamedByWholeNumbersOnly) {
  const auto named = [](const std::string& record) {
    return R"({"format":"Tallow jukebox","version":1,"folders":[],"names":{")" + record +
           R"(":"a.mp3"}})";
  };
  EXPECT_EQ(ProblemOf(named("17")), "");
  EXPECT_EQ(ProblemOf(named("-1")), "");
  EXPECT_EQ(ProblemOf(named("1.5")), "'1.5' is not a record number");
  for (const char* const other : {"", " 1", "1 ", "+1", "1e1", "0x1", "2147483648"})
    EXPECT_EQ(ProblemOf(named(other)), "'" + std::string(other) + "' is not a record number");
}

TEST_F(JukeboxFormat, TextsThatAreNoUtf8AreRefused) {
  EXPECT_NE(ProblemOf(File(FolderText(1, 0), ",\"x\":\"\xFF\"")), "");
  EXPECT_NE(ProblemOf(File(FolderText(1, 0), R"(,"x":"\uD800")")), "");
  // A byte order mark, which some editors write, is accepted.
  EXPECT_EQ(ProblemOf("\xEF\xBB\xBF" + File(FolderText(1, 0))), "");
}

TEST_F(JukeboxFormat, TheModernStyleWritesThePlacesOfSongsByFolder) {
  for (const char* const path : {"/m/", "/n/", "/m/"}) AddSong(path, "a.mp3");
  Folder& folder = tree.AddChild(nullptr, "All Songs", 0, 1);
  for (const std::int32_t song : {1, 2, 3}) folder.Items().emplace_back(song, 0);
  EXPECT_EQ(Encode().find("places"), std::string::npos);
  library.UseSwitches(kModernStyle);
  const std::string bytes = Encode();
  EXPECT_TRUE(bytes.ends_with("\"places\":{\n\"/m/\":[1,-1,3,-1],\n\"/n/\":[2,-1]}}\n")) << bytes;
  const JukeboxContent content = DecodeJukebox(bytes);
  EXPECT_EQ(content.places.Find(3)->folder, "/m/");
  EXPECT_EQ(content.places.Find(2)->folder, "/n/");
  EXPECT_EQ(content.places.Find(2)->size, -1);
  EXPECT_FALSE(content.places.Find(4));
}

TEST_F(JukeboxFormat, PlacesAreNumbersInPairs) {
  const auto problem = [](const std::string& places) {
    return ProblemOf(File(FolderText(1, 0), ",\"places\":" + places));
  };
  EXPECT_EQ(problem("{}"), "");
  EXPECT_EQ(problem(R"({"/m/":[1,5,2,-7],"":[]})"), "");
  EXPECT_EQ(problem(R"({"/m/":[1,5,2]})"), "song 2 has a place without a size");
  EXPECT_EQ(problem(R"({"/m/":[3000000000,5]})"), "the number 3000000000 is too large");
  EXPECT_NE(problem(R"({"/m/":["x"]})"), "");
  EXPECT_NE(problem(R"({"/m/":5})"), "");
  EXPECT_NE(problem("[]"), "");
  const JukeboxContent content =
      DecodeJukebox(File("", R"(,"places":{"/m/":[1,3000000000,2,-7]})"));
  EXPECT_EQ(content.places.Find(1)->size, 3000000000);
  EXPECT_EQ(content.places.Find(2)->size, -1);
}

}  // namespace
}  // namespace tallow
