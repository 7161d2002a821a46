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

/// Takes requests on the player's socket and gives their answers, see player_socket_linux.h.
///
/// A connection has one request under way at a time. One that breaks a rule is closed; the others do
/// not notice. Where there are too many connections, or no descriptor is left for a new one, the one that has been
/// quiet for longest makes room; whoever it was connects again.
class RequestServer {
 public:
  /// Gives the answer to a request; once, now or later.
  using Answer = std::function<void(PlayerAnswer)>;

  /// Carries a request out.
  /// \returns false when there is no such request; nothing has changed and nothing is answered then
  using Handler =
      std::function<bool(const PlayerRequestHead& head, const std::string& payload, Answer answer)>;

  /// \param listening a socket that listens; closed with the server
  RequestServer(sd_event* loop, int listening, Handler handler);
  RequestServer(const RequestServer&) = delete;
  RequestServer& operator=(const RequestServer&) = delete;

  /// Lets nobody connect any more. Connections that are there go on.
  void StopListening();

  /// Ends everything: nobody can connect, nobody is connected.
  void CloseAll() {
    StopListening();
    connections_.clear();
  }

  /// How many are connected.
  std::size_t Connections() const noexcept { return connections_.size(); }

 private:
  struct Connection {
    Connection(RequestServer& owner, std::uint64_t name, int descriptor) noexcept
        : server(owner), number(name), socket(descriptor) {}

    RequestServer& server;
    const std::uint64_t number;
    OpenFile socket;
    EventSource source;
    std::uint64_t last_heard = 0;  ///< when, in requests of all connections; 0 for never
    PlayerRequestHead head;
    std::size_t filled = 0;  ///< bytes of the request that have come
    std::string payload;
    bool busy = false;  ///< a request is being carried out
  };

  void Accept();
  int AcceptOne() const noexcept;
  bool MakeRoom();
  void AcceptLater();
  void DropTheQuietest();
  void Ready(Connection& connection);
  bool Receive(Connection& connection);
  void CarryOut(Connection& connection);
  void GiveAnswer(std::uint64_t number, PlayerAnswer answer);
  void Close(std::uint64_t number) { connections_.erase(number); }

  sd_event* loop_;
  Handler handler_;
  std::unique_ptr<OpenFile> listening_;
  EventSource accepting_;
  EventSource again_;                ///< the wait for descriptors
  std::unique_ptr<OpenFile> spare_;  ///< a descriptor for a connection when there is no other
  std::size_t max_connections_;
  /// By numbers that are never used again.
  std::map<std::uint64_t, std::unique_ptr<Connection>> connections_;
  std::uint64_t last_number_ = 0;
  std::uint64_t heard_ = 0;
};

}  // namespace tallow
