// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>

#include "player/player_socket_linux.h"
#include "player/substitute/event_source.h"

namespace tallow {

/// Receives requests on the player's socket and sends the answers, see player_socket_linux.h.
///
/// Each connection has at most one request in progress. An invalid request closes its connection
/// and does not affect the others. If there are too many connections, or no descriptor is free for
/// a new one, the connection idle for longest is closed. Its client has to connect again.
class RequestServer {
 public:
  /// Sends the answer to a request. Must be called exactly once, at once or later.
  using Answer = std::function<void(PlayerAnswer)>;

  /// Executes a request.
  /// \returns false for an invalid request; nothing has changed and no answer is sent in that case
  using Handler =
      std::function<bool(const PlayerRequestHead& head, const std::string& payload, Answer answer)>;

  /// \param listening a listening socket; the server takes ownership
  RequestServer(sd_event* loop, int listening, Handler handler);
  RequestServer(const RequestServer&) = delete;
  RequestServer& operator=(const RequestServer&) = delete;

  /// Stops accepting connections. Existing connections stay open.
  void StopListening();

  /// Stops accepting connections and closes all existing ones.
  void CloseAll() {
    StopListening();
    connections_.clear();
  }

  /// The number of open connections.
  std::size_t Connections() const noexcept { return connections_.size(); }

 private:
  struct Connection {
    Connection(RequestServer& owner, std::uint64_t name, int descriptor) noexcept
        : server(owner), number(name), socket(descriptor) {}

    RequestServer& server;
    const std::uint64_t number;
    OpenFile socket;
    EventSource source;
    /// Sequence number of its last request, counted over all connections; 0 for none.
    std::uint64_t last_heard = 0;
    PlayerRequestHead head;
    std::size_t filled = 0;  ///< bytes of the request received so far
    std::string payload;
    bool busy = false;  ///< a request is being executed
  };

  void Accept();
  int AcceptOne() const noexcept;
  bool MakeRoom();
  void AcceptLater();
  void CloseLongestIdle();
  void Ready(Connection& connection);
  bool Receive(Connection& connection);
  void Execute(Connection& connection);
  void GiveAnswer(std::uint64_t number, PlayerAnswer answer);
  void Close(std::uint64_t number) { connections_.erase(number); }

  sd_event* loop_;
  Handler handler_;
  std::unique_ptr<OpenFile> listening_;
  EventSource accepting_;
  EventSource again_;  ///< timer that waits for free descriptors
  /// Reserve descriptor, closed to accept a connection when none is free.
  std::unique_ptr<OpenFile> spare_;
  std::size_t max_connections_;
  /// Keyed by connection numbers that are never reused.
  std::map<std::uint64_t, std::unique_ptr<Connection>> connections_;
  std::uint64_t last_number_ = 0;
  std::uint64_t heard_ = 0;
};

}  // namespace tallow
