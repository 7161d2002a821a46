// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/scan_report.h"

#include <gtest/gtest.h>

namespace tallow {
namespace {

TEST(ScanReport, ListsTheCountsAboveZero) {
  ScanReport report;
  EXPECT_EQ(TextOf(report, false), "");
  EXPECT_EQ(TextOf(report, true), "0 new songs");
  report.new_songs = 12;
  report.back = 3;
  report.missing = 2;
  report.left_out = 5;
  report.away = {{"/media/stick/", AwayKind::kDrive, "", 40}};
  EXPECT_EQ(TextOf(report, false),
            "12 new songs, 3 back with their ranks, 2 missing, 40 away (/media/stick/)");
  report.left_out_grew = true;
  EXPECT_EQ(TextOf(report, false),
            "12 new songs, 3 back with their ranks, 2 missing, 40 away (/media/stick/), 5 skipped "
            "because a song with that file name exists");
}

TEST(ScanReport, UsesTheSingularForOne) {
  ScanReport report;
  report.new_songs = 1;
  report.back = 1;
  EXPECT_EQ(TextOf(report, false), "1 new song, 1 back with its rank");
}

TEST(ScanReport, NamesAtMostThreePlaces) {
  ScanReport report;
  report.away = {{"/a/", AwayKind::kDrive, "", 1},
                 {"/b/", AwayKind::kDrive, "", 2},
                 {"/c/", AwayKind::kFolder, "x", 3}};
  EXPECT_EQ(TextOf(report, false), "6 away (/a/, /b/, /c/)");
  report.away.push_back({"/d/", AwayKind::kDrive, "", 4});
  EXPECT_EQ(TextOf(report, false), "10 away (/a/, /b/, /c/, . . .)");
}

TEST(ScanReport, FoldersThatCouldNotBeReadAreCounted) {
  ScanReport report;
  report.unread_folders = 1;
  EXPECT_EQ(TextOf(report, false), "1 folder could not be read");
  report.unread_folders = 12;
  EXPECT_EQ(TextOf(report, true), "0 new songs, 12 folders could not be read");
}

}  // namespace
}  // namespace tallow
