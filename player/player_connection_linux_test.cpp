// SPDX-License-Identifier: GPL-3.0-or-later
#include "player/player_connection_linux.h"

#include <array>
#include <cerrno>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <string>
#include <sys/socket.h>
#include <thread>

#include "player/player_messages.h"
#include "util/open_file_linux.h"

namespace tallow {
namespace {

/// A connection whose other end is held by the test.
class PlayerConnectionTest : public testing::Test {
 protected:
  explicit PlayerConnectionTest(std::array<int, 2> ends = Pair())
      : peer(ends[1]), own_(ends[0]), connection(ends[0], false) {}

  static std::array<int, 2> Pair() {
    std::array<int, 2> ends{-1, -1};
    EXPECT_EQ(socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()), 0);
    EXPECT_EQ(fcntl(ends[0], F_SETFL, O_NONBLOCK), 0);
    return ends;
  }

  /// Makes the send buffer so small that it cannot hold a large request.
  void ShrinkBuffer() const {
    const int bytes = 4096;
    ASSERT_EQ(setsockopt(own_, SOL_SOCKET, SO_SNDBUF, &bytes, sizeof bytes), 0);
  }
  /// Receives a number of bytes, and waits for them.
  std::string Receive(std::size_t count) const {
    std::string bytes(count, '\0');
    EXPECT_EQ(recv(peer.descriptor(), bytes.data(), count, MSG_WAITALL),
              static_cast<ssize_t>(count));
    return bytes;
  }
  void Answer(PlayerAnswer answer) const {
    EXPECT_EQ(send(peer.descriptor(), &answer, sizeof answer, MSG_NOSIGNAL),
              static_cast<ssize_t>(sizeof answer));
  }
  static std::string Bytes(const PlayerRequestHead& head) {
    return {reinterpret_cast<const char*>(&head), sizeof head};
  }

  const PlayerRequestHead add_large{kWmCopyData, kMaxPayload, 0, kAddFile};
  const std::string payload = std::string(kMaxPayload, 'a');
  OpenFile peer;

 private:
  int own_;

 protected:
  PlayerConnection connection;
};

TEST_F(PlayerConnectionTest, TheAnswerToARequestIsReturned) {
  const PlayerRequestHead ask{kWmUser, 0, kAskPosition, kTrackTime};
  std::string received;
  std::thread player([&] {
    received = Receive(sizeof ask);
    Answer(61'999);
  });
  EXPECT_EQ(connection.Exchange(ask, {}), 61'999);
  player.join();
  EXPECT_EQ(received, Bytes(ask));
  EXPECT_TRUE(connection.IsUsable());
}

TEST_F(PlayerConnectionTest, ARequestLargerThanTheSendBufferArrivesCompletely) {
  ShrinkBuffer();
  std::string received;
  std::thread player([&] {
    received = Receive(sizeof add_large + payload.size());
    Answer(kListIsFull);
  });
  EXPECT_EQ(connection.Exchange(add_large, payload), kListIsFull);
  player.join();
  EXPECT_EQ(received, Bytes(add_large) + payload);
}

TEST_F(PlayerConnectionTest, ARequestThatDoesNotFitIntoTheSendBufferEndsTheUseOfTheConnection) {
  ShrinkBuffer();
  EXPECT_EQ(connection.Exchange(add_large, payload), 0);
  EXPECT_FALSE(connection.IsUsable());
  // The player still runs, and has closed nothing.
  EXPECT_FALSE(connection.WasClosed());
  // Nothing follows a request that was sent in part.
  std::string part(2 * kMaxPayload, '\0');
  EXPECT_GT(recv(peer.descriptor(), part.data(), part.size(), 0), 0);
  while (recv(peer.descriptor(), part.data(), part.size(), MSG_DONTWAIT) > 0) {
  }
  EXPECT_EQ(connection.Exchange({kWmCommand, 0, kStop, 0}, {}), 0);
  EXPECT_LT(recv(peer.descriptor(), part.data(), part.size(), MSG_DONTWAIT), 0);
  EXPECT_EQ(errno, EAGAIN);
}

TEST_F(PlayerConnectionTest, APlayerThatStopsReceivingHasClosedTheConnection) {
  ASSERT_EQ(shutdown(peer.descriptor(), SHUT_RD), 0);
  EXPECT_TRUE(connection.IsUsable());
  EXPECT_EQ(connection.Exchange({kWmCommand, 0, kStop, 0}, {}), 0);
  EXPECT_FALSE(connection.IsUsable());
  EXPECT_TRUE(connection.WasClosed());
}

TEST_F(PlayerConnectionTest, APlayerThatStopsSendingHasClosedTheConnection) {
  ASSERT_EQ(shutdown(peer.descriptor(), SHUT_WR), 0);
  EXPECT_FALSE(connection.IsUsable());
  EXPECT_TRUE(connection.WasClosed());
  EXPECT_EQ(connection.Exchange({kWmCommand, 0, kStop, 0}, {}), 0);
}

TEST_F(PlayerConnectionTest, AnAnswerWithoutARequestEndsTheUseOfTheConnection) {
  Answer(0);
  EXPECT_FALSE(connection.IsUsable());
  EXPECT_FALSE(connection.WasClosed());
}

}  // namespace
}  // namespace tallow
