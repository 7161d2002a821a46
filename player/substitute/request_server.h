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
/// a new one, the connection that has been idle longest is closed. Its client has to connect again.
class RequestServer {
 public:
  /// Sends the answer to a request.
  using Answer = std::function<void(PlayerAnswer)>;
  /// Sends the answer to a kAsk: its length, then the text. What the client does not receive at
  /// once is sent later, before its next request is read.
  using TextAnswer = std::function<void(std::string)>;

  /// Executes a request. Exactly one of the two callbacks must be called once, at once or later:
  /// `answer_text` for kAsk, `answer` for any other request.
  /// \returns false for an invalid request; nothing has changed and no answer is sent in that case
  using Handler = std::function<bool(const PlayerRequestHead& head, const std::string& payload,
                                     Answer answer, TextAnswer answer_text)>;

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
    Connection(RequestServer& owner, std::uint64_t own_number, int descriptor) noexcept
        : server(owner), number(own_number), socket(descriptor) {}

    bool IsHeadComplete() const noexcept { return head_received == sizeof head; }
    bool IsComplete() const noexcept {
      return IsHeadComplete() && payload_received == head.payload;
    }

    RequestServer& server;
    const std::uint64_t number;
    OpenFile socket;
    EventSource source;
    /// Sequence number of its last request, counted over all connections; 0 for none.
    std::uint64_t last_request = 0;
    PlayerRequestHead head;
    std::string payload;
    std::size_t head_received = 0;     ///< in bytes
    std::size_t payload_received = 0;  ///< in bytes
    bool busy = false;                 ///< a request is being executed, or its answer sent
    std::string unsent;                ///< the rest of an answer to kAsk
  };

  /// Accepts a connection that has arrived.
  void Accept();
  /// Accepts a connection; frees descriptors when none is left for it.
  /// \returns its descriptor, or a negative value when there is no connection
  int AcceptOrFreeDescriptors();
  int TryAccept() const noexcept;
  /// Frees a descriptor that the server uses.
  /// \returns false when there is none
  bool FreeDescriptor();
  /// Accepts nothing for a moment, until descriptors used elsewhere in this process are free.
  void RetryLater();
  void AddConnection(std::unique_ptr<Connection> connection);
  void CloseLongestIdle();
  void OnEvent(Connection& connection);
  /// Receives the next bytes of a request.
  /// \returns false when the connection must be closed
  static bool Receive(Connection& connection);
  void Execute(Connection& connection);
  /// Returns the connection of a request that is now answered; null when it was closed.
  Connection* Answered(std::uint64_t number);
  void SendAnswer(std::uint64_t number, PlayerAnswer answer);
  void SendText(std::uint64_t number, const std::string& text);
  /// Sends as much of the unsent text as the client receives now.
  void SendRest(Connection& connection);
  void Close(std::uint64_t number) { connections_.erase(number); }

  sd_event* loop_;
  Handler handler_;
  std::unique_ptr<OpenFile> listening_;
  EventSource accepting_;
  EventSource retry_timer_;  ///< waits for free descriptors
  /// Reserve descriptor, closed to accept a connection when none is free.
  std::unique_ptr<OpenFile> spare_;
  std::size_t max_connections_;
  /// Keyed by connection numbers that are never reused.
  std::map<std::uint64_t, std::unique_ptr<Connection>> connections_;
  std::uint64_t last_number_ = 0;
  std::uint64_t requests_ = 0;  ///< of all connections
};

}  // namespace tallow
