// SPDX-License-Identifier: GPL-3.0-or-later
#include "player/substitute/request_server.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <utility>

#include "player/player_messages.h"

namespace tallow {
namespace {

/// Bounds of the connection limit. More connections serve no purpose. When the limit is reached,
/// the connection idle for longest is closed, or one that has not sent a request yet.
constexpr std::size_t kMaxConnections = 256;
constexpr std::size_t kMinConnections = 4;

/// How long to wait, in µs, for descriptors used elsewhere in this process.
constexpr std::uint64_t kWaitForDescriptors = 100'000;

/// Uses at most a quarter of the descriptors, because songs and sound output need some, too.
std::size_t MaxConnections() noexcept {
  rlimit limit{};
  if (getrlimit(RLIMIT_NOFILE, &limit) != 0) return kMaxConnections;
  return std::clamp<std::size_t>(limit.rlim_cur / 4, kMinConnections, kMaxConnections);
}

std::unique_ptr<OpenFile> SpareDescriptor() {
  return std::make_unique<OpenFile>(open("/dev/null", O_RDONLY | O_CLOEXEC));
}

bool IsSound(const PlayerRequestHead& head) noexcept {
  return head.payload <= kMaxPayload && (head.payload == 0 || head.message == kWmCopyData);
}

}  // namespace

RequestServer::RequestServer(sd_event* loop, int listening, Handler handler)
    : loop_(loop),
      handler_(std::move(handler)),
      listening_(std::make_unique<OpenFile>(listening)),
      spare_(SpareDescriptor()),
      max_connections_(MaxConnections()) {
  sd_event_source* source = nullptr;
  Require(sd_event_add_io(
              loop, &source, listening, EPOLLIN,
              [](sd_event_source*, int, std::uint32_t, void* self) {
                static_cast<RequestServer*>(self)->Accept();
                return 0;
              },
              this),
          "the socket");
  accepting_.reset(source);
}

void RequestServer::StopListening() {
  again_.reset();
  accepting_.reset();
  listening_.reset();
}

int RequestServer::AcceptOne() const noexcept {
  return accept4(listening_->descriptor(), nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK);
}

bool RequestServer::MakeRoom() {
  if (!connections_.empty())
    CloseLongestIdle();
  else if (spare_)
    spare_.reset();
  else
    return false;
  return true;
}

void RequestServer::AcceptLater() {
  // The socket stays ready, so without this the event loop would spin.
  sd_event_source_set_enabled(accepting_.get(), SD_EVENT_OFF);
  sd_event_source* timer = nullptr;
  const int added = sd_event_add_time_relative(
      loop_, &timer, CLOCK_MONOTONIC, kWaitForDescriptors, 0,
      [](sd_event_source*, std::uint64_t, void* self) {
        auto& server = *static_cast<RequestServer*>(self);
        sd_event_source_set_enabled(server.accepting_.get(), SD_EVENT_ON);
        return 0;
      },
      this);
  if (added >= 0) again_.reset(timer);
}

void RequestServer::Accept() {
  if (!spare_ || !*spare_) spare_ = SpareDescriptor();
  if (!*spare_) spare_.reset();
  int descriptor = AcceptOne();
  while (descriptor < 0 && (errno == EMFILE || errno == ENFILE)) {
    if (!MakeRoom()) return AcceptLater();
    descriptor = AcceptOne();
  }
  if (descriptor < 0) return;
  auto connection = std::make_unique<Connection>(*this, ++last_number_, descriptor);
  if (!PeerIsSameUser(descriptor)) return;
  if (connections_.size() >= max_connections_) CloseLongestIdle();
  sd_event_source* source = nullptr;
  const int added = sd_event_add_io(
      loop_, &source, descriptor, EPOLLIN,
      [](sd_event_source*, int, std::uint32_t, void* data) {
        auto& of = *static_cast<Connection*>(data);
        of.server.Ready(of);
        return 0;
      },
      connection.get());
  if (added < 0) return;
  connection->source.reset(source);
  connections_.emplace(last_number_, std::move(connection));
}

void RequestServer::CloseLongestIdle() {
  // min_element returns the first minimum, so the oldest of the connections without a request.
  const auto quietest = std::min_element(
      connections_.begin(), connections_.end(),
      [](const auto& a, const auto& b) { return a.second->last_heard < b.second->last_heard; });
  connections_.erase(quietest);
}

void RequestServer::Ready(Connection& connection) {
  // While a request is being executed, the only event is the end of the connection.
  if (connection.busy || !Receive(connection)) return Close(connection.number);
  if (connection.filled == sizeof connection.head + connection.head.payload) Execute(connection);
}

bool RequestServer::Receive(Connection& connection) {
  constexpr std::size_t kHead = sizeof connection.head;
  if (connection.filled < kHead) {
    char* const place = reinterpret_cast<char*>(&connection.head) + connection.filled;
    const ssize_t got = recv(connection.socket.descriptor(), place, kHead - connection.filled, 0);
    if (got <= 0) return got < 0 && (errno == EAGAIN || errno == EINTR);
    connection.filled += static_cast<std::size_t>(got);
    if (connection.filled < kHead) return true;
    connection.payload.assign(IsSound(connection.head) ? connection.head.payload : 0, '\0');
    return IsSound(connection.head);
  }
  const std::size_t come = connection.filled - kHead;
  const ssize_t got = recv(connection.socket.descriptor(), connection.payload.data() + come,
                           connection.payload.size() - come, 0);
  if (got <= 0) return got < 0 && (errno == EAGAIN || errno == EINTR);
  connection.filled += static_cast<std::size_t>(got);
  return true;
}

void RequestServer::Execute(Connection& connection) {
  const std::uint64_t number = connection.number;
  connection.filled = 0;
  connection.busy = true;
  connection.last_heard = ++heard_;
  const PlayerRequestHead head = connection.head;
  const std::string payload = std::exchange(connection.payload, {});
  const bool understood =
      handler_(head, payload, [this, number](PlayerAnswer answer) { GiveAnswer(number, answer); });
  if (!understood) return Close(number);
  // The answer may have closed the connection, or may still be pending.
  const auto found = connections_.find(number);
  if (found != connections_.end() && found->second->busy)
    sd_event_source_set_io_events(found->second->source.get(), 0);
}

void RequestServer::GiveAnswer(std::uint64_t number, PlayerAnswer answer) {
  const auto found = connections_.find(number);
  if (found == connections_.end()) return;
  Connection& connection = *found->second;
  connection.busy = false;
  sd_event_source_set_io_events(connection.source.get(), EPOLLIN);
  const ssize_t sent = send(connection.socket.descriptor(), &answer, sizeof answer, MSG_NOSIGNAL);
  // The send buffer has space for an answer, unless the client keeps sending requests without
  // reading answers. If the client has disconnected without waiting, its remaining requests are
  // still executed.
  if (sent != sizeof answer && (sent >= 0 || errno == EAGAIN)) Close(number);
}

}  // namespace tallow
