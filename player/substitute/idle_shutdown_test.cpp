// SPDX-License-Identifier: GPL-3.0-or-later
#include "player/substitute/idle_shutdown.h"

#include <gtest/gtest.h>

#include "player/player_socket_linux.h"
#include "player/substitute/request_server.h"
#include "player/substitute/song_player.h"
#include "tests/recorded_engine_linux.h"
#include "tests/temp_folder.h"

namespace tallow {
namespace {

/// A player that checks whether it is idle as often as its event loop allows.
class IdleShutdownTest : public testing::Test {
 protected:
  /// Runs the loop for one event. Without a connection this is one check.
  void RunOnce() { ASSERT_GT(sd_event_run(loop.get(), kMaxWait), 0); }
  void Run(int checks) {
    for (int k = 0; k < checks; ++k) RunOnce();
  }

  static constexpr std::uint64_t kMaxWait = 20'000'000;  ///< in µs
  static constexpr int kTooFew = IdleShutdown::kMaxIdleChecks - 1;

  TempFolder folder;
  const std::string path = folder / "player";
  EventLoop loop = NewLoop();
  RecordedEngine engine;
  SongPlayer player{loop.get(), engine};
  RequestServer server{loop.get(), ListenAsPlayer(path),
                       [](const PlayerRequestHead&, const std::string&,
                          const RequestServer::Answer&) { return false; }};
  int shut_downs = 0;
  IdleShutdown idle{loop.get(), player, server, [this] { ++shut_downs; }, 1};
};

TEST_F(IdleShutdownTest, AnIdlePlayerEndsAtTheLastCheck) {
  Run(kTooFew);
  EXPECT_EQ(shut_downs, 0);
  RunOnce();
  EXPECT_EQ(shut_downs, 1);
}

TEST_F(IdleShutdownTest, APlayerThatPlaysStaysAndTheCountStartsAgainAfterwards) {
  Run(kTooFew);
  player.Add("/a.mp3");
  player.Play();
  RunOnce();
  player.Stop();
  Run(kTooFew);
  EXPECT_EQ(shut_downs, 0);
  RunOnce();
  EXPECT_EQ(shut_downs, 1);
}

TEST_F(IdleShutdownTest, APlayerWithAConnectionStays) {
  {
    const OpenFile client(ConnectToPlayer(path));
    ASSERT_TRUE(client);
    while (server.Connections() == 0) RunOnce();
    Run(kTooFew + 1);
    EXPECT_EQ(shut_downs, 0);
  }
  while (server.Connections() > 0) RunOnce();
  Run(kTooFew);
  EXPECT_EQ(shut_downs, 0);
  RunOnce();
  EXPECT_EQ(shut_downs, 1);
}

}  // namespace
}  // namespace tallow
