// SPDX-License-Identifier: GPL-3.0-or-later
#include "player/reach_player.h"

#include <gtest/gtest.h>

#include "tests/recorded_link.h"
#include "tests/recorded_messages.h"

namespace tallow {
namespace {

using Texts = std::vector<std::string>;

class ReachPlayerTest : public testing::Test {
 protected:
  /// Reaches the player, and counts the calls while it starts.
  /// \param act called with the number of the call, from 1
  bool Reach(const std::function<bool(int)>& act) {
    return ReachPlayer(player, messages.Shower(), [&] { return act(++waited); });
  }

  RecordedLink link;
  RecordedMessages messages;
  std::string path = "/opt/player";
  WinAMP_Control player{link, [this] { return path; }, messages.Shower()};
  int waited = 0;
};

TEST_F(ReachPlayerTest, APlayerThatAnswersIsNotWaitedFor) {
  EXPECT_TRUE(Reach([](int) { return true; }));
  EXPECT_EQ(waited, 0);
  EXPECT_EQ(player.Window(), 7U);
  EXPECT_EQ(messages.Take(), Texts{});
}

TEST_F(ReachPlayerTest, AWindowThatAppearsLaterIsFound) {
  link.found = 0;
  link.start_timeout = std::chrono::hours(1);
  EXPECT_TRUE(Reach([&](int call) {
    if (call == 3) link.found = 8;
    return true;
  }));
  EXPECT_EQ(waited, 3);
  EXPECT_EQ(player.Window(), 8U);
  EXPECT_EQ(messages.Take(), Texts{});
}

TEST_F(ReachPlayerTest, WithoutACallbackThePlayerIsWaitedForAllTheSame) {
  link.start = PlayerStart::kSilent;
  link.start_timeout = 2 * kPlayerPollInterval;
  EXPECT_FALSE(ReachPlayer(player, messages.Shower()));
  EXPECT_EQ(messages.Take().size(), 1U);
}

TEST_F(ReachPlayerTest, AfterTheTimeAWindowThatIsMissingIsReported) {
  link.found = 0;
  EXPECT_FALSE(Reach([](int) { return true; }));
  EXPECT_EQ(messages.Take(), Texts{"Couldn't find WinAMP's Window"});
}

TEST_F(ReachPlayerTest, APlayerThatDoesNotAnswerIsReported) {
  link.start = PlayerStart::kSilent;
  EXPECT_FALSE(Reach([](int) { return true; }));
  EXPECT_EQ(messages.Take(), Texts{"The player /opt/player was started, but does not answer. End "
                                   "it, then play again."});
  EXPECT_EQ(player.Window(), 0U);
}

TEST_F(ReachPlayerTest, APlayerThatEndsAtOnceIsNamedWithTheLastLineThatItWrote) {
  link.start = PlayerStart::kEnded;
  link.last_line = "error while loading shared libraries: libmpv.so.2";
  EXPECT_FALSE(Reach([](int) { return true; }));
  EXPECT_EQ(messages.Take(), Texts{"The player /opt/player could not start. It wrote: error while "
                                   "loading shared libraries: libmpv.so.2"});
  link.last_line.clear();
  EXPECT_FALSE(Reach([](int) { return true; }));
  EXPECT_EQ(messages.Take(), Texts{"The player /opt/player could not start. It ended at once."});
  EXPECT_EQ(waited, 0);
}

TEST_F(ReachPlayerTest, TheCallerCanGiveUpWithoutAMessage) {
  link.found = 0;
  link.start_timeout = std::chrono::hours(1);
  EXPECT_FALSE(Reach([](int call) { return call < 2; }));
  EXPECT_EQ(waited, 2);
  EXPECT_EQ(messages.Take(), Texts{});
}

TEST_F(ReachPlayerTest, WithoutAProgramNothingIsWaitedFor) {
  path.clear();
  EXPECT_FALSE(Reach([](int) { return true; }));
  EXPECT_EQ(messages.Take(), Texts{"Couldn't start WinAMP"});
}

}  // namespace
}  // namespace tallow
