// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace tallow {

/// A player that was found; 0 is none.
using PlayerHandle = std::uintptr_t;

/// The way to the player, which differs by platform: on Windows the messages go to the window of class
/// "Winamp v1.x", on Linux through a socket to tallow-player.
///
/// Messages wait for their answer. One to a player that is gone goes nowhere and answers 0.
class PlayerLink {
 public:
  virtual ~PlayerLink() = default;

  /// Looks for a player that runs.
  virtual PlayerHandle Find() = 0;

  /// Runs a player's program, minimized and without the focus, and does not wait for it. On Linux one
  /// that runs already is a success, and no second one is started.
  /// \returns whether there is a process
  virtual bool Start(const std::string& program) = 0;

  /// Sends a message, see player_messages.h, and gives its answer.
  virtual std::int64_t Send(PlayerHandle player, std::uint32_t message, std::int64_t wParam,
                            std::int64_t lParam) = 0;

  /// Sends a copy-data record.
  /// \param code what the data is, see kAddFile
  /// \returns false when the player says that it has no room for it
  virtual bool SendCopyData(PlayerHandle player, std::uint32_t code, std::string_view data) = 0;

  /// Whether a player that was found is still there.
  virtual bool IsThere(PlayerHandle player) = 0;

  /// A path as the player reads it: on Windows in the system's ANSI code page, by its short (8.3) form
  /// when it has no other there; on Linux as it is.
  virtual std::string TextOfPath(const std::string& path) const = 0;
};

/// The way to the player of this platform.
std::unique_ptr<PlayerLink> SystemPlayerLink();

}  // namespace tallow
