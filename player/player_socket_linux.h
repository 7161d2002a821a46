// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "util/open_file_linux.h"

namespace tallow {

// The messages of player_messages.h on a Unix stream socket, "player" in the user's runtime folder.
//
// A request is a head of 24 bytes and, after it, its payload. All numbers are in the machine's own byte
// order, for nobody else can connect:
//
// | Offset | Bytes | Meaning |
// |---|---|---|
// | 0 | 4 | message |
// | 4 | 4 | bytes of the payload, 0 to 65,536 |
// | 8 | 8 | wParam, signed |
// | 16 | 8 | lParam, signed; of kWmCopyData the record's code |
//
// Only kWmCopyData has a payload: the record's data. Every request gets an answer of 8 bytes, a signed
// number, before the next one is looked at. A file that is added to a full list is answered with kListIsFull, and
// the list stays as it is. What is no such request, or asks for something the player
// does not know, ends the connection without an answer and changes nothing.
//
// For example "where is the track" (1024, 0, 105) on a little-endian machine, and the answer 61,999 ms:
//
//   00 04 00 00  00 00 00 00  00 00 00 00 00 00 00 00  69 00 00 00 00 00 00 00
//   2F F2 00 00 00 00 00 00

struct PlayerRequestHead {
  std::uint32_t message = 0;
  std::uint32_t payload = 0;  ///< bytes
  std::int64_t wParam = 0;
  std::int64_t lParam = 0;
};
static_assert(sizeof(PlayerRequestHead) == 24);

using PlayerAnswer = std::int64_t;

inline constexpr std::size_t kMaxPayload = std::size_t{64} * 1024;

/// What the player's list may take up, in bytes: its paths, and what each entry costs besides. A million songs with
/// paths of 200 bytes fit in. Without a bound, 5,000 paths of 64 KiB would cost 320 MB, and there could be more.
inline constexpr std::size_t kMaxListBytes = std::size_t{256} << 20;

/// The answer to a file that has no room in the list. What there is of other players answers 0 always.
inline constexpr PlayerAnswer kListIsFull = 1;

/// The path of the socket.
/// \throws FileError see RuntimeFolder
std::string PlayerSocketPath();

/// Connects to the player; no wait.
/// \returns a descriptor below 0, with errno set, when no player of this user listens there, or, with
///          EAGAIN, when more wait for it already than may
int ConnectToPlayer(const std::string& path) noexcept;

/// Makes the socket that a player listens on. A dead player's socket is replaced.
/// \returns a descriptor below 0, with errno set, when that fails
int ListenAsPlayer(const std::string& path) noexcept;

/// Whether the process at the other end of a connection runs as the same user.
bool PeerIsSameUser(int connection) noexcept;

/// Whether a player runs: one can be connected to, or has more to do than it can.
bool PlayerRuns(const std::string& path) noexcept;

/// Keeps others from starting a player, too, as long as the object lives.
class PlayerStartLock {
 public:
  /// Waits for others, for a second at most.
  /// \throws FileError when that is not enough, or no lock can be had there
  explicit PlayerStartLock(const std::string& socket_path);

 private:
  OpenFile file_;
};

}  // namespace tallow
