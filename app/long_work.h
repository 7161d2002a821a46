// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace tallow {

/// Work that may take long, as the windows see it: they live meanwhile, show it when it takes longer than half
/// a second, and let the user cancel it. Nobody can give a command until it has ended, which is when this goes.
class LongWork {
 public:
  virtual ~LongWork() = default;

  /// To be called again and again, at least every few milliseconds.
  ///
  /// \param line how far the work has come, "Filed 12 of 50 songs"; called when it is shown
  /// \returns whether to go on
  virtual bool GoOn(const std::function<std::string()>& line) = 0;
};

/// Begins work that may take long.
/// \param text what is done: "Filing songs  . . . "
using BeginLongWork = std::function<std::unique_ptr<LongWork>(std::string_view text)>;

/// What is shown of the work.
inline constexpr std::string_view kFilingSongs = "Filing songs  . . . ";
inline constexpr std::string_view kTakingFiles = "Taking files  . . . ";
inline constexpr std::string_view kLookingForSongs = "Looking for the songs  . . . ";
inline constexpr std::string_view kHandingOver = "Handing songs to the player  . . . ";

}  // namespace tallow
