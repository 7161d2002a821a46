// SPDX-License-Identifier: GPL-3.0-or-later
#include "player/substitute/request_server.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <span>
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

/// How long to wait, in µs, before another attempt to accept when no descriptor is free.
constexpr std::uint64_t kAcceptRetryInterval = 100'000;

/// Uses at most a quarter of the descriptors, because songs and sound output need some, too.
std::size_t MaxConnections() noexcept {
  rlimit limit{};
  if (getrlimit(RLIMIT_NOFILE, &limit) != 0) return kMaxConnections;
  return std::clamp<std::size_t>(limit.rlim_cur / 4, kMinConnections, kMaxConnections);
}

std::unique_ptr<OpenFile> OpenSpareDescriptor() {
  return std::make_unique<OpenFile>(open("/dev/null", O_RDONLY | O_CLOEXEC));
}

bool IsValid(const PlayerRequestHead& head) noexcept {
  return head.payload <= kMaxPayload && (head.payload == 0 || head.message == kWmCopyData);
}

/// Receives bytes behind those already received, without blocking.
/// \param buffer   all bytes that are expected
/// \param received number of bytes that have been received; updated
/// \returns false when the connection is closed or broken
bool ReceiveInto(std::span<char> buffer, std::size_t& received, int descriptor) noexcept {
  const std::span<char> rest = buffer.subspan(received);
  const ssize_t got = recv(descriptor, rest.data(), rest.size(), 0);
  if (got <= 0) return got < 0 && (errno == EAGAIN || errno == EINTR);
  received += static_cast<std::size_t>(got);
  return true;
}

}  // namespace

RequestServer::RequestServer(sd_event* loop, int listening, Handler handler)
    : loop_(loop),
      handler_(std::move(handler)),
      listening_(std::make_unique<OpenFile>(listening)),
      spare_(OpenSpareDescriptor()),
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
  retry_timer_.reset();
  accepting_.reset();
  listening_.reset();
}

int RequestServer::TryAccept() const noexcept {
  return accept4(listening_->descriptor(), nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK);
}

bool RequestServer::FreeDescriptor() {
  if (!connections_.empty())
    CloseLongestIdle();
  else if (spare_)
    spare_.reset();
  else
    return false;
  return true;
}

void RequestServer::RetryLater() {
  // The socket stays ready, so without this the event loop would spin.
  sd_event_source_set_enabled(accepting_.get(), SD_EVENT_OFF);
  sd_event_source* timer = nullptr;
  const int added = sd_event_add_time_relative(
      loop_, &timer, CLOCK_MONOTONIC, kAcceptRetryInterval, 0,
      [](sd_event_source*, std::uint64_t, void* self) {
        auto& server = *static_cast<RequestServer*>(self);
        sd_event_source_set_enabled(server.accepting_.get(), SD_EVENT_ON);
        return 0;
      },
      this);
  if (added >= 0) retry_timer_.reset(timer);
}

int RequestServer::AcceptOrFreeDescriptors() {
  if (!spare_ || !*spare_) spare_ = OpenSpareDescriptor();
  if (!*spare_) spare_.reset();
  int descriptor = TryAccept();
  while (descriptor < 0 && (errno == EMFILE || errno == ENFILE)) {
    if (!FreeDescriptor()) {
      RetryLater();
      return -1;
    }
    descriptor = TryAccept();
  }
  return descriptor;
}

void RequestServer::Accept() {
  const int descriptor = AcceptOrFreeDescriptors();
  if (descriptor < 0) return;
  auto connection = std::make_unique<Connection>(*this, ++last_number_, descriptor);
  if (!PeerIsSameUser(descriptor)) return;
  if (connections_.size() >= max_connections_) CloseLongestIdle();
  AddConnection(std::move(connection));
}

void RequestServer::AddConnection(std::unique_ptr<Connection> connection) {
  sd_event_source* source = nullptr;
  const int added = sd_event_add_io(
      loop_, &source, connection->socket.descriptor(), EPOLLIN,
      [](sd_event_source*, int, std::uint32_t, void* data) {
        auto& ready = *static_cast<Connection*>(data);
        ready.server.OnEvent(ready);
        return 0;
      },
      connection.get());
  if (added < 0) return;
  connection->source.reset(source);
  const std::uint64_t number = connection->number;
  connections_.emplace(number, std::move(connection));
}

void RequestServer::CloseLongestIdle() {
  // min_element returns the first minimum, so the oldest of the connections without a request.
  const auto longest_idle = std::min_element(
      connections_.begin(), connections_.end(),
      [](const auto& a, const auto& b) { return a.second->last_request < b.second->last_request; });
  connections_.erase(longest_idle);
}

void RequestServer::OnEvent(Connection& connection) {
  if (!connection.unsent.empty()) return SendRest(connection);
  // While a request is being executed, the only event is the end of the connection.
  if (connection.busy || !Receive(connection)) return Close(connection.number);
  if (connection.IsComplete()) Execute(connection);
}

bool RequestServer::Receive(Connection& connection) {
  const int descriptor = connection.socket.descriptor();
  if (connection.IsHeadComplete())
    return ReceiveInto(connection.payload, connection.payload_received, descriptor);
  const std::span<char> head(reinterpret_cast<char*>(&connection.head), sizeof connection.head);
  if (!ReceiveInto(head, connection.head_received, descriptor)) return false;
  if (!connection.IsHeadComplete()) return true;
  if (!IsValid(connection.head)) return false;
  connection.payload.assign(connection.head.payload, '\0');
  return true;
}

void RequestServer::Execute(Connection& connection) {
  const std::uint64_t number = connection.number;
  connection.head_received = connection.payload_received = 0;
  connection.busy = true;
  connection.last_request = ++requests_;
  const PlayerRequestHead head = connection.head;
  const std::string payload = std::exchange(connection.payload, {});
  const bool valid = handler_(
      head, payload, [this, number](PlayerAnswer answer) { SendAnswer(number, answer); },
      [this, number](const std::string& text) { SendText(number, text); });
  if (!valid) return Close(number);
  // The answer may have closed the connection, or may still be pending.
  const auto found = connections_.find(number);
  if (found != connections_.end() && found->second->busy && found->second->unsent.empty())
    sd_event_source_set_io_events(found->second->source.get(), 0);
}

RequestServer::Connection* RequestServer::Answered(std::uint64_t number) {
  const auto found = connections_.find(number);
  if (found == connections_.end()) return nullptr;
  Connection& connection = *found->second;
  connection.busy = false;
  sd_event_source_set_io_events(connection.source.get(), EPOLLIN);
  return &connection;
}

void RequestServer::SendAnswer(std::uint64_t number, PlayerAnswer answer) {
  const Connection* const connection = Answered(number);
  if (connection == nullptr) return;
  const ssize_t sent = send(connection->socket.descriptor(), &answer, sizeof answer, MSG_NOSIGNAL);
  // The send buffer has space for an answer, unless the client keeps sending requests without
  // reading answers. If the client has disconnected without waiting, its remaining requests are
  // still executed.
  if (sent != sizeof answer && (sent >= 0 || errno == EAGAIN)) Close(number);
}

void RequestServer::SendText(std::uint64_t number, const std::string& text) {
  Connection* const connection = Answered(number);
  if (connection == nullptr) return;
  const auto length = static_cast<PlayerAnswer>(text.size());
  connection->unsent.assign(reinterpret_cast<const char*>(&length), sizeof length);
  connection->unsent += text;
  SendRest(*connection);
}

void RequestServer::SendRest(Connection& connection) {
  std::string& unsent = connection.unsent;
  const ssize_t sent =
      send(connection.socket.descriptor(), unsent.data(), unsent.size(), MSG_NOSIGNAL);
  if (sent >= 0)
    unsent.erase(0, static_cast<std::size_t>(sent));
  else if (errno != EAGAIN && errno != EINTR)
    // The client has disconnected. Its remaining requests are still executed.
    unsent.clear();
  connection.busy = !unsent.empty();
  if (unsent.empty()) unsent.shrink_to_fit();
  sd_event_source_set_io_events(connection.source.get(), connection.busy ? EPOLLOUT : EPOLLIN);
}

}  // namespace tallow
