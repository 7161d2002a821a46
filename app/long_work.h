// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace tallow {

/// Progress of work that may take long. While the work runs, the windows process events; when it
/// takes longer than half a second, they show it and let the user cancel it. The user cannot give
/// commands until the object is destroyed, which ends the work.
class LongWork {
 public:
  virtual ~LongWork() = default;

  /// To be called repeatedly, at least every few milliseconds.
  ///
  /// \param line returns the progress text, "Filed 12 of 50 songs"; called only when the text is
  ///             shown
  /// \returns whether to continue
  virtual bool GoOn(const std::function<std::string()>& line) = 0;
};

/// Begins work that may take long.
/// \param text what is being done: "Filing songs  . . . "
using BeginLongWork = std::function<std::unique_ptr<LongWork>(std::string_view text)>;

/// The texts shown for the work.
inline constexpr std::string_view kFilingSongs = "Filing songs  . . . ";
inline constexpr std::string_view kAddingFiles = "Adding files  . . . ";
inline constexpr std::string_view kAddingFolder = "Adding the folder  . . . ";
inline constexpr std::string_view kLookingForSongs = "Looking for the songs  . . . ";
inline constexpr std::string_view kStartingPlayer = "Starting the player  . . . ";
inline constexpr std::string_view kHandingOver = "Handing songs to the player  . . . ";

}  // namespace tallow
