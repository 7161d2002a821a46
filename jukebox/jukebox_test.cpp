// SPDX-License-Identifier: GPL-3.0-or-later
#include "jukebox/jukebox.h"

#include <gtest/gtest.h>
#include <random>

#include "tests/library_fixture.h"
#include "tests/reference_quicksort.h"
#include "util/errors.h"

namespace tallow {
namespace {

class JukeboxTest : public LibraryTest {
 protected:
  JukeboxTest() {
    jukebox.AddColumnHeader(kNameHeader);
    jukebox.AddColumnHeader(kKeyHeader);
  }

  Folder& FolderOf(const std::string& text, const std::vector<int>& records) {
    Folder& folder = jukebox.Nodes().AddChild(nullptr, text);
    for (const int record : records)
      folder.Items().emplace_back(record, NumericValue(library.Mp3Info(5, record)));
    return folder;
  }

  Texts TextsOf(const Folder& folder) const {
    Texts texts;
    for (const SongEntry& entry : folder.Items()) texts.push_back(EntryText(entry, library));
    return texts;
  }

  void Show(Folder& folder) { jukebox.ShowFolder(folder, library, tallow.folder_changes); }

  Jukebox jukebox;
};

TEST_F(JukeboxTest, ShowingAFolderLabelsItAndUnlabelsTheOneBefore) {
  for (const char* name : {"a.mp3", "b.mp3"}) AddSong("/m/", name);
  Folder& one = FolderOf("one", {2, 1});
  Folder& two = FolderOf("two", {1});
  EXPECT_EQ(TextsOf(one), (Texts{"2", "1"}));
  Show(one);
  EXPECT_EQ(jukebox.selectednode(), &one);
  EXPECT_EQ(TextsOf(one), (Texts{"1.  b.mp3", "2.  a.mp3"}));
  Show(two);
  EXPECT_EQ(TextsOf(one), (Texts{"2", "1"}));
  EXPECT_EQ(TextsOf(two), (Texts{"1.  a.mp3"}));
  EXPECT_EQ(tallow.folder_changes, 2);
}

TEST_F(JukeboxTest, ShowingTheSameFolderAgainLabelsItAnew) {
  AddSong("/m/", "a.mp3");
  Folder& one = FolderOf("one", {1});
  Show(one);
  library.Mp3Info(5, 1, "7");
  Show(one);
  EXPECT_EQ(TextsOf(one), (Texts{"1.  a.mp3"}));
  EXPECT_EQ(one.Items()[0].Icon(), 7);
  EXPECT_EQ(tallow.folder_changes, 2);
}

TEST_F(JukeboxTest, ShowingAFolderDoesNotMarkTheJukeboxAsChanged) {
  AddSong("/m/", "a.mp3");
  Show(FolderOf("one", {1}));
  EXPECT_FALSE(jukebox.IsFormDirty());
}

TEST_F(JukeboxTest, ColumnClicksGoThroughFourOrders) {
  AddSong("/m/", "b.mp3", "1", "3");
  AddSong("/m/", "A.mp3", "1", "7");
  AddSong("/m/", "c.mp3", "1", "5");
  Folder& folder = FolderOf("one", {1, 2, 3});
  Show(folder);
  EXPECT_EQ(jukebox.ColumnHeaders(), (Texts{"Name    --        (click to sort)", "Key"}));
  EXPECT_EQ(jukebox.SortState(), 0);
  const Texts up{"1.  A.mp3", "2.  b.mp3", "3.  c.mp3"};
  jukebox.ColumnClick(library);
  EXPECT_EQ(TextsOf(folder), up);
  EXPECT_EQ(jukebox.ColumnHeaders()[0], "Name    --   ");
  EXPECT_EQ(jukebox.SortState(), 2);
  jukebox.ColumnClick(library);
  EXPECT_EQ(TextsOf(folder), (Texts{"1.  c.mp3", "2.  b.mp3", "3.  A.mp3"}));
  EXPECT_EQ(jukebox.ColumnHeaders()[0], "Name    --   ");
  jukebox.ColumnClick(library);
  EXPECT_EQ(TextsOf(folder), (Texts{"1.  A.mp3", "2.  c.mp3", "3.  b.mp3"}));
  EXPECT_EQ(jukebox.ColumnHeaders()[0], "By Rank -- best to worst");
  EXPECT_EQ(folder.Items()[0].Icon(), 7);
  jukebox.ColumnClick(library);
  EXPECT_EQ(TextsOf(folder), (Texts{"1.  b.mp3", "2.  c.mp3", "3.  A.mp3"}));
  EXPECT_EQ(jukebox.ColumnHeaders()[0], "By Rank -- worst to best");
  jukebox.ColumnClick(library);
  EXPECT_EQ(TextsOf(folder), up);
  EXPECT_EQ(jukebox.ColumnHeaders()[0], "Name    --   ");
}

TEST_F(JukeboxTest, ShowingAFolderRestartsTheOrders) {
  AddSong("/m/", "b.mp3");
  AddSong("/m/", "a.mp3");
  Folder& folder = FolderOf("one", {1, 2});
  Show(folder);
  jukebox.ColumnClick(library);
  jukebox.ColumnClick(library);
  Show(folder);
  EXPECT_EQ(jukebox.SortState(), 0);
  EXPECT_EQ(jukebox.ColumnHeaders()[0], kNameHeader);
  jukebox.ColumnClick(library);
  EXPECT_EQ(TextsOf(folder), (Texts{"1.  a.mp3", "2.  b.mp3"}));
}

TEST_F(JukeboxTest, AClickWithNoFolderOrAnEmptyOneDoesNoHarm) {
  jukebox.ColumnClick(library);
  EXPECT_EQ(jukebox.SortState(), 0);
  Show(FolderOf("empty", {}));
  jukebox.ColumnClick(library);
  EXPECT_EQ(jukebox.SortState(), 2);
}

TEST_F(JukeboxTest, ARankThatIsNoNumberEndsTheSortByRank) {
  AddSong("/m/", "a.mp3", "1", "x");
  AddSong("/m/", "b.mp3", "1", "3");
  Show(FolderOf("one", {1, 2}));
  jukebox.ColumnClick(library);
  jukebox.ColumnClick(library);
  EXPECT_THROW(jukebox.ColumnClick(library), TypeMismatchError);
}

TEST_F(JukeboxTest, EqualKeysAreOrderedAsByTheQuicksort) {
  std::mt19937 random(5);
  for (int k = 0; k < 60; ++k)
    AddSong("/m/", std::string(1, static_cast<char>('a' + random() % 3)) + ".mp3", "1",
            std::to_string(2 + random() % 6));
  std::vector<int> records;
  for (int k = 1; k <= 60; ++k) records.push_back(k);
  std::shuffle(records.begin(), records.end(), random);
  Folder& folder = FolderOf("one", records);
  Show(folder);
  ReferenceQuicksort::Rows rows;
  for (const int record : records) rows.push_back({"", std::to_string(record)});
  for (int click = 0; click < 4; ++click) {
    const int column = click < 2 ? 2 : 5;
    for (auto& row : rows) row[0] = library.Mp3Info(column, ConvertToInt32(row[1]));
    ReferenceQuicksort(rows, click == 0 || click == 3, click < 2, 1, 2).Sort(1, 60);
    jukebox.ColumnClick(library);
    for (std::size_t k = 0; k < rows.size(); ++k)
      ASSERT_EQ(std::to_string(folder.Items()[k].SubItem()), rows[k][1]) << click << " " << k;
  }
}

TEST_F(JukeboxTest, TheViewIsNotifiedOfChanges) {
  struct View : JukeboxView {
    void CaptionChanged() override { ++captions; }
    void ListChanged() override { ++lists; }
    void LabelsChanged() override { ++labels; }
    void HeadersChanged() override { ++headers; }
    int captions = 0, lists = 0, labels = 0, headers = 0;
  } view;
  AddSong("/m/", "a.mp3");
  Folder& folder = FolderOf("one", {1});
  jukebox.SetView(&view);
  jukebox.Caption("MIX");
  EXPECT_EQ(view.captions, 1);
  Show(folder);
  EXPECT_EQ(view.lists, 1);
  EXPECT_EQ(view.headers, 1);
  jukebox.ColumnClick(library);
  EXPECT_EQ(view.labels, 1);
  jukebox.SetView(nullptr);
}

class SavedJukebox : public LibraryTest {
 protected:
  SavedJukebox() {
    for (const char* const name : {"a.mp3", "b.mp3"}) AddSong("/m/", name);
    jukebox.AddColumnHeader(kNameHeader);
    jukebox.AddColumnHeader(kKeyHeader);
    Folder& one = jukebox.Nodes().AddChild(nullptr, "one");
    one.Items().emplace_back(2, 2);
    jukebox.Nodes().AddChild(&one, "inner").Items().emplace_back(1, 2);
  }

  Jukebox jukebox;
  TempFolder folder;
  const std::string path = folder / "mix.juk";
};

TEST_F(SavedJukebox, IsLoadedWithTheSameContent) {
  ASSERT_TRUE(jukebox.Save(path, library));
  Jukebox other;
  other.Nodes().AddChild(nullptr, "before");
  std::int64_t changes = 0;
  other.ShowFolder(other.Nodes().ChildAt(0), library, changes);
  ASSERT_TRUE(other.Load(path, library));
  EXPECT_EQ(other.Nodes().Count(), 2);
  EXPECT_EQ(other.Nodes().ChildAt(0).Text(), "one");
  EXPECT_EQ(other.Nodes().ChildAt(0).Child()->Items()[0].SubItem(), 1);
  EXPECT_EQ(other.ColumnHeaders(), jukebox.ColumnHeaders());
  EXPECT_EQ(other.selectednode(), nullptr);
  EXPECT_EQ(other.SortState(), 0);
}

TEST_F(SavedJukebox, ASaveKeepsTheOldFileAsBackupWhenItsContentDiffers) {
  ASSERT_TRUE(jukebox.Save(path, library));
  const auto first = ReadWholeFile(path);
  ASSERT_TRUE(jukebox.Save(path, library));
  EXPECT_FALSE(FileExists(path + ".bak"));
  jukebox.Nodes().AddChild(nullptr, "two");
  ASSERT_TRUE(jukebox.Save(path, library));
  EXPECT_EQ(ReadWholeFile(path + ".bak"), first);
  EXPECT_NE(ReadWholeFile(path), first);
}

TEST_F(SavedJukebox, AFailedSaveSaysWhyAndLeavesTheOldFile) {
  EXPECT_FALSE(jukebox.Save(folder / "gone/mix.juk", library));
  EXPECT_TRUE(jukebox.FileProblem().starts_with("The jukebox could not be saved. " +
                                                (folder / "gone/mix.juk")))
      << jukebox.FileProblem();
}

TEST_F(SavedJukebox, AFailedLoadSaysWhyAndChangesNothing) {
  EXPECT_FALSE(jukebox.Load(path, library));
  EXPECT_EQ(jukebox.FileProblem(),
            "The jukebox could not be opened. " + path + ": the file is gone.");
  folder.File("mix.juk", "no jukebox");
  EXPECT_FALSE(jukebox.Load(path, library));
  EXPECT_EQ(jukebox.FileProblem(),
            "The jukebox could not be opened. " + path + ": at byte 2 it is damaged or cut off.");
  folder.File("mix.juk.bak", "the one before");
  EXPECT_FALSE(jukebox.Load(path, library));
  EXPECT_EQ(jukebox.FileProblem(),
            "The jukebox could not be opened. " + path +
                ": at byte 2 it is damaged or cut off. The jukebox as it was saved before is in "
                "mix.juk.bak beside it; to open that file, rename it to end in .juk.");
  EXPECT_EQ(jukebox.Nodes().Count(), 2);
  EXPECT_EQ(jukebox.ColumnHeaders().size(), 2U);
}

TEST_F(SavedJukebox, AFileThatIsTooLargeIsNotRead) {
  folder.File("mix.juk", "{");
  // The file is sparse and uses no disk space.
  std::filesystem::resize_file(path, (std::uintmax_t{1} << 30U) + 1);
  EXPECT_FALSE(jukebox.Load(path, library));
  EXPECT_EQ(jukebox.FileProblem(),
            "The jukebox could not be opened. " + path + ": the file is too large for a jukebox.");
  EXPECT_EQ(jukebox.Nodes().Count(), 2);
}

TEST_F(SavedJukebox, TheBackupIsReplacedOnlyAfterTheNewFileIsWritten) {
  ASSERT_TRUE(jukebox.Save(path, library));
  folder.File("mix.juk.bak", "older");
  folder.Folder("mix.juk.new");  // blocks the temporary file
  jukebox.Nodes().AddChild(nullptr, "two");
  EXPECT_FALSE(jukebox.Save(path, library));
  EXPECT_EQ(ReadWholeFile(path + ".bak"), "older");
}

TEST_F(SavedJukebox, IfTheBackupFailsNothingIsReplaced) {
  ASSERT_TRUE(jukebox.Save(path, library));
  const auto first = ReadWholeFile(path);
  folder.Folder("mix.juk.bak");
  jukebox.Nodes().AddChild(nullptr, "two");
  EXPECT_FALSE(jukebox.Save(path, library));
  EXPECT_TRUE(jukebox.FileProblem().starts_with("The jukebox could not be saved. " + path + ".bak"))
      << jukebox.FileProblem();
  EXPECT_EQ(ReadWholeFile(path), first);
  EXPECT_FALSE(FileExists(path + ".new"));
}

}  // namespace
}  // namespace tallow
