// SPDX-License-Identifier: GPL-3.0-or-later
#include "player/substitute/idle_shutdown.h"

#include <gtest/gtest.h>
#include <memory>

#include "player/player_socket_linux.h"
#include "player/substitute/event_loop_linux.h"
#include "player/substitute/request_server.h"
#include "player/substitute/song_player.h"
#include "tests/recorded_engine.h"
#include "tests/temp_folder.h"

namespace tallow {
namespace {

/// A player that checks whether it is idle as often as its event loop allows.
class IdleShutdownTest : public testing::Test {
 protected:
  /// Runs the loop for one event. Without a connection this is one check.
  void RunOnce() { loop->RunOnce(kMaxWait); }
  void Run(int checks) {
    for (int k = 0; k < checks; ++k) RunOnce();
  }

  static constexpr std::chrono::seconds kMaxWait{20};
  static constexpr int kTooFew = IdleShutdown::kMaxIdleChecks - 1;

  TempFolder folder;
  const std::string path = folder / "player";
  const std::unique_ptr<LinuxEventLoop> loop = std::make_unique<LinuxEventLoop>();
  RecordedEngine engine;
  SongPlayer player{*loop, engine};
  RequestServer server{
      loop->Get(), ListenAsPlayer(path),
      [](const PlayerRequestHead&, const std::string&, const RequestServer::Answer&,
         const RequestServer::TextAnswer&) { return false; }};
  int shut_downs = 0;
  IdleShutdown idle{*loop,
                    [this] { return player.Status() == kStopped && server.Connections() == 0; },
                    [this] { ++shut_downs; }, std::chrono::microseconds(1)};
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
