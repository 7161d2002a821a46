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

/// What a child reads of a file; the first byte of a request.
enum class WhatToRead : char {
  kTags = 't',     ///< what ReadSongTags reads; the other details are not set
  kAll = 'a',      ///< what ReadSongDetails reads
  kPicture = 'p',  ///< what ReadEmbeddedPicture reads
};

/// How a ChildReader starts its children, and how long it waits for them.
struct ChildSettings {
  std::string program;                 ///< full path
  std::vector<std::string> arguments;  ///< without the program name
  std::chrono::milliseconds max_start{5000};
  /// For one file: the limit of ReadLimits, and one second for the rest.
  std::chrono::milliseconds max_wait{6000};
};

/// Reads songs in a child process, so that a file at which TagLib crashes, does not end or
/// uses more memory than kMaxChildMemory costs a child, not the program. Such a file has no tags,
/// and its details are marked as failed. If the child has not answered in time because it waits for
/// the disk, the tags are marked as unread instead. Used by one thread at a time.
///
/// The child is started at the first file and serves many. It is killed when it exceeds its time;
/// the next file starts another. A file at which it ends is given to a second child, because the
/// first one may have been killed by the system or the user.
class ChildReader {
 public:
  explicit ChildReader(ChildSettings settings) : settings_(std::move(settings)) {}

  /// Reads a file; in this process, with ReadSongDetails, when no child can be started.
  ///
  /// \param stopped ends the wait, within 20 ms
  SongDetails Read(const std::string& path, const std::function<bool()>& stopped);

  /// Reads the tags alone; in this process, with ReadSongTags, when no child can be started.
  ///
  /// \returns the tags; SongTags::unread when the child waits for the disk for too long
  SongTags ReadTags(const std::string& path);

  /// Reads the picture in the tags; in this process, with ReadEmbeddedPicture, when no child can be
  /// started.
  ///
  /// \param stopped as in Read
  /// \returns empty when there is none, and when the child does not answer
  std::string ReadPicture(const std::string& path, const std::function<bool()>& stopped);

 private:
  /// Starts the child unless it runs. \returns false when that fails
  bool HasChild(const std::function<bool()>& stopped);
  /// Sends a request to the child. \returns no value when it does not answer; it is then killed
  std::optional<std::string> Ask(const std::string& request, const std::function<bool()>& stopped);
  /// Asks the child, and a second one if the first one ends.
  std::optional<std::string> AskTwice(WhatToRead what, const std::string& path,
                                      const std::function<bool()>& stopped);
  /// Asks the child for details. \returns no value when it does not answer with details
  std::optional<SongDetails> AskForDetails(WhatToRead what, const std::string& path,
                                           const std::function<bool()>& stopped);
  /// Waits for the next message of the child. \returns no value when the child has ended, at the
  /// end of the time, and when it was stopped
  std::optional<std::string> NextMessage(std::chrono::milliseconds max_wait,
                                         const std::function<bool()>& stopped);

  ChildSettings settings_;
  std::unique_ptr<ChildProcess> child_;  ///< null when none runs
  bool has_ended_ = false;               ///< whether it ended by itself at the last request
  bool is_late_ = false;                 ///< whether the wait for the last message was too long
  bool was_waiting_ = false;  ///< whether it had no answer in time, and hardly used a processor
  std::string received_;      ///< bytes of the child that are no whole message yet
};

/// The content of the child's answer for a file: EncodeDetails of the tags or of all details, or
/// the bytes of the picture.
std::string AnswerFor(const std::string& path, WhatToRead what);

/// The child's part: answers requests until the parent closes its end.
///
/// \param answer returns the content of the answer for a file, such as AnswerFor does
/// \returns the exit code of the process
int ServeSongDetails(
    const std::function<std::string(const std::string& path, WhatToRead what)>& answer);

/// ServeSongDetails with AnswerFor. From the first request for all details on, which are read in
/// the background, at low priority.
int ServeSongDetails();

}  // namespace tallow
