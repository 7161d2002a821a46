// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "details/song_details.h"
#include "util/child_process.h"

namespace tallow {

/// Command-line option with which the program is the child of a ChildReader, see ServeSongDetails.
inline constexpr std::string_view kServeDetailsOption = "--serve-song-details";

/// How a ChildReader starts its children, and how long it waits for them.
struct ChildSettings {
  std::string program;                 ///< full path
  std::vector<std::string> arguments;  ///< without the program name
  std::chrono::milliseconds max_start{5000};
  /// For one file: the limit of ReadLimits, and one second for the rest.
  std::chrono::milliseconds max_wait{6000};
};

/// Reads song details in a child process, so that a file at which TagLib crashes or does not end
/// costs a child, not the program. Such a file has no tags, and its details are marked as failed.
/// Used by one thread at a time.
///
/// The child is started at the first file and serves many. It is killed when it exceeds its time;
/// the next file starts another.
class ChildReader {
 public:
  explicit ChildReader(ChildSettings settings) : settings_(std::move(settings)) {}

  /// Reads a file; in this process, with ReadSongDetails, when no child can be started.
  ///
  /// \param stopped ends the wait, within 20 ms
  SongDetails Read(const std::string& path, const std::function<bool()>& stopped);

 private:
  /// Starts the child unless it runs. \returns false when that fails
  bool HasChild(const std::function<bool()>& stopped);
  /// Waits for the next message of the child. \returns no value when the child has ended, at the
  /// end of the time, and when it was stopped
  std::optional<std::string> NextMessage(std::chrono::milliseconds max_wait,
                                         const std::function<bool()>& stopped);

  ChildSettings settings_;
  std::unique_ptr<ChildProcess> child_;  ///< null when none runs
  std::string received_;                 ///< bytes of the child that are no whole message yet
};

/// The child's part: answers requests until the parent closes its end.
///
/// \param read reads one file
/// \returns the exit code of the process
int ServeSongDetails(const std::function<SongDetails(const std::string& path)>& read);

/// ServeSongDetails with ReadSongDetails, at low priority.
int ServeSongDetails();

}  // namespace tallow
