// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/jukebox_documents.h"

#include <filesystem>
#include <memory>

#include "jukebox/initial_jukebox.h"
#include "jukebox/jukebox.h"
#include "tests/library_fixture.h"
#include "tests/tagged_file.h"
#include "util/text.h"

namespace tallow {
namespace {

class Documents : public LibraryTest, protected DocumentWindows {
 protected:
  Documents() {
    AddSong("/m/", "a.mp3");
    own = application / "Grouping/";
  }

  Jukebox* ActiveJukebox() override { return active; }
  std::span<Jukebox* const> OpenJukeboxes() override {
    open.clear();
    for (const auto& jukebox : jukeboxes) open.push_back(jukebox.get());
    return open;
  }
  bool IsOpen(std::string_view caption) override {
    for (const auto& jukebox : jukeboxes)
      if (EqualsIgnoringCase(jukebox->Caption(), caption)) return true;
    return false;
  }
  Jukebox& NewJukebox() override {
    jukeboxes.push_back(std::make_unique<Jukebox>());
    return *jukeboxes.back();
  }
  void ShowJukebox(Jukebox& jukebox) override { active = &jukebox; }
  void DiscardJukebox(Jukebox& jukebox) override {
    std::erase_if(jukeboxes, [&](const auto& held) { return held.get() == &jukebox; });
  }
  std::optional<std::string> AskForFileToOpen(const std::string& folder) override {
    EXPECT_EQ(folder, own);
    return chosen;
  }
  std::optional<std::string> AskForFileToSave(const std::string& folder) override {
    EXPECT_EQ(folder, own);
    ++asked_to_save;
    return chosen;
  }
  MessageAnswer Show(const Message& message) override {
    said.push_back(message.text);
    return answer;
  }
  void Notice(const std::vector<std::string>& lines) override { noticed = lines; }

  /// Makes a jukebox window with a folder, and makes the window active.
  Jukebox& Window(const std::string& caption) {
    Jukebox& jukebox = NewJukebox();
    jukebox.Caption(caption);
    jukebox.Nodes().AddChild(nullptr, "All Songs").Items().emplace_back(1, 2);
    jukebox.IsFormDirty(true);
    active = &jukebox;
    return jukebox;
  }
  Texts Recent() const {
    return {tallow.settings.LocOfLastSavedJukeBox(), tallow.settings.LocSecToLastSavedJukeBox(),
            tallow.settings.LocOfThirdToLastSaveJukeBox()};
  }
  Texts Said() { return std::exchange(said, {}); }

  JukeboxDocuments documents{tallow, *this};
  std::string own;
  std::vector<std::unique_ptr<Jukebox>> jukeboxes;
  std::vector<Jukebox*> open;
  Jukebox* active = nullptr;
  std::optional<std::string> chosen;
  int asked_to_save = 0;
  MessageAnswer answer = MessageAnswer::kYes;
  Texts said;
  Texts noticed;
};

TEST_F(Documents, SaveAsGivesTheJukeboxItsName) {
  Jukebox& jukebox = Window(std::string(kSampleCaption));
  chosen = own + "mix.JUK";
  EXPECT_TRUE(documents.SaveAs());
  EXPECT_TRUE(FileExists(own + "mix.juk"));
  EXPECT_EQ(jukebox.Caption(), "MIX");
  EXPECT_EQ(jukebox.FileLocation(), own);
  EXPECT_FALSE(jukebox.IsFormDirty());
  EXPECT_EQ(Recent(), (Texts{own + "mix.juk", "", ""}));
  clsINI saved;
  saved.GetandLoadIniInfo(tallow.settings_path);
  EXPECT_EQ(saved.LocOfLastSavedJukeBox(), own + "mix.juk");
  EXPECT_EQ(Said(), Texts{});
}

TEST_F(Documents, TheSavedNameHasOneExtension) {
  EXPECT_EQ(PathForChoice(own + "Mix"), own + "mix.juk");
  EXPECT_EQ(PathForChoice("  " + own + "Mix.Juk "), own + "mix.juk");
  EXPECT_EQ(PathForChoice(own + "a.juk.juk.juk"), own + "a.juk");
  EXPECT_EQ(PathForChoice(own + "a.txt"), own + "a.txt.juk");
  // Only the file name changes to lower case, not its folder.
  const std::string folder = kSep + "My.JUK.JUK" + kSep;
  EXPECT_EQ(PathForChoice(folder + "A"), folder + "a.juk");
}

TEST_F(Documents, ACancelledDialogSavesNothing) {
  Jukebox& jukebox = Window(std::string(kSampleCaption));
  EXPECT_FALSE(documents.SaveAs());
  EXPECT_TRUE(jukebox.IsFormDirty());
  EXPECT_EQ(Recent(), (Texts{"", "", ""}));
  EXPECT_EQ(Said(), Texts{});
}

TEST_F(Documents, TheSampleAndANewJukeboxAreSavedUnderANewName) {
  chosen = own + "one.juk";
  Window(std::string(kSampleCaption));
  EXPECT_TRUE(documents.SaveDatForm());
  chosen = own + "two.juk";
  Window("JukeBox2");
  EXPECT_TRUE(documents.SaveDatForm());
  EXPECT_EQ(asked_to_save, 2);
  EXPECT_EQ(Recent(), (Texts{own + "two.juk", own + "one.juk", ""}));
}

TEST_F(Documents, ASavedJukeboxIsSavedToItsFileAgain) {
  Jukebox& jukebox = Window(std::string(kSampleCaption));
  chosen = own + "mix";
  documents.SaveAs();
  const auto before = ReadWholeFile(own + "mix.juk");
  jukebox.Nodes().AddChild(nullptr, "more");
  jukebox.IsFormDirty(true);
  EXPECT_TRUE(documents.SaveDatForm());
  EXPECT_EQ(asked_to_save, 1);
  EXPECT_NE(ReadWholeFile(own + "mix.juk"), before);
  EXPECT_FALSE(jukebox.IsFormDirty());
  EXPECT_EQ(Recent(), (Texts{own + "mix.juk", "", ""}));
}

TEST_F(Documents, ReplacingAFileNeedsConfirmation) {
  for (const MessageAnswer no : {MessageAnswer::kNo, MessageAnswer::kCancel}) {
    application.File("Grouping/mix.juk", "old");
    Jukebox& jukebox = Window(std::string(kSampleCaption));
    chosen = own + "mix";
    answer = no;
    EXPECT_FALSE(documents.SaveAs());
    EXPECT_EQ(Said(), Texts{"File already exists, do you wish to replace this file?"});
    EXPECT_EQ(ReadWholeFile(own + "mix.juk"), "old");
    EXPECT_EQ(jukebox.Caption(), kSampleCaption);
  }
  answer = MessageAnswer::kYes;
  EXPECT_TRUE(documents.SaveAs());
  EXPECT_NE(ReadWholeFile(own + "mix.juk"), "old");
  EXPECT_EQ(ReadWholeFile(own + "mix.juk.bak"), "old");
}

TEST_F(Documents, TheNameOfAnotherOpenJukeboxIsRefused) {
  Window("MIX");
  Jukebox& jukebox = Window("OTHER");
  chosen = own + "Mix.juk";
  EXPECT_FALSE(documents.SaveAs());
  EXPECT_EQ(Said(),
            Texts{"MIX is already open.  Close the file then you can save this Juke box with "
                  "that file name."});
  EXPECT_FALSE(FileExists(own + "mix.juk"));
  // The jukebox may be saved under its own current name.
  chosen = own + "other.juk";
  EXPECT_TRUE(documents.SaveAs());
  EXPECT_EQ(jukebox.Caption(), "OTHER");
}

TEST_F(Documents, AFailedSaveIsReportedAndChangesNothing) {
  Jukebox& jukebox = Window(std::string(kSampleCaption));
  chosen = application / "gone/mix.juk";
  EXPECT_FALSE(documents.SaveAs());
  const Texts texts = Said();
  ASSERT_EQ(texts.size(), 1U);
  EXPECT_TRUE(texts[0].starts_with("The jukebox could not be saved. " + *chosen)) << texts[0];
  EXPECT_EQ(jukebox.Caption(), kSampleCaption);
  EXPECT_EQ(jukebox.FileLocation(), "");
  EXPECT_TRUE(jukebox.IsFormDirty());
  EXPECT_EQ(Recent(), (Texts{"", "", ""}));
}

TEST_F(Documents, WithoutAJukeboxNothingIsSaved) {
  EXPECT_FALSE(documents.SaveDatForm());
  EXPECT_FALSE(documents.SaveAs());
  EXPECT_EQ(asked_to_save, 0);
}

TEST_F(Documents, OpeningShowsTheJukeboxWithTheSongsOfTheLibrary) {
  Window(std::string(kSampleCaption));
  chosen = own + "mix";
  documents.SaveAs();
  jukeboxes.clear();
  AddSong("/m/", "b.mp3");
  chosen = own + "mix.juk";
  documents.Open();
  ASSERT_EQ(jukeboxes.size(), 1U);
  EXPECT_EQ(active, jukeboxes[0].get());
  EXPECT_EQ(active->Caption(), "MIX");
  EXPECT_EQ(active->FileLocation(), own);
  EXPECT_EQ(active->ColumnHeaders(), Texts{"Name    --        (click to sort)"});
  EXPECT_EQ(active->Nodes().Find("All Songs")->Items().size(), 2U);
  EXPECT_EQ(Recent(), (Texts{own + "mix.juk", "", ""}));
  documents.Open();
  EXPECT_EQ(Said(), Texts{"This file is already open"});
  EXPECT_EQ(jukeboxes.size(), 1U);
}

TEST_F(Documents, AFileThatCannotBeOpenedIsReportedAndLeavesNoWindow) {
  chosen = own + "gone.juk";
  documents.Open();
  EXPECT_EQ(Said(), Texts{"The jukebox could not be opened. " + *chosen + ": the file is gone."});
  EXPECT_TRUE(jukeboxes.empty());
  EXPECT_EQ(Recent(), (Texts{"", "", ""}));
  chosen.reset();
  documents.Open();
  EXPECT_EQ(Said(), Texts{});
}

TEST_F(Documents, RecentFilesAreOpenedByTheirNumber) {
  for (const char* const name : {"one", "two", "three"}) {
    Window(std::string(kSampleCaption));
    chosen = own + name;
    documents.SaveAs();
  }
  jukeboxes.clear();
  for (const int nothing : {0, 4, -1}) documents.OpenRecent(nothing);
  EXPECT_TRUE(jukeboxes.empty());
  documents.OpenRecent(3);
  EXPECT_EQ(active->Caption(), "ONE");
  EXPECT_EQ(Recent(), (Texts{own + "one.juk", own + "three.juk", own + "two.juk"}));
  documents.OpenRecent(1);
  EXPECT_EQ(Said(), Texts{"This file is already open"});
  RemoveFile(own + "two.juk");
  documents.OpenRecent(3);
  EXPECT_EQ(Said(),
            Texts{"The jukebox could not be opened. " + own + "two.juk: the file is gone."});
}

TEST_F(Documents, SavingTheSameFileTwiceKeepsTheOrder) {
  for (const char* const name : {"one", "two"}) {
    Window(std::string(kSampleCaption));
    chosen = own + name;
    documents.SaveAs();
  }
  documents.SaveDatForm();
  EXPECT_EQ(Recent(), (Texts{own + "two.juk", own + "one.juk", ""}));
}

TEST_F(Documents, AFileWithCapitalsIsSavedBackToItself) {
  Window(std::string(kSampleCaption));
  chosen = own + "mix";
  documents.SaveAs();
  jukeboxes.clear();
  application.File("Grouping/My Mix.juk", *ReadWholeFile(own + "mix.juk"));
  chosen = own + "My Mix.juk";
  documents.Open();
  EXPECT_EQ(active->Caption(), "MY MIX");
  active->Nodes().AddChild(nullptr, "more");
  EXPECT_TRUE(documents.SaveDatForm());
  EXPECT_NE(ReadWholeFile(own + "My Mix.juk"), ReadWholeFile(own + "mix.juk"));
  std::vector<std::string> names;
  for (const FileEntry& file : ListFolder(own, {.pattern = "*.juk"}).files)
    names.push_back(file.name);
  EXPECT_EQ(names.size(), 2U);
  // Saving another jukebox under this name asks whether to replace the file.
  Window(std::string(kSampleCaption)).Caption("X");
  jukeboxes.erase(jukeboxes.begin());
  chosen = own + "MY MIX";
  answer = MessageAnswer::kNo;
  EXPECT_FALSE(documents.SaveAs());
  EXPECT_EQ(Said(), Texts{"File already exists, do you wish to replace this file?"});
}

TEST_F(Documents, CaptionsAreTheNamesInUpperCase) {
  EXPECT_EQ(CaptionOfFile(own + "mix.juk"), "MIX");
  EXPECT_EQ(CaptionOfFile(own + " a.b .juk"), "A.B");
  EXPECT_EQ(CaptionOfFile("plain"), "PLAIN");
}

TEST_F(Documents, LongMenuCaptionsAreShortened) {
  const std::string prefix = "&1.  ";
  const std::string at_the_limit = prefix + std::string(40, 'x');
  EXPECT_EQ(ShortenedCaption(at_the_limit), at_the_limit);
  const std::string path = "/home/ann/Tallow/Grouping/abcdefghijk.juk";
  ASSERT_EQ(path.size(), 41U);
  const std::string shortened = ShortenedCaption(prefix + path);
  EXPECT_EQ(shortened, "&1.  /home/ann/Tallo .... /Grouping/abcdefghijk.juk");
  EXPECT_EQ(shortened.size(), 51U);
  // The limit counts characters, not bytes.
  std::string umlauts;
  for (int k = 0; k < 45; ++k) umlauts += "ü";
  EXPECT_EQ(ShortenedCaption(umlauts), umlauts);
  EXPECT_EQ(ShortenedCaption(umlauts + "ü").size(), 45U * 2 + 6);
}

TEST_F(Documents, AJukeboxIsSavedBackToTheFileItWasOpenedFrom) {
  // These names cannot be derived from the upper-case caption.
  for (const std::string name : {"\xCF\x83\xCF\x82.juk", "mix.old", " blank .juk", "x.juk.bak"}) {
    const std::string path = own + name;
    Jukebox made;
    made.Nodes().AddChild(nullptr, "All Songs");
    ASSERT_TRUE(made.Save(path, library));
    chosen = path;
    documents.Open();
    ASSERT_NE(active, nullptr) << name;
    active->Nodes().AddChild(nullptr, "changed");
    EXPECT_TRUE(documents.SaveDatForm());
    Jukebox saved;
    ASSERT_TRUE(saved.Load(path, library));
    EXPECT_NE(saved.Nodes().Find("changed"), nullptr) << name;
    RemoveFile(path);
    RemoveFile(path + ".bak");
    DiscardJukebox(*active);
  }
  EXPECT_TRUE(ListFolder(own, {.pattern = "*.juk"}).files.empty());
}

TEST_F(Documents, AFileIsNotOpenedTwiceUnderTwoNames) {
  Jukebox made;
  made.Nodes().AddChild(nullptr, "All Songs");
  for (const char* const name : {"a .juk", ".juk", "mixtape"}) {
    ASSERT_TRUE(made.Save(own + name, library));
    chosen = own + name;
    const std::size_t before = jukeboxes.size();
    documents.Open();
    documents.Open();
    EXPECT_EQ(jukeboxes.size(), before + 1) << name;
    EXPECT_NE(jukeboxes.back()->Caption(), "");
    EXPECT_EQ(said, Texts{"This file is already open"}) << name;
    said.clear();
  }
}

TEST_F(Documents, ANameWithoutItsRepeatedExtensionMustNotBeOpen) {
  Window("MIX").FileLocation(own);
  ASSERT_TRUE(documents.SaveDatForm());
  Window("OTHER");
  chosen = own + "mix.juk.juk";
  answer = MessageAnswer::kYes;
  EXPECT_FALSE(documents.SaveAs());
  EXPECT_EQ(said, Texts{"MIX is already open.  Close the file then you can save this Juke box with "
                        "that file name."});
}

TEST_F(Documents, AJukeboxWhoseSongsCannotAllBeFiledIsOpenAndTheProblemReported) {
  Jukebox made;
  made.Nodes().AddChild(nullptr, "All Songs");
  made.Nodes().AddChild(nullptr, "Year");
  ASSERT_TRUE(made.Save(own + "mix.juk", library));
  const std::string bad = music.File("bad.mp3", Audio(400) + Tag({.year = "198x"}));
  AddSong(music.path(), "bad.mp3");
  chosen = own + "mix.juk";
  documents.Open();
  ASSERT_EQ(noticed.size(), 1U);
  EXPECT_TRUE(noticed[0].starts_with(bad + ": the year in the tag, '198x', ")) << noticed[0];
  EXPECT_EQ(Said(), Texts{});
  ASSERT_EQ(jukeboxes.size(), 1U);
  EXPECT_EQ(active, jukeboxes[0].get());
  EXPECT_EQ(active->Nodes().Find("All Songs")->Items().size(), 2U);
  EXPECT_EQ(Recent(), (Texts{own + "mix.juk", "", ""}));
}

TEST_F(Documents, AJukeboxIsOpenThoughTheFilingFails) {
  Jukebox made;
  made.Nodes().AddChild(nullptr, "All Songs");
  ASSERT_TRUE(made.Save(own + "mix.juk", library));
  AddSong("/m/", "b.mp3");
  // The filing sorts the songs by their numbers.
  library.Mp3Info(kRecordNumber, 2, "two");
  chosen = own + "mix.juk";
  documents.Open();
  EXPECT_EQ(noticed, Texts{"The new songs could not be filed. 'two' is not a number"});
  EXPECT_EQ(Said(), Texts{});
  ASSERT_EQ(jukeboxes.size(), 1U);
  EXPECT_EQ(active, jukeboxes[0].get());
  EXPECT_EQ(Recent(), (Texts{own + "mix.juk", "", ""}));
}

#ifndef _WIN32
TEST_F(Documents, ALinkToAnOpenFileIsThatFile) {
  Jukebox& jukebox = Window("MIX");
  jukebox.FileLocation(own);
  ASSERT_TRUE(documents.SaveDatForm());
  std::filesystem::create_symlink(own + "mix.juk", own + "link.juk");
  chosen = own + "link.juk";
  documents.Open();
  EXPECT_EQ(Said(), Texts{"This file is already open"});
  Window("OTHER");
  EXPECT_FALSE(documents.SaveAs());
  EXPECT_EQ(Said(), Texts{"MIX is already open.  Close the file then you can save this Juke box "
                          "with that file name."});
  EXPECT_EQ(jukeboxes.size(), 2U);
}

TEST_F(Documents, SavingThroughALinkReplacesItsTarget) {
  Jukebox made;
  made.Nodes().AddChild(nullptr, "All Songs");
  ASSERT_TRUE(made.Save(own + "real.juk", library));
  std::filesystem::create_symlink(own + "real.juk", own + "link.juk");
  chosen = own + "link.juk";
  documents.Open();
  ASSERT_NE(active, nullptr);
  active->Nodes().AddChild(nullptr, "changed");
  EXPECT_TRUE(documents.SaveDatForm());
  EXPECT_TRUE(std::filesystem::is_symlink(own + "link.juk"));
  Jukebox saved;
  ASSERT_TRUE(saved.Load(own + "real.juk", library));
  EXPECT_NE(saved.Nodes().Find("changed"), nullptr);
}
#endif

TEST_F(Documents, APathWithALineBreakIsNotAddedToTheRecentFiles) {
  if (kSeparator == '\\') GTEST_SKIP() << "no path of this system has line breaks";
  Window("MIX");
  chosen = own + "a\nb.juk";
  EXPECT_TRUE(documents.SaveAs());
  EXPECT_EQ(tallow.settings.LocOfLastSavedJukeBox(), "");
  EXPECT_EQ(noticed,
            Texts{own + "a\nb.juk cannot be among the recent files: its path has a line break."});
}

TEST_F(Documents, SettingsThatCannotBeSavedAreReportedOnce) {
  Window("MIX").FileLocation(own);
  RemoveFile(tallow.settings_path);
  CreateFolder(tallow.settings_path);
  EXPECT_TRUE(documents.SaveDatForm());
  ASSERT_EQ(noticed.size(), 1U);
  EXPECT_TRUE(noticed[0].starts_with("The settings could not be saved. " + tallow.settings_path))
      << noticed[0];
  noticed.clear();
  EXPECT_TRUE(documents.SaveDatForm());
  EXPECT_EQ(noticed, Texts{});
}

TEST_F(Documents, TheOldFileIsKeptWhenTheNewOneCannotBeWritten) {
  Jukebox& jukebox = Window("MIX");
  jukebox.FileLocation(own);
  ASSERT_TRUE(documents.SaveDatForm());
  const auto before = ReadWholeFile(own + "mix.juk");
  jukebox.Nodes().AddChild(nullptr, "changed");
  // A folder is in the place of the new file.
  CreateFolders(own + "mix.juk.new" + kSep + "x");
  chosen = own + "mix.juk";
  answer = MessageAnswer::kYes;
  EXPECT_FALSE(documents.SaveAs());
  EXPECT_EQ(ReadWholeFile(own + "mix.juk"), before);
  ASSERT_EQ(said.size(), 2U);
  EXPECT_EQ(said[0], "File already exists, do you wish to replace this file?");
  EXPECT_TRUE(said[1].starts_with("The jukebox could not be saved. "));
}

TEST_F(Documents, ANameThatIsOnlyAnExtensionIsKeptWhole) {
  Window("MIX");
  chosen = own + ".juk";
  EXPECT_TRUE(documents.SaveAs());
  EXPECT_EQ(active->Caption(), ".JUK");
  EXPECT_EQ(CaptionOfFile(own + ".juk"), ".JUK");
  EXPECT_EQ(CaptionOfFile(own + " .juk"), ".JUK");
}

TEST_F(Documents, AFileOpenInAnotherWindowIsNotReplaced) {
  Jukebox& one = Window("MIX");
  one.FileLocation(own);
  ASSERT_TRUE(documents.SaveDatForm());
  const auto before = ReadWholeFile(own + "mix.juk");
  // Two windows may have the same caption, so MIX is not this jukebox's own file.
  Window("MIX").Nodes().AddChild(nullptr, "of the other");
  chosen = own + "mix.juk";
  answer = MessageAnswer::kYes;
  EXPECT_FALSE(documents.SaveAs());
  EXPECT_EQ(said, Texts{"MIX is already open.  Close the file then you can save this Juke box with "
                        "that file name."});
  EXPECT_EQ(ReadWholeFile(own + "mix.juk"), before);
}

TEST_F(Documents, AnInactiveJukeboxCanBeSaved) {
  Jukebox& one = Window("ONE");
  one.FileLocation(own);
  Window("TWO").FileLocation(own);
  EXPECT_TRUE(documents.Save(one));
  EXPECT_TRUE(FileExists(own + "one.juk"));
  EXPECT_FALSE(FileExists(own + "two.juk"));
  EXPECT_FALSE(one.IsFormDirty());
  EXPECT_TRUE(active->IsFormDirty());
}

TEST_F(Documents, AFileThatIsTooLargeLeavesNoWindow) {
  application.File("Grouping/huge.juk", "{");
  std::filesystem::resize_file(own + "huge.juk", std::uintmax_t{1} << 32U);
  chosen = own + "huge.juk";
  documents.Open();
  EXPECT_TRUE(jukeboxes.empty());
  EXPECT_EQ(said, Texts{"The jukebox could not be opened. " + own +
                        "huge.juk: the file is too large for a jukebox."});
  EXPECT_EQ(tallow.settings.LocOfLastSavedJukeBox(), "");
}

TEST_F(Documents, TheFileMayBeMissingOrReplacedWhenSavedAgain) {
  Jukebox& jukebox = Window("MIX");
  jukebox.FileLocation(own);
  ASSERT_TRUE(documents.SaveDatForm());
  RemoveFile(own + "mix.juk");
  jukebox.Nodes().AddChild(nullptr, "later");
  EXPECT_TRUE(documents.SaveDatForm());
  // Another program has written the file meanwhile; the backup keeps that version.
  application.File("Grouping/mix.juk", "of somebody else");
  EXPECT_TRUE(documents.SaveDatForm());
  EXPECT_EQ(ReadWholeFile(own + "mix.juk.bak"), "of somebody else");
  Jukebox saved;
  EXPECT_TRUE(saved.Load(own + "mix.juk", library));
}

/// Windows that save and load, as the control that shows a jukebox does.
class DocumentsOfWindows : public Documents {
 protected:
  bool SaveJukebox(Jukebox& jukebox, const std::string& path, const clsMain& songs) override {
    done.push_back("save " + path);
    return works && Documents::SaveJukebox(jukebox, path, songs);
  }
  bool LoadJukebox(Jukebox& jukebox, const std::string& path, const clsMain& songs,
                   const ResolveConfusedSongs& ask) override {
    done.push_back("load " + path);
    return works && Documents::LoadJukebox(jukebox, path, songs, ask);
  }

  bool works = true;
  Texts done;
};

TEST_F(DocumentsOfWindows, AreSavedAndLoadedByTheirWindows) {
  Jukebox& jukebox = Window("ONE");
  chosen = own + "mix";
  EXPECT_TRUE(documents.SaveAs());
  EXPECT_TRUE(documents.SaveDatForm());
  std::erase_if(jukeboxes, [&](const auto& held) { return held.get() == &jukebox; });
  documents.OpenUnlessOpen(own + "mix.juk");
  const std::string path = own + "mix.juk";
  EXPECT_EQ(done, (Texts{"save " + path, "save " + path, "load " + path}));
  EXPECT_EQ(active->Caption(), "MIX");
}

TEST_F(DocumentsOfWindows, KeepEverythingWhenAWindowCannotSave) {
  Jukebox& jukebox = Window("ONE");
  works = false;
  chosen = own + "mix";
  EXPECT_FALSE(documents.SaveAs());
  EXPECT_EQ(jukebox.Caption(), "ONE");
  EXPECT_TRUE(jukebox.IsFormDirty());
  EXPECT_EQ(Recent(), (Texts{"", "", ""}));
}

}  // namespace
}  // namespace tallow
