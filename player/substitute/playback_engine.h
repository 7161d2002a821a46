// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "player/tallow_player_requests.h"

namespace tallow {

/// Identifies a command that was sent to the engine; never reused. 0 when the command was not sent
/// because the engine's command queue is full.
using CommandNumber = std::uint64_t;

/// Identifies an entry of the engine's playlist; never reused.
using EntryNumber = std::int64_t;

/// Means "no entry of the engine's playlist".
inline constexpr EntryNumber kNoEntry = -1;

/// The tags of a track, in UTF-8; no value for a tag that the track does not have.
struct TrackTags {
  std::optional<std::string> title;
  std::optional<std::string> artist;
};

/// Callbacks of a PlaybackEngine, called from the event loop.
class PlaybackListener {
 public:
  virtual ~PlaybackListener() = default;

  /// A command has been executed.
  /// \param entry the playlist entry that the command has added; kNoEntry for none
  virtual void OnReply(CommandNumber command, bool succeeded, EntryNumber entry) = 0;
  /// The engine begins to open an entry of its playlist. Redirect is possible during this call.
  virtual void OnTrackStarted(EntryNumber entry) = 0;
  /// The entry that was started last is open; it can be seeked and its properties are known.
  virtual void OnTrackOpened() = 0;
  /// The engine has finished decoding an entry. The device may still play its last audio.
  /// \param error why the entry could not be played, as users understand it; null when it was
  ///              played
  virtual void OnTrackEnded(EntryNumber entry, const char* error) = 0;
  /// The playlist has ended and the device has played all audio.
  virtual void OnIdle() = 0;
  /// Playback continues after a seek or at the beginning of a track.
  virtual void OnPlaybackRestarted() = 0;
  /// \param seconds position in the track
  virtual void OnPosition(double seconds) = 0;
  /// \param seconds length of the track
  virtual void OnLength(double seconds) = 0;
  /// \param tags the tags of the track
  virtual void OnTags(TrackTags tags) = 0;
  /// All properties requested by RequestProperties have been reported, as far as they are known.
  virtual void OnPropertiesReported() = 0;
  /// The sound device was opened or closed.
  /// \param is_missing the engine plays silently because the device cannot be opened
  virtual void OnDevice(bool is_missing) = 0;
  /// Events were lost, so the state of the engine is unknown.
  virtual void OnEventsLost() = 0;
};

/// Decodes tracks and plays them. It has a playlist of its own, whose entries follow each other
/// without a gap.
///
/// No call waits: commands take effect in the order of the calls, and results arrive as callbacks
/// from the event loop.
class PlaybackEngine {
 public:
  virtual ~PlaybackEngine() = default;

  /// \param listener must exist while the event loop runs
  virtual void SetListener(PlaybackListener& listener) = 0;

  /// Replaces the playlist by one file and plays it.
  virtual CommandNumber Load(const std::string& path) = 0;
  /// Appends a file to the playlist.
  virtual CommandNumber Append(const std::string& path) = 0;
  /// Removes the first entry of the playlist.
  virtual void RemoveFirst() = 0;
  /// Removes all entries of the playlist except the current one. An entry that started before the
  /// engine executes the command stays.
  virtual CommandNumber RemoveFollowing() = 0;
  /// Removes an entry of the playlist.
  /// \param index 0 for the first one
  virtual void RemoveAt(std::size_t index) = 0;
  /// Moves an entry of the playlist directly behind the first one.
  /// \param index 2 for the third one
  virtual void MoveBehindFirst(std::size_t index) = 0;
  /// Plays another file in place of the entry that is starting. Call this from OnTrackStarted.
  virtual void Redirect(const std::string& path) = 0;
  /// Stops playback and empties the playlist.
  virtual void Stop() = 0;
  /// \param seconds position in the track
  virtual CommandNumber Seek(double seconds) = 0;
  /// Also affects tracks that are loaded later.
  virtual void Pause(bool paused) = 0;
  /// \param volume 0 to 255, proportional to the amplitude; 255 is the original volume
  virtual void SetVolume(std::int32_t volume) = 0;
  /// \param balance -127 (only left) to 127 (only right)
  virtual void SetBalance(std::int32_t balance) = 0;
  /// Applies the ReplayGain of the tags. A file without it is not changed.
  virtual void SetGain(ReplayGain mode) = 0;
  /// Plays on a sound device; does not interrupt the track.
  /// \param name "auto" for the system's device
  virtual void SetDevice(const std::string& name) = 0;
  /// Asks for the sound devices.
  /// \param callback called once, usually later
  virtual void RequestDevices(std::function<void(std::vector<SoundDevice>)> callback) = 0;
  /// Requests the tags and then the length of the open track. OnPropertiesReported follows even
  /// when the length is unknown.
  virtual void RequestProperties() = 0;
};

}  // namespace tallow
