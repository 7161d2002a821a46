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
  void AnswerText(std::string_view text) const {
    Answer(static_cast<PlayerAnswer>(text.size()));
    for (std::string_view rest = text; !rest.empty();) {
      const ssize_t sent = send(peer.descriptor(), rest.data(), rest.size(), MSG_NOSIGNAL);
      ASSERT_GT(sent, 0);
      rest.remove_prefix(static_cast<std::size_t>(sent));
    }
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

TEST_F(PlayerConnectionTest, AKAskIsAnsweredByText) {
  const std::string request = R"({"do":"state"})";
  std::string received;
  for (const std::string& text : {std::string("{}"), std::string(), std::string(3 << 20, 'x')}) {
    const std::jthread player([&] {
      received = Receive(sizeof(PlayerRequestHead) + request.size());
      AnswerText(text);
    });
    EXPECT_EQ(connection.Ask(request), text);
  }
  EXPECT_EQ(received, Bytes({kWmCopyData, 14, 0, kAsk}) + request);
  // Numbers can follow texts.
  const std::jthread player([&] {
    Receive(sizeof(PlayerRequestHead));
    Answer(42);
  });
  EXPECT_EQ(connection.Exchange({kWmUser, 0, 0, kVersion}, {}), 42);
}

TEST_F(PlayerConnectionTest, AnAnswerOfAnInvalidLengthEndsTheUseOfTheConnection) {
  for (const PlayerAnswer length : {kMaxTextAnswer + 1, PlayerAnswer{-1}}) {
    const std::array<int, 2> ends = Pair();
    const OpenFile other(ends[1]);
    PlayerConnection invalid(ends[0], false);
    const std::jthread player([&] {
      char request[sizeof(PlayerRequestHead) + 14];
      EXPECT_EQ(recv(other.descriptor(), request, sizeof request, MSG_WAITALL),
                static_cast<ssize_t>(sizeof request));
      EXPECT_EQ(send(other.descriptor(), &length, sizeof length, 0), 8);
    });
    EXPECT_EQ(invalid.Ask(R"({"do":"state"})"), std::nullopt);
    EXPECT_FALSE(invalid.IsUsable());
    EXPECT_FALSE(invalid.WasClosed());
  }
}

TEST_F(PlayerConnectionTest, AnOverdueTextIsReadAndDropped) {
  const std::string state = R"({"do":"state"})";
  EXPECT_EQ(connection.Ask(state), std::nullopt);
  Receive(sizeof(PlayerRequestHead) + state.size());
  // Queries are not sent now; other requests are, without waiting.
  EXPECT_EQ(connection.Ask(state), std::nullopt);
  EXPECT_EQ(connection.Exchange({kWmUser, 0, 0, kListLength}, {}), 0);
  const std::string gain = R"({"do":"gain","mode":"off"})";
  EXPECT_EQ(connection.Ask(gain), std::nullopt);
  EXPECT_EQ(Receive(sizeof(PlayerRequestHead) + gain.size()),
            Bytes({kWmCopyData, 26, 0, kAsk}) + gain);
  // The first overdue answer arrives in two parts.
  Answer(5);
  ASSERT_EQ(send(peer.descriptor(), "ab", 2, 0), 2);
  EXPECT_EQ(connection.Ask(state), std::nullopt);
  ASSERT_EQ(send(peer.descriptor(), "cde", 3, 0), 3);
  EXPECT_EQ(connection.Ask(state), std::nullopt);
  AnswerText("{}");
  const std::jthread player([&] {
    Receive(sizeof(PlayerRequestHead) + state.size());
    AnswerText("[1]");
  });
  EXPECT_EQ(connection.Ask(state), "[1]");
}

TEST_F(PlayerConnectionTest, AStartingPlayerIsAskedOnceAndNotWaitedFor) {
  const std::array<int, 2> ends = Pair();
  const OpenFile other(ends[1]);
  PlayerConnection starting(ends[0], true);
  for (int k = 0; k < 3; ++k) EXPECT_FALSE(starting.HasStarted());
  char request[2 * sizeof(PlayerRequestHead)];
  EXPECT_EQ(recv(other.descriptor(), request, sizeof request, MSG_DONTWAIT),
            static_cast<ssize_t>(sizeof(PlayerRequestHead)));
  const PlayerAnswer version = 0x1001;
  ASSERT_EQ(send(other.descriptor(), &version, sizeof version, 0), 8);
  EXPECT_TRUE(starting.HasStarted());
  // A player that is not starting is not asked.
  EXPECT_TRUE(connection.HasStarted());
  EXPECT_LT(recv(peer.descriptor(), request, 1, MSG_DONTWAIT), 0);
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
