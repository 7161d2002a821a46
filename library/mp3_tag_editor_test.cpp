// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/mp3_tag_editor.h"

#include <gtest/gtest.h>

#include "tests/tagged_file.h"
#include "tests/temp_folder.h"
#include "util/errors.h"

namespace tallow {
namespace {

TEST(Mp3TagEditor, ReadsEveryField) {
  const TempFolder folder;
  MP3TagEditor editor;
  const std::string path = folder.File("a.mp3", Audio(1000) + Tag({.title = "Title",
                                                                   .artist = "Artist",
                                                                   .album = "Album",
                                                                   .year = "1985",
                                                                   .comment = "Comment",
                                                                   .genra = 17}));
  EXPECT_TRUE(editor.LoadMP3(path));
  EXPECT_EQ(editor.filename(), path);
  EXPECT_TRUE(editor.TagExists());
  EXPECT_EQ(editor.Title(), "Title");
  EXPECT_EQ(editor.Artist(), "Artist");
  EXPECT_EQ(editor.Album(), "Album");
  EXPECT_EQ(editor.Year(), "1985");
  EXPECT_EQ(editor.Comment(), "Comment");
  EXPECT_EQ(editor.Genra(), 17);
}

TEST(Mp3TagEditor, AFileOf128BytesIsNotRead) {
  const TempFolder folder;
  MP3TagEditor editor;
  EXPECT_TRUE(editor.LoadMP3(folder.File("a.mp3", Tag({.artist = "X", .genra = 3}))));
  EXPECT_FALSE(editor.TagExists());
  EXPECT_EQ(editor.Genra(), 255);
  EXPECT_EQ(editor.Artist(), "");
  EXPECT_TRUE(editor.LoadMP3(folder.File("b.mp3", "x" + Tag({.artist = "X", .genra = 3}))));
  EXPECT_TRUE(editor.TagExists());
}

TEST(Mp3TagEditor, NulsInAFieldAreKept) {
  const TempFolder folder;
  MP3TagEditor editor;
  editor.LoadMP3(folder.File(
      "a.mp3", Audio(200) + Tag({.artist = std::string("ABC\0\0", 5), .padding = '\0'})));
  EXPECT_EQ(editor.Artist(), std::string("ABC") + std::string(27, '\0'));
  EXPECT_NE(editor.Artist(), "ABC");
}

TEST(Mp3TagEditor, BlanksAtBothEndsAreRemoved) {
  const TempFolder folder;
  MP3TagEditor editor;
  editor.LoadMP3(folder.File("a.mp3", Audio(200) + Tag({.title = "  a b  "})));
  EXPECT_EQ(editor.Title(), "a b");
}

TEST(Mp3TagEditor, GenreByte255IsNone) {
  const TempFolder folder;
  MP3TagEditor editor;
  editor.LoadMP3(folder.File("a.mp3", Audio(200) + Tag({.genra = 0xFF})));
  EXPECT_EQ(editor.Genra(), 255);
  EXPECT_EQ(editor.GenraLookupByID(editor.Genra()), "None");
}

TEST(Mp3TagEditor, ALowerCaseMarkerIsNotATag) {
  const TempFolder folder;
  MP3TagEditor editor;
  std::string tag = Tag({.artist = "X"});
  tag.replace(0, 3, "tag");
  EXPECT_TRUE(editor.LoadMP3(folder.File("a.mp3", Audio(200) + tag)));
  EXPECT_FALSE(editor.TagExists());
}

TEST(Mp3TagEditor, NothingOfThePreviousFileSurvives) {
  const TempFolder folder;
  MP3TagEditor editor;
  editor.LoadMP3(folder.File("a.mp3", Audio(200) + Tag({.artist = "X", .genra = 1})));
  EXPECT_TRUE(editor.LoadMP3(folder.File("b.mp3", Audio(500))));
  EXPECT_FALSE(editor.TagExists());
  EXPECT_EQ(editor.Artist(), "");
  EXPECT_EQ(editor.Genra(), 255);
}

TEST(Mp3TagEditor, AFileThatCannotBeReadIsAFailedLoad) {
  const TempFolder folder;
  MP3TagEditor editor;
  EXPECT_FALSE(editor.LoadMP3(folder / "none.mp3"));
  EXPECT_FALSE(editor.LoadMP3(folder.path()));
  EXPECT_EQ(editor.Genra(), 255);
}

TEST(Mp3TagEditor, FieldsAreBlankBeforeTheFirstLoad) {
  const MP3TagEditor editor;
  EXPECT_EQ(editor.Title(), "");
  EXPECT_EQ(editor.Year(), "");
  EXPECT_FALSE(editor.TagExists());
}

TEST(Mp3TagEditor, ANewTagOverwritesTheLastByte) {
  const TempFolder folder;
  const std::string path = folder.File("a.mp3", Audio(1000));
  MP3TagEditor editor;
  editor.LoadMP3(path);
  editor.Artist("Someone");
  editor.Genra(9);
  EXPECT_TRUE(editor.SaveMP3());
  EXPECT_FALSE(editor.TagExists());
  const std::string bytes = ReadWholeFile(path).value();
  ASSERT_EQ(bytes.size(), 1127U);
  EXPECT_EQ(bytes.substr(0, 999), Audio(999));
  EXPECT_EQ(bytes[999], 'T');
  EXPECT_EQ(bytes.substr(999), Tag({.artist = "Someone", .genra = 9}));
}

TEST(Mp3TagEditor, SavingOverATagKeepsTheLength) {
  const TempFolder folder;
  const std::string path = folder.File("a.mp3", Audio(1000) + Tag({.artist = "Old", .genra = 2}));
  MP3TagEditor editor;
  editor.LoadMP3(path);
  editor.Artist("A name of more than thirty characters");
  editor.Year("2005x");
  editor.SaveMP3();
  const std::string bytes = ReadWholeFile(path).value();
  ASSERT_EQ(bytes.size(), 1128U);
  EXPECT_EQ(bytes.substr(1000),
            Tag({.artist = "A name of more than thirty cha", .year = "2005", .genra = 2}));
}

TEST(Mp3TagEditor, SavingToAFileThatDoesNotExistIsAnError) {
  const TempFolder folder;
  MP3TagEditor editor;
  editor.filename(folder / "none.mp3");
  EXPECT_THROW(editor.SaveMP3(), FileError);
  EXPECT_THROW(
      {
        editor.filename(folder / "no/folder.mp3");
        editor.SaveMP3();
      },
      FileError);
}

TEST(Mp3TagEditor, AssigningPadsAndTruncates) {
  MP3TagEditor editor;
  editor.Title("  x ");
  EXPECT_EQ(editor.Title(), "x");
  editor.Year("19999");
  EXPECT_EQ(editor.Year(), "1999");
  editor.Comment(std::string(40, 'c'));
  EXPECT_EQ(editor.Comment(), std::string(30, 'c'));
  editor.Album("\xC3\x89t\xC3\xA9");
  EXPECT_EQ(editor.Album(), "\xC3\x89t\xC3\xA9");
}

TEST(Mp3TagEditor, AFileTooShortForATagIsAnError) {
  const TempFolder folder;
  MP3TagEditor editor;
  editor.filename(folder.File("a.mp3", "short"));
  editor.TagExists(true);
  try {
    editor.SaveMP3();
    FAIL();
  } catch (const FileError& error) {
    EXPECT_EQ(error.reason(), "is too short to hold a tag");
  }
  EXPECT_TRUE(editor.TagExists());
}

TEST(Mp3TagEditor, AGenreOutsideOneByteIsAnErrorBeforeAnythingIsWritten) {
  const TempFolder folder;
  MP3TagEditor editor;
  editor.filename(folder.File("a.mp3", Audio(300)));
  for (const std::int16_t number : {std::int16_t{-1}, std::int16_t{256}}) {
    editor.Genra(number);
    EXPECT_THROW(editor.SaveMP3(), OverflowError);
  }
  EXPECT_EQ(ReadWholeFile(editor.filename()), Audio(300));
}

TEST(Mp3TagEditor, SavingToAMissingFileCreatesAnEmptyFile) {
  const TempFolder folder;
  MP3TagEditor editor;
  editor.filename(folder / "new.mp3");
  EXPECT_THROW(editor.SaveMP3(), FileError);
  EXPECT_EQ(ReadWholeFile(editor.filename()), "");
}

}  // namespace
}  // namespace tallow
