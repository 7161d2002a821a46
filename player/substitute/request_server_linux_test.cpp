// SPDX-License-Identifier: GPL-3.0-or-later
#include <cerrno>
#include <cstring>
#include <ctime>
#include <deque>
#include <filesystem>
#include <memory>
#include <poll.h>
#include <random>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include "player/substitute/event_loop_linux.h"
#include "player/substitute/request_server.h"
#include "tests/real_player_linux.h"
#include "tests/resident_memory_linux.h"
#include "tests/sound_linux.h"

namespace tallow {
namespace {

/// Sends arbitrary bytes to a player that is playing a song.
class RequestServerTest : public RealPlayer {
 protected:
  RequestServerTest() {
    song = folder / "a.mp3";
    MakeMp3(song, "60 sine 440", 2, "-b 64");
    StartPlayer();
    Play({song});
    EXPECT_EQ(player.GetTrackLength(), 60);
  }
  ~RequestServerTest() override {
    // Whatever a test has sent, the player must still be playing.
    EXPECT_EQ(player.GetWinampStatus(), "PLAYING");
    const auto position = [&] { return link->Send(link->Find(), kWmUser, 0, kTrackTime); };
    const std::int64_t before = position();
    EXPECT_TRUE(WaitUntil([&] { return position() > before; }));
  }

  using Socket = std::unique_ptr<OpenFile>;

  static Socket Connect() {
    return std::make_unique<OpenFile>(ConnectToPlayer(PlayerSocketPath()));
  }
  /// Connects, retrying while the socket's backlog is full.
  static Socket ConnectPatiently() {
    Socket socket;
    EXPECT_TRUE(WaitUntil([&] { return static_cast<bool>(*(socket = Connect())); }));
    return socket;
  }
  static bool Send(const Socket& socket, std::string_view bytes) {
    return send(socket->descriptor(), bytes.data(), bytes.size(), MSG_NOSIGNAL) ==
           static_cast<ssize_t>(bytes.size());
  }
  static std::string Bytes(const PlayerRequestHead& head) {
    return {reinterpret_cast<const char*>(&head), sizeof head};
  }
  /// Waits until the socket is readable.
  /// \returns the bytes received; empty when the connection was closed
  static std::string Receive(const Socket& socket) {
    pollfd ready{socket->descriptor(), POLLIN, 0};
    EXPECT_EQ(poll(&ready, 1, 20000), 1);
    char bytes[64];
    const ssize_t got = recv(socket->descriptor(), bytes, sizeof bytes, 0);
    return {bytes, static_cast<std::size_t>(std::max<ssize_t>(got, 0))};
  }
  /// Whether a request is answered instead of closing the connection.
  static bool IsAnswered(const std::string& request) {
    const Socket socket = ConnectPatiently();
    return Send(socket, request) && Receive(socket).size() == sizeof(PlayerAnswer);
  }
  std::size_t OpenDescriptors() {
    const auto folder_of = "/proc/" + std::to_string(LastPid()) + "/fd";
    return static_cast<std::size_t>(
        std::distance(std::filesystem::directory_iterator(folder_of), {}));
  }

  /// The player's resident memory, in KiB.
  long PlayerKib() { return ResidentKib(std::to_string(LastPid())); }

  std::string song;
};

TEST_F(RequestServerTest, AnUnknownMessageClosesTheConnectionAndChangesNothing) {
  const PlayerRequestHead unknown[] = {
      {0, 0, 0, 0},           {273, 0, 40002, 0},  {273, 0, 40045, 1}, {273, 0, -1, 0},
      {1024, 0, 0, 100},      {1024, 0, 0, -1},    {1024, 0, 1, 0},    {1024, 0, 1, 101},
      {1024, 0, 1, 104},      {1024, 0, 2, 105},   {1024, 0, -1, 106}, {1024, 0, 256, 122},
      {1024, 0, -1, 122},     {1024, 0, 255, 123}, {1024, 0, -1, 123}, {1025, 0, 0, 0},
      {4294967295U, 0, 0, 0},
  };
  for (const PlayerRequestHead& head : unknown)
    EXPECT_FALSE(IsAnswered(Bytes(head)))
        << head.message << " " << head.wParam << " " << head.lParam;
  EXPECT_TRUE(IsAnswered(Bytes({1024, 0, 0, 104})));
}

TEST_F(RequestServerTest, AnInvalidCopyDataClosesTheConnectionAndAddsNothing) {
  const auto copy = [](std::uint32_t size, const std::string& payload, std::int64_t code = 100) {
    return Bytes({kWmCopyData, size, 0, code}) + payload;
  };
  using namespace std::string_literals;
  EXPECT_FALSE(IsAnswered(copy(0, "")));
  EXPECT_FALSE(IsAnswered(copy(1, "\0"s)));
  EXPECT_FALSE(IsAnswered(copy(6, "/a.mp3")));
  EXPECT_FALSE(IsAnswered(copy(6, "a.mp3\0"s)));
  EXPECT_FALSE(IsAnswered(copy(8, "/a\0mp3\0\0"s)));
  EXPECT_FALSE(IsAnswered(copy(7, "/a.mp3\0"s, 101)));
  EXPECT_FALSE(IsAnswered(copy(65537, "/" + std::string(65535, 'a') + "\0"s)));
  EXPECT_FALSE(IsAnswered(copy(0xFFFFFFFF, "")));
  // Only kWmCopyData may have a payload.
  EXPECT_FALSE(IsAnswered(Bytes({1024, 1, 0, 104}) + "x"));
  // Nothing was added, so there is no next track.
  player.SendWinampCommand(kNextTrack);
  EXPECT_EQ(player.GetTrackLength(), 60);
}

TEST_F(RequestServerTest, APayloadOfMaximumSizeIsAccepted) {
  const std::string path = "/" + std::string(kMaxPayload - 2, 'a');
  const Socket socket = Connect();
  std::string bytes = Bytes({kWmCopyData, kMaxPayload, 0, 100}) + path;
  bytes.push_back('\0');
  std::string_view rest = bytes;
  ASSERT_TRUE(WaitUntil([&] {
    const ssize_t sent = send(socket->descriptor(), rest.data(), rest.size(), MSG_NOSIGNAL);
    if (sent > 0) rest.remove_prefix(static_cast<std::size_t>(sent));
    return rest.empty();
  }));
  EXPECT_EQ(Receive(socket).size(), sizeof(PlayerAnswer));
}

TEST_F(RequestServerTest, ARequestMayArriveInPieces) {
  const Socket socket = Connect();
  const std::string request = Bytes({kWmCopyData, 7, 0, 100}) + std::string("/x.mp3\0", 7);
  for (const char c : request) {
    ASSERT_TRUE(Send(socket, {&c, 1}));
    // When the player has answered another client, it has also read this byte.
    player.GetWinampStatus();
  }
  EXPECT_EQ(Receive(socket).size(), sizeof(PlayerAnswer));
}

TEST_F(RequestServerTest, SeveralRequestsAtOnceAreAnsweredOneByOne) {
  const Socket socket = Connect();
  std::string requests;
  for (int k = 0; k < 50; ++k) requests += Bytes({1024, 0, 0, 0});
  ASSERT_TRUE(Send(socket, requests));
  std::string answers;
  while (answers.size() < 50 * sizeof(PlayerAnswer)) {
    const std::string more = Receive(socket);
    ASSERT_FALSE(more.empty());
    answers += more;
  }
}

TEST_F(RequestServerTest, AClientThatNeverReadsItsAnswersIsDropped) {
  const Socket socket = Connect();
  const std::string request = Bytes({1024, 0, 0, 0});
  // Repeat until the buffer for the answers is full.
  EXPECT_TRUE(WaitUntil([&] {
    return send(socket->descriptor(), request.data(), request.size(), MSG_NOSIGNAL) < 0 &&
           errno != EAGAIN;
  }));
}

TEST_F(RequestServerTest, RequestsOfADisconnectedClientAreExecuted) {
  {
    const Socket socket = Connect();
    ASSERT_TRUE(Send(socket, Bytes({1024, 0, 0, 104}) + Bytes({1024, 0, 0, 0}) +
                                 Bytes({kWmCommand, 0, kPause, 0})));
  }
  EXPECT_TRUE(WaitForStatus("PAUSED"));
  player.SendWinampCommand(kPlay);
}

TEST_F(RequestServerTest, RandomBytesDoNoHarm) {
  const long before = PlayerKib();
  std::mt19937 random(1);
  for (int k = 0; k < 2000; ++k) {
    const Socket socket = Connect();
    std::string bytes(random() % 200, '\0');
    for (char& byte : bytes) byte = static_cast<char>(random());
    // Half of the requests have a valid beginning.
    if (k % 2 == 0) {
      PlayerRequestHead head{k % 4 == 0 ? kWmCopyData : kWmUser,
                             static_cast<std::uint32_t>(random() % 300),
                             static_cast<std::int64_t>(random() % 4), 100};
      bytes = Bytes(head) + bytes;
    }
    Send(socket, bytes);
  }
  EXPECT_EQ(player.GetWinampStatus(), "PLAYING");
  // Each request may have used 64 KiB for a moment.
  EXPECT_LT(PlayerKib() - before, 30'000 + kSanitizerKib);
}

TEST_F(RequestServerTest, ManyConnectionsAtOnceAreServedAndLeakNothing) {
  const std::size_t before = OpenDescriptors();
  {
    std::vector<Socket> sockets;
    for (int k = 0; k < 200; ++k) sockets.push_back(Connect());
    for (const Socket& socket : sockets) {
      ASSERT_TRUE(*socket);
      ASSERT_TRUE(Send(socket, Bytes({1024, 0, 0, 104})));
    }
    for (const Socket& socket : sockets) EXPECT_EQ(Receive(socket).size(), sizeof(PlayerAnswer));
    // Send half a request on each connection, then disconnect.
    for (const Socket& socket : sockets)
      Send(socket, Bytes({kWmCopyData, 60000, 0, 100}) + "/half");
  }
  EXPECT_TRUE(WaitUntil([&] { return OpenDescriptors() <= before; }))
      << OpenDescriptors() << " and before " << before;
}

TEST_F(RequestServerTest, AboveTheLimitTheConnectionIdleForLongestIsClosed) {
  std::vector<Socket> sockets;
  for (int k = 0; k < 1000; ++k) {
    sockets.push_back(Connect());
    if (!*sockets.back()) break;
    if (k % 50 == 0) player.GetWinampStatus();
  }
  EXPECT_EQ(player.GetWinampStatus(), "PLAYING");
  EXPECT_LT(OpenDescriptors(), 400U);
  ASSERT_TRUE(Send(sockets.back(), Bytes({1024, 0, 0, 104})));
  EXPECT_EQ(Receive(sockets.back()).size(), sizeof(PlayerAnswer));
}

TEST_F(RequestServerTest, AfterTenThousandConnectionsThePlayerAnswers) {
  std::deque<Socket> idle;
  for (int k = 0; k < 10'000; ++k) {
    idle.push_back(ConnectPatiently());
    if (idle.size() > 300) idle.pop_front();
  }
  // The last connections stay open.
  EXPECT_TRUE(IsAnswered(Bytes({1024, 0, 0, 104})));
  EXPECT_LT(OpenDescriptors(), 400U);
}

TEST_F(RequestServerTest, AfterTenThousandHostileMessagesThePlayerAnswersAndHasNotGrown) {
  const long before = PlayerKib();
  std::mt19937 random(2);
  std::deque<Socket> slow;
  for (int k = 0; k < 10'000; ++k) {
    std::string bytes(1 + random() % 200, '\0');
    for (char& byte : bytes) byte = static_cast<char>(random());
    const Socket socket = ConnectPatiently();
    switch (k % 4) {
      case 0:
        Send(socket, bytes);
        break;
      case 1:
        Send(socket, Bytes({kWmCopyData, static_cast<std::uint32_t>(random()), 0, 100}) + bytes);
        break;
      case 2:
        Send(socket, Bytes({kWmCommand, 0, kStop, 0}).substr(0, random() % 24));
        break;
      default:
        // Send single bytes, and never a complete request.
        slow.push_back(ConnectPatiently());
        for (const Socket& one : slow) Send(one, std::string(1, '\0'));
        if (slow.size() > 20) slow.pop_front();
    }
  }
  EXPECT_TRUE(IsAnswered(Bytes({1024, 0, 0, 104})));
  // Each connection may have used 64 KiB.
  EXPECT_LT(PlayerKib() - before, 30'000 + kSanitizerKib);
}

TEST_F(RequestServerTest, AClosedConnectionIsReopenedByTheNextCommand) {
  const std::unique_ptr<PlayerLink> quiet_link = SystemPlayerLink();
  WinAMP_Control quiet{*quiet_link, [this] { return path; }, messages.Shower()};
  ASSERT_TRUE(quiet.FindWinamp());
  std::vector<Socket> sockets;
  for (int k = 0; k < 300; ++k) {
    sockets.push_back(ConnectPatiently());
    ASSERT_TRUE(Send(sockets.back(), Bytes({1024, 0, 0, 104})));
    ASSERT_EQ(Receive(sockets.back()).size(), sizeof(PlayerAnswer));
  }
  const PlayerHandle before = quiet.Window();
  EXPECT_EQ(quiet.GetWinampStatus(), "PLAYING");
  quiet.SendWinampCommand(kPause);
  EXPECT_TRUE(WaitForStatus("PAUSED"));
  EXPECT_EQ(quiet.Window(), before);
  player.SendWinampCommand(kPlay);
}

/// A player with a low limit of open descriptors.
class FewDescriptors : public RealPlayer {
 protected:
  /// \param number maximum number of descriptors
  void StartWith(int number) {
    UseScript("echo $$ >> " + Quote(folder / "pids") + "\nulimit -n " + std::to_string(number) +
              "\nexec " + Quote(TALLOW_PLAYER) + " --silent \"$@\"\n");
    StartPlayer();
    EXPECT_EQ(player.GetWinampStatus(), "STOPPED");
  }
};

TEST_F(FewDescriptors, OtherClientsAreServedWhenIdleConnectionsUseAllDescriptors) {
  StartWith(64);
  MakeMp3(folder / "a.mp3", "60 sine 440", 2, "-b 64");
  std::vector<std::unique_ptr<OpenFile>> idle;
  for (int k = 0; k < 1000; ++k)
    idle.push_back(std::make_unique<OpenFile>(ConnectToPlayer(PlayerSocketPath())));
  const std::unique_ptr<PlayerLink> other_link = SystemPlayerLink();
  WinAMP_Control other{*other_link, [this] { return path; }, messages.Shower()};
  ASSERT_TRUE(other.FindWinamp());
  EXPECT_NE(other.GetWinampVersion(), "UNKNOWN");
  Play({folder / "a.mp3"});
  EXPECT_TRUE(WaitForStatus("PLAYING"));
  EXPECT_EQ(other.GetWinampStatus(), "PLAYING");
}

TEST_F(FewDescriptors, WithoutAFreeDescriptorTheConnectionIdleForLongestIsClosed) {
  StartWith(64);
  // Allow two more descriptors than are open now, which is enough for four connections.
  std::size_t open = 0;
  const auto fds = "/proc/" + std::to_string(LastPid()) + "/fd";
  for ([[maybe_unused]] const auto& entry : std::filesystem::directory_iterator(fds)) ++open;
  rlimit few{open + 2, open + 2};
  ASSERT_EQ(prlimit(LastPid(), RLIMIT_NOFILE, &few, nullptr), 0);
  std::vector<std::unique_ptr<OpenFile>> idle;
  for (int k = 0; k < 20; ++k) {
    idle.push_back(std::make_unique<OpenFile>(ConnectToPlayer(PlayerSocketPath())));
    const std::unique_ptr<PlayerLink> other_link = SystemPlayerLink();
    WinAMP_Control other{*other_link, [this] { return path; }, messages.Shower()};
    ASSERT_TRUE(other.FindWinamp());
    EXPECT_EQ(other.GetWinampStatus(), "STOPPED");
    EXPECT_NE(other.GetWinampVersion(), "UNKNOWN");
  }
  // The oldest connection was closed, too, and reconnects without a visible error.
  EXPECT_NE(player.GetWinampVersion(), "UNKNOWN");
}

/// Within its scope this process can open no further descriptor.
class NoFreeDescriptor {
 public:
  NoFreeDescriptor() {
    getrlimit(RLIMIT_NOFILE, &was_);
    const rlimit none{0, was_.rlim_max};
    EXPECT_EQ(setrlimit(RLIMIT_NOFILE, &none), 0);
  }
  NoFreeDescriptor(const NoFreeDescriptor&) = delete;
  NoFreeDescriptor& operator=(const NoFreeDescriptor&) = delete;
  ~NoFreeDescriptor() { setrlimit(RLIMIT_NOFILE, &was_); }

 private:
  rlimit was_{};
};

TEST(RequestServerAlone, WhenNoDescriptorBecomesFreeAConnectionIsAcceptedLater) {
  constexpr std::uint64_t kMaxWait = 20'000'000;  // µs
  constexpr PlayerAnswer kAnswer = 42;
  const TempFolder folder;
  const std::unique_ptr<LinuxEventLoop> loop = std::make_unique<LinuxEventLoop>();
  RequestServer server(loop->Get(), ListenAsPlayer(folder / "player"),
                       [](const PlayerRequestHead& head, const std::string&,
                          const RequestServer::Answer& answer, const RequestServer::TextAnswer&) {
                         answer(head.wParam);
                         return true;
                       });
  // The loop of the player always has a timer, so another one needs no descriptor.
  sd_event_source* timer = nullptr;
  ASSERT_GE(sd_event_add_time_relative(loop->Get(), &timer, CLOCK_MONOTONIC, 1000 * kMaxWait, 0,
                                       nullptr, nullptr),
            0);
  const EventSource owned(timer);

  const OpenFile first(ConnectToPlayer(folder / "player"));
  while (server.Connections() == 0) ASSERT_GT(sd_event_run(loop->Get(), kMaxWait), 0);
  const OpenFile second(ConnectToPlayer(folder / "player"));
  const PlayerRequestHead request{kWmUser, 0, kAnswer, kVersion};
  ASSERT_EQ(send(second.descriptor(), &request, sizeof request, MSG_NOSIGNAL),
            static_cast<ssize_t>(sizeof request));
  {
    const NoFreeDescriptor full;
    ASSERT_GT(sd_event_run(loop->Get(), kMaxWait), 0);
  }
  // The only connection was closed in vain.
  EXPECT_EQ(server.Connections(), 0U);
  char byte = 0;
  EXPECT_EQ(recv(first.descriptor(), &byte, 1, 0), 0);
  PlayerAnswer answer = 0;
  while (recv(second.descriptor(), &answer, sizeof answer, 0) < 0 && errno == EAGAIN)
    ASSERT_GT(sd_event_run(loop->Get(), kMaxWait), 0);
  EXPECT_EQ(answer, kAnswer);
  EXPECT_EQ(server.Connections(), 1U);
}

/// A server in this thread that answers a kAsk by as many bytes as its wParam says.
class TextServer : public testing::Test {
 protected:
  static constexpr std::uint64_t kMaxWait = 20'000'000;  // µs

  TextServer() {
    sd_event_source* source = nullptr;
    // The loop must never wait for ever.
    EXPECT_GE(sd_event_add_time_relative(loop->Get(), &source, CLOCK_MONOTONIC, kMaxWait, 0,
                                         nullptr, nullptr),
              0);
    timeout_.reset(source);
  }

  /// Runs the loop until bytes arrive at the client.
  std::string ReceiveSome() {
    static std::vector<char> bytes(1 << 20);
    ssize_t got = -1;
    while ((got = recv(client.descriptor(), bytes.data(), bytes.size(), 0)) < 0 && errno == EAGAIN)
      if (sd_event_run(loop->Get(), kMaxWait) <= 0) return {};
    return {bytes.data(), static_cast<std::size_t>(std::max<ssize_t>(got, 0))};
  }
  std::string Receive(std::size_t count) {
    std::string all;
    while (all.size() < count) {
      const std::string some = ReceiveSome();
      if (some.empty()) break;
      all += some;
    }
    return all;
  }
  void Send(const PlayerRequestHead& head) {
    ASSERT_EQ(send(client.descriptor(), &head, sizeof head, MSG_NOSIGNAL),
              static_cast<ssize_t>(sizeof head));
  }
  static std::string Bytes(PlayerAnswer number) {
    return {reinterpret_cast<const char*>(&number), sizeof number};
  }

  const TempFolder folder;
  const std::unique_ptr<LinuxEventLoop> loop = std::make_unique<LinuxEventLoop>();
  int executed = 0;
  RequestServer server{
      loop->Get(), ListenAsPlayer(folder / "player"),
      [this](const PlayerRequestHead& head, const std::string&, const RequestServer::Answer& answer,
             const RequestServer::TextAnswer& answer_text) {
        ++executed;
        if (head.message == kWmCopyData)
          answer_text(std::string(static_cast<std::size_t>(head.wParam), 'x'));
        else
          answer(head.wParam);
        return true;
      }};
  OpenFile client{ConnectToPlayer(folder / "player")};

 private:
  EventSource timeout_;
};

TEST_F(TextServer, ATextFollowsItsLength) {
  Send({kWmCopyData, 0, 3, kAsk});
  EXPECT_EQ(Receive(11), Bytes(3) + "xxx");
  Send({kWmCopyData, 0, 0, kAsk});
  EXPECT_EQ(Receive(8), Bytes(0));
}

TEST_F(TextServer, ATextLargerThanTheBufferIsSentCompletelyBeforeTheNextRequestIsRead) {
  constexpr std::size_t kLength = std::size_t{3} << 20;
  Send({kWmCopyData, 0, kLength, kAsk});
  Send({kWmUser, 0, 42, kVersion});
  // The loop goes on while the client does not read.
  while (executed == 0) ASSERT_GT(sd_event_run(loop->Get(), kMaxWait), 0);
  for (int k = 0; k < 3; ++k) sd_event_run(loop->Get(), 0);
  EXPECT_EQ(executed, 1);
  EXPECT_EQ(Receive(16 + kLength), Bytes(kLength) + std::string(kLength, 'x') + Bytes(42));
  EXPECT_EQ(executed, 2);
}

TEST_F(TextServer, AClientThatDisconnectsInsteadOfReadingATextIsForgotten) {
  Send({kWmCopyData, 0, 3 << 20, kAsk});
  Send({kWmUser, 0, 42, kVersion});
  while (executed == 0) ASSERT_GT(sd_event_run(loop->Get(), kMaxWait), 0);
  ASSERT_EQ(shutdown(client.descriptor(), SHUT_RDWR), 0);
  while (server.Connections() > 0) ASSERT_GT(sd_event_run(loop->Get(), kMaxWait), 0);
  // Its remaining requests were executed.
  EXPECT_EQ(executed, 2);
}

TEST_F(RequestServerTest, AFullListRefusesFurtherPaths) {
  const long before = PlayerKib();
  std::string data = "/" + std::string(kMaxPayload - 2, 'a');
  data.push_back('\0');
  int taken = 0;
  int refused = 0;
  for (int k = 0; k < 5000; ++k) {
    const bool is_taken = link->SendCopyData(player.Window(), kAddFile, data);
    ++(is_taken ? taken : refused);
  }
  EXPECT_EQ(static_cast<std::size_t>(taken), kMaxListBytes / (kMaxPayload + 39));
  EXPECT_EQ(refused, 5000 - taken);
  EXPECT_LT(PlayerKib() - before, 300'000 + kSanitizerKib);
  EXPECT_EQ(player.GetWinampStatus(), "PLAYING");
  // The emptied list accepts files again.
  player.ClearWinampPlaylist();
  EXPECT_TRUE(player.AddFileToWinamp(song));
  player.SendWinampCommand(kPlay);
  EXPECT_TRUE(WaitForStatus("PLAYING"));
}

TEST_F(RequestServerTest, AnotherUserIsRefused) {
  if (geteuid() != 0) GTEST_SKIP() << "Only root can be another user for a moment.";
  // Grant all permissions, so that only the check of the user can refuse the connection.
  for (const std::string& open : {runtime.path(), runtime / "tallow", PlayerSocketPath()})
    ASSERT_EQ(chmod(open.c_str(), 0777), 0);
  const pid_t child = fork();
  if (child == 0) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::strcpy(address.sun_path, (runtime.path() + "tallow/player").c_str());
    const int socket_of_nobody = socket(AF_UNIX, SOCK_STREAM, 0);
    const PlayerRequestHead stop{kWmCommand, 0, kStop, 0};
    char answer = 0;
    if (setuid(65534) != 0) _exit(1);
    if (connect(socket_of_nobody, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0)
      _exit(2);
    // The connection may be closed before or after the request is sent.
    send(socket_of_nobody, &stop, sizeof stop, MSG_NOSIGNAL);
    _exit(recv(socket_of_nobody, &answer, 1, 0) <= 0 ? 0 : 3);
  }
  int status = 0;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  EXPECT_EQ(WEXITSTATUS(status), 0);
  for (const std::string& open : {runtime.path(), runtime / "tallow"}) chmod(open.c_str(), 0700);
}

}  // namespace
}  // namespace tallow
