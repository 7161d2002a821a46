// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>

namespace tallow {

/// A message to Tallow's own player, see player_messages.h: the parameters of a window message on
/// Windows, the first bytes of a request on Linux.
struct PlayerRequestHead {
  std::uint32_t message = 0;
  std::uint32_t payload = 0;  ///< size in bytes
  std::int64_t wParam = 0;
  std::int64_t lParam = 0;
};
static_assert(sizeof(PlayerRequestHead) == 24);

using PlayerAnswer = std::int64_t;

/// Maximum memory of the player's list, in bytes: the paths, and the overhead of each entry. A
/// million songs with paths of 200 bytes fit. Without a limit, 5,000 paths of 64 KiB would use 320
/// MB.
inline constexpr std::size_t kMaxListBytes = std::size_t{256} << 20;

/// Maximum length of the answer to kAsk, in bytes. A client closes the connection on a longer one.
inline constexpr PlayerAnswer kMaxTextAnswer = PlayerAnswer{4} << 20;

/// The answer when the list has no room for a file. Other players always answer 0.
inline constexpr PlayerAnswer kListIsFull = 1;

}  // namespace tallow
