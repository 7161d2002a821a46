// SPDX-License-Identifier: GPL-3.0-or-later
// Places with music on disks that do not answer.
#include "app/search/music_choice.h"
#include "app/search/music_places.h"
#include "app/search/place_states.h"
#include "tests/dead_folder_linux.h"
#include "tests/library_fixture.h"
#include "tests/recorded_progress.h"
#include "tests/wait_until.h"

namespace tallow {
namespace {

class SlowPlaces : public LibraryTest {
 protected:
  SlowPlaces() { tallow.preferences.Load(PreferencesPath(application.path())); }

  const std::string share = music.Folder("share");
  const std::string here = music.Folder("here");
};

TEST_F(SlowPlaces, AQuestionThatIsOpenIsNotAskedAgain) {
  const DeadFolder dead(share);
  PlaceStates states{std::chrono::milliseconds(0)};
  states.Ask({share, here});
  ASSERT_TRUE(WaitUntil([&] { return dead.Asked() == 1 && states.IsThere(here) == true; }));
  for (int k = 0; k < 3; ++k) {
    states.Clear();
    // Other answers are forgotten.
    EXPECT_EQ(states.IsThere(here), std::nullopt);
    EXPECT_EQ(states.IsThere(share), false);
    states.Ask({share, here});
    ASSERT_TRUE(WaitUntil([&] { return states.IsThere(here) == true; }));
  }
  EXPECT_EQ(dead.Asked(), 1);
}

TEST_F(SlowPlaces, AFolderThatDoesNotAnswerIsGivenUpWhenTheUserCancels) {
  const auto drives = std::make_shared<TestDrives>(TestDrives({}));
  const DeadFolder dead(share);
  int asked = 0;
  EXPECT_EQ(AddMusicFolder(tallow, drives, share, [&] { return dead.Asked() == 0 || ++asked < 3; }),
            share + " is on a drive that does not answer, and was not added.");
  EXPECT_EQ(asked, 3);
  EXPECT_TRUE(MusicChoice(tallow.preferences).IsDefault());
  EXPECT_EQ(AddMusicFolder(tallow, drives, here), "");
  EXPECT_EQ(MusicChoice(tallow.preferences).Folders(), Texts{here});
}

TEST_F(SlowPlaces, AFolderThatDoesNotAnswerIsGivenUpAfterAWhile) {
  const DeadFolder dead(share);
  EXPECT_EQ(AddMusicFolder(
                tallow, std::make_shared<TestDrives>(TestDrives({})), share, [] { return true; },
                std::chrono::milliseconds(1)),
            share + " is on a drive that does not answer, and was not added.");
}

TEST_F(SlowPlaces, AFolderThatAnswersLateIsAdded) {
  auto dead = std::make_unique<DeadFolder>(share);
  EXPECT_EQ(AddMusicFolder(tallow, std::make_shared<TestDrives>(TestDrives({})), share,
                           [&] {
                             if (dead != nullptr && dead->Asked() > 0) dead.reset();
                             return true;
                           }),
            "");
  EXPECT_EQ(MusicChoice(tallow.preferences).Folders(), Texts{share});
}

}  // namespace
}  // namespace tallow
