// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/search/place_states.h"

#include <filesystem>
#include <gtest/gtest.h>

#include "library/drive_timeouts.h"
#include "tests/temp_folder.h"
#include "tests/wait_until.h"

namespace tallow {
namespace {

class PlaceStatesTest : public testing::Test {
 protected:
  TempFolder folder;
  PlaceStates states{kMaxWait};
};

TEST_F(PlaceStatesTest, SayWhichPlacesAreThere) {
  const std::string here = folder.Folder("here");
  const std::string gone = folder / "gone/";
  EXPECT_EQ(states.IsThere(here), std::nullopt);
  states.Ask({here, gone});
  ASSERT_TRUE(WaitUntil([&] { return !states.IsWaiting(); }));
  EXPECT_EQ(states.IsThere(here), true);
  EXPECT_EQ(states.IsThere(gone), false);
}

TEST_F(PlaceStatesTest, AnAnswerIsKeptUntilTheNextOneOrUntilItIsCleared) {
  const std::string place = folder.Folder("place");
  states.Ask({place});
  ASSERT_TRUE(WaitUntil([&] { return !states.IsWaiting(); }));
  std::filesystem::remove(place.substr(0, place.size() - 1));
  EXPECT_EQ(states.IsThere(place), true);
  states.Ask({place});
  EXPECT_NE(states.IsThere(place), std::nullopt);
  ASSERT_TRUE(WaitUntil([&] { return !states.IsWaiting(); }));
  EXPECT_EQ(states.IsThere(place), false);
  folder.Folder("place");
  states.Clear();
  EXPECT_EQ(states.IsThere(place), std::nullopt);
  states.Ask({place});
  ASSERT_TRUE(WaitUntil([&] { return !states.IsWaiting(); }));
  EXPECT_EQ(states.IsThere(place), true);
}

}  // namespace
}  // namespace tallow
