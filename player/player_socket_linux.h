// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "player/player_request.h"
#include "util/open_file_linux.h"

namespace tallow {

// Protocol of the messages of player_messages.h on a Unix stream socket, "player" in the user's
// runtime folder.
//
// A request is a header of 24 bytes, followed by its payload. All numbers are in the byte order of
// the machine, because only local processes can connect:
//
// | Offset | Bytes | Meaning |
// |---|---|---|
// | 0 | 4 | message |
// | 4 | 4 | bytes of the payload, 0 to 65,536 |
// | 8 | 8 | wParam, signed |
// | 16 | 8 | lParam, signed; for kWmCopyData the code of the record |
//
// Only kWmCopyData has a payload: the data of the record. Each request is answered by 8 bytes, a
// signed number, before the next request is read. If the list is full, a request to add a file is
// answered with kListIsFull and the list is unchanged. For the code kAsk the number is the length
// of the answer in bytes, at most kMaxTextAnswer, and the answer follows it. An invalid request or
// an unknown message closes the connection without an answer and without any effect.
//
// For example, the query for the track position (1024, 0, 105) on a little-endian machine, and the
// answer 61,999 ms:
//
//   00 04 00 00  00 00 00 00  00 00 00 00 00 00 00 00  69 00 00 00 00 00 00 00
//   2F F2 00 00 00 00 00 00
//
// The request {"do":"gain","mode":"off"} (code 0x54410002, 26 bytes), and the answer {}:
//
//   4A 00 00 00  1A 00 00 00  00 00 00 00 00 00 00 00  02 00 41 54 00 00 00 00
//   7B 22 64 6F ... 22 7D
//   02 00 00 00 00 00 00 00  7B 7D

/// Returns the path of the socket.
/// \param identifier of the application folder, see PlayerIdentifier; may be empty
/// \throws FileError see RuntimeFolder
std::string PlayerSocketPath(const std::string& identifier = {});

/// Connects to the player without blocking.
/// \returns a negative value, with errno set, when no player of this user listens on the socket,
/// or, with EAGAIN, when the socket's backlog is full
int ConnectToPlayer(const std::string& path) noexcept;

/// Creates the socket that a player listens on. Replaces the socket of a player that has ended.
/// \returns a negative value, with errno set, on failure
int ListenAsPlayer(const std::string& path) noexcept;

/// Whether the process at the other end of a connection runs as the same user.
bool PeerIsSameUser(int connection) noexcept;

/// Whether a player is running: it accepts a connection, or its backlog is full.
bool PlayerRuns(const std::string& path) noexcept;

/// Lock that keeps other processes from starting a player while this object exists.
class PlayerStartLock {
 public:
  /// Waits at most one second for other processes.
  /// \throws FileError when the lock is still held after that, or cannot be created
  explicit PlayerStartLock(const std::string& socket_path);

 private:
  OpenFile file_;
};

}  // namespace tallow
