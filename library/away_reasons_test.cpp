// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/away_reasons.h"

#include <cstdint>
#include <gtest/gtest.h>
#include <vector>

namespace tallow {
namespace {

TEST(AwayReasons, AReasonIsStoredOnce) {
  AwayReasons reasons;
  EXPECT_TRUE(reasons.IsEmpty());
  const std::uint32_t drive = reasons.NumberOf(AwayKind::kDrive, "/usb/");
  const std::uint32_t folder = reasons.NumberOf(AwayKind::kFolder, "/m/", "Permission denied");
  EXPECT_NE(drive, 0U);
  EXPECT_NE(drive, folder);
  EXPECT_EQ(reasons.NumberOf(AwayKind::kDrive, "/usb/"), drive);
  EXPECT_EQ(reasons.NumberOf(AwayKind::kFolder, "/m/", "Permission denied"), folder);
  EXPECT_FALSE(reasons.IsEmpty());
}

TEST(AwayReasons, OnlyADriveIsADrive) {
  AwayReasons reasons;
  EXPECT_TRUE(reasons.IsDrive(reasons.NumberOf(AwayKind::kDrive, "/usb/")));
  EXPECT_FALSE(reasons.IsDrive(reasons.NumberOf(AwayKind::kFolder, "/m/", "Permission denied")));
  EXPECT_FALSE(reasons.IsDrive(0));
}

TEST(AwayReasons, SongsAreCountedByPlace) {
  AwayReasons reasons;
  SongTable table;
  table.Resize(4);
  EXPECT_TRUE(reasons.Places(table).empty());
  const std::uint32_t folder = reasons.NumberOf(AwayKind::kFolder, "/usb/", "Permission denied");
  const std::uint32_t drive = reasons.NumberOf(AwayKind::kDrive, "/net/");
  reasons.NumberOf(AwayKind::kDrive, "/back again/");
  table.Facts(1).away = folder;
  table.Facts(3).away = drive;
  table.Facts(4).away = folder;
  const std::vector<AwayPlace> places = reasons.Places(table);
  ASSERT_EQ(places.size(), 2U);
  EXPECT_EQ(places[0].place, "/net/");
  EXPECT_EQ(places[0].songs, 1);
  EXPECT_EQ(places[1].place, "/usb/");
  EXPECT_EQ(places[1].problem, "Permission denied");
  EXPECT_EQ(places[1].songs, 2);
  EXPECT_EQ(reasons.RowsAt("/usb/", table), (std::vector<std::int32_t>{1, 4}));
}

}  // namespace
}  // namespace tallow
