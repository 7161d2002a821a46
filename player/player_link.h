// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace tallow {

/// Identifies a player that was found; 0 for none.
using PlayerHandle = std::uintptr_t;

/// The players that a link can find.
enum class PlayerKind { kWinamp, kTallowPlayer };

/// How far the start of a player has got.
enum class PlayerStart {
  kNoWindow,  ///< it was not found yet
  kSilent,    ///< it was found, but has not answered yet
  kAnswers,
  kEnded,
};

/// Connection to the player; differs by platform. On Windows, messages are sent to the window of
/// class "Winamp v1.x". On Linux, they are sent through a socket to tallow-player.
///
/// Sending a message blocks until the answer arrives. A message to a player that has ended is
/// dropped and returns 0.
class PlayerLink {
 public:
  virtual ~PlayerLink() = default;

  /// Sets which player Find looks for: the one of this program. Without a program, it looks first
  /// for Tallow's own player, then for another one. Only Windows has several.
  virtual void UseProgram(const std::string& /*program*/) {}

  /// Looks for a running player.
  virtual PlayerHandle Find() = 0;

  /// Starts the player's program, minimized and without focus, and returns without waiting for it.
  /// On Linux, if a player is already running, returns true and does not start a second one.
  /// \returns whether the program was started or is running
  virtual bool Start(const std::string& program) = 0;

  /// How far the player has got that was started last, or that was running already. Does not wait.
  virtual PlayerStart FollowStart() {
    return Find() == 0 ? PlayerStart::kNoWindow : PlayerStart::kAnswers;
  }
  /// How long to wait for a player that was started.
  virtual std::chrono::milliseconds StartTimeout() const { return std::chrono::seconds(5); }
  /// The last line that the program wrote to its standard error while it started; empty for none.
  virtual std::string LastLineWritten() { return {}; }

  /// Sends a message, see player_messages.h, and returns the answer.
  virtual std::int64_t Send(PlayerHandle player, std::uint32_t message, std::int64_t wParam,
                            std::int64_t lParam) = 0;

  /// Sends a copy-data record.
  /// \param code type of the data, see kAddFile
  /// \returns false when the player answers that its list is full
  virtual bool SendCopyData(PlayerHandle player, std::uint32_t code, std::string_view data) = 0;

  /// Whether a player that was found is still running.
  virtual bool IsRunning(PlayerHandle player) = 0;

  /// What kind of player was found.
  virtual PlayerKind KindOf(PlayerHandle /*player*/) { return PlayerKind::kWinamp; }

  /// Sends the copy-data record kAddFiles to Tallow's own player, see tallow_player_requests.h.
  /// \param data at most kMaxPayload bytes
  /// \returns the number of the first new entry, kListHasNoRoom, or kNoSuchEntry; 0 when there is
  ///          no answer
  virtual std::int64_t AddFiles(PlayerHandle /*player*/, std::string_view /*data*/) { return 0; }

  /// Sends a request in JSON to Tallow's own player, see tallow_player_requests.h.
  /// \returns the answer; no value when there is none, or the player is another one
  virtual std::optional<std::string> Ask(PlayerHandle /*player*/, std::string_view /*request*/) {
    return std::nullopt;
  }

  /// Converts a path to the encoding that the player expects. On Windows this is the system's ANSI
  /// code page; a path that it cannot represent is replaced by its short (8.3) form. On Linux the
  /// path is unchanged.
  virtual std::string TextOfPath(const std::string& path) const = 0;
};

/// Creates the link for this platform.
/// \param identifier of the application folder, see PlayerIdentifier: tells the players of several
///                   Tallows apart. May be empty
std::unique_ptr<PlayerLink> SystemPlayerLink(const std::string& identifier = {});

}  // namespace tallow
