// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/scan_findings.h"

#include <gtest/gtest.h>

#include "tests/temp_folder.h"
#include "util/file_system.h"

namespace tallow {
namespace {

using Folders = ScanFindings::Folders;

const std::string kOne = kSep + "m" + kSep + "one" + kSep;
const std::string kTwo = kSep + "m" + kSep + "two" + kSep;
const std::string kTwofold = kSep + "m" + kSep + "twofold" + kSep;
const std::string kNone = kSep + "m" + kSep + "none" + kSep;

class ScanFindingsTest : public testing::Test {
 protected:
  std::string Path() const { return folder_ / "LeftOut.json"; }
  /// What the next run loads.
  Folders InTheNextRun() {
    ScanFindings next;
    Load(next);
    return next.ByFolder();
  }
  void Load(ScanFindings& findings) {
    findings.Load(Path(), problems_);
    findings.Settle(table_);
  }
  void AddSong(const std::string& folder, const std::string& name) {
    const std::int32_t row = table_.rows() + 1;
    table_.Resize(row);
    table_.SetCell(kFileLocation, row, folder);
    table_.SetCell(kFileName, row, name);
    table_.SetCell(kFileIsThere, row, "1");
  }

  TempFolder folder_;
  SongTable table_;
  std::vector<std::string> problems_;
};

TEST_F(ScanFindingsTest, AVisitReplacesTheFindingsOfThatFolderOnly) {
  ScanFindings findings;
  Load(findings);
  EXPECT_FALSE(FileExists(Path()));
  findings.Visit(kOne, 2);
  findings.LeaveOut({kOne + "a.mp3", "/m/a.mp3"});
  findings.Visit(kTwo, 3);
  findings.Visit(kNone, 0);
  findings.Settle(table_);
  const Folders both{{kOne, {2, {{"a.mp3", "/m/a.mp3"}}}}, {kTwo, {3, {}}}};
  EXPECT_EQ(findings.ByFolder(), both);
  EXPECT_EQ(findings.OtherFormats(), 5U);
  EXPECT_EQ(findings.LeftOut(), 1U);
  EXPECT_EQ(InTheNextRun(), both);
  findings.Visit(kOne, 1);
  EXPECT_EQ(findings.NotVisited(), std::vector<std::string>{kTwo});
  findings.Settle(table_);
  const Folders less{{kOne, {1, {}}}, {kTwo, {3, {}}}};
  EXPECT_EQ(findings.ByFolder(), less);
  EXPECT_EQ(InTheNextRun(), less);
  findings.Visit(kOne, 0);
  findings.Visit(kTwo, 0);
  findings.Settle(table_);
  EXPECT_EQ(findings.OtherFormats(), 0U);
  EXPECT_EQ(InTheNextRun(), Folders());
}

TEST_F(ScanFindingsTest, WhatWasSeenBeforeTheFileIsLoadedIsNewer) {
  ScanFindings first;
  Load(first);
  for (const std::string& path : {kOne, kTwo, kTwo + "below" + kSep, kTwofold})
    first.Visit(path, 1);
  first.LeaveOut({kOne + "a.mp3", "/m/a.mp3"});
  first.Settle(table_);
  ScanFindings second;
  second.Visit(kOne, 0);
  second.MarkGone(kTwo);
  second.LeaveOut({kTwofold + "b.mp3", "/m/b.mp3"});
  second.Settle(table_);
  EXPECT_TRUE(second.ByFolder().empty());
  Load(second);
  const Folders expected{{kTwofold, {1, {{"b.mp3", "/m/b.mp3"}}}}};
  EXPECT_EQ(second.ByFolder(), expected);
  EXPECT_EQ(InTheNextRun(), expected);
}

TEST_F(ScanFindingsTest, AFileThatHasBecomeASongIsNone) {
  ScanFindings findings;
  Load(findings);
  for (const char* const name : {"a.mp3", "b.mp3", "c.mp3"})
    findings.LeaveOut({kOne + name, "/m/song.mp3"});
  findings.Settle(table_);
  EXPECT_EQ(findings.LeftOut(), 3U);
  AddSong(kTwo, "a.mp3");
  AddSong(kOne, "b.mp3");
  AddSong(kOne, "d.mp3");
  AddSong(kOne, "c.mp3");
  findings.Settle(table_);
  EXPECT_EQ(findings.ByFolder(), (Folders{{kOne, {0, {{"a.mp3", "/m/song.mp3"}}}}}));
  EXPECT_EQ(InTheNextRun(), findings.ByFolder());
}

TEST_F(ScanFindingsTest, AnyNamesAreStored) {
  ScanFindings findings;
  Load(findings);
  const std::string folder = kOne + "\xff\"\n" + kSep;
  const std::string song = kOne + "\x01\xff.mp3";
  findings.LeaveOut({folder + "\xc3\xa9\xfe.mp3", song});
  findings.Settle(table_);
  EXPECT_EQ(InTheNextRun(), (Folders{{folder, {0, {{"\xc3\xa9\xfe.mp3", song}}}}}));
}

TEST_F(ScanFindingsTest, AFileIsWrittenOnlyWhenSomethingHasChanged) {
  ScanFindings first;
  Load(first);
  first.Visit(kOne, 1);
  first.Settle(table_);
  ScanFindings second;
  Load(second);
  RemoveFile(Path());
  second.Visit(kOne, 1);
  second.Settle(table_);
  EXPECT_FALSE(FileExists(Path()));
  second.Visit(kOne, 2);
  second.Settle(table_);
  EXPECT_TRUE(FileExists(Path()));
}

TEST_F(ScanFindingsTest, ADamagedFileIsRenamedAndMadeAgain) {
  const char* const kDamaged[] = {
      "",
      "x",
      R"({"format":"Tallow left out","version":2,"folders":[]})",
      R"({"format":"Other","version":1,"folders":[]})",
      R"({"format":"Tallow left out","version":1,"folders":[{"path":"/m/"}]})",
      R"({"format":"Tallow left out","version":1,"folders":[{"path":"/m/","otherFormats":1,)"
      R"("files":[["a"]]}]})",
  };
  for (const char* const bytes : kDamaged) {
    folder_.File("LeftOut.json", bytes);
    RemoveFile(Path() + ".bak");
    ScanFindings findings;
    problems_.clear();
    findings.Visit(kOne, 1);
    Load(findings);
    ASSERT_EQ(problems_.size(), 1U) << bytes;
    EXPECT_EQ(problems_[0], Path() + " is damaged. It was renamed to end in .bak.");
    EXPECT_TRUE(FileExists(Path() + ".bak"));
    const Folders expected{{kOne, {1, {}}}};
    EXPECT_EQ(findings.ByFolder(), expected);
    EXPECT_EQ(InTheNextRun(), expected);
  }
}

}  // namespace
}  // namespace tallow
