// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <chrono>
#include <cstdint>
#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "player/player_messages.h"
#include "player/substitute/event_source.h"
#include "player/substitute/sound_engine.h"

namespace tallow {

/// Properties of the current track.
struct Track {
  std::string path;
  std::string title;             ///< UTF-8; empty when the tag has none
  std::string artist;            ///< UTF-8; empty when the tag has none
  std::optional<double> length;  ///< in s; no value until the track is open
};

/// Means "no entry of mpv's playlist".
inline constexpr std::int64_t kNoEntry = -1;

/// What has changed in a player; passed to the change callback.
enum class PlayerChange { kStatus, kTrack, kList, kVolume, kSeeked };

/// A list of files and its playback.
///
/// No call waits for the sound: commands are queued and take effect in order, and queries return
/// the latest known state. Tracks follow each other without a gap. A track that cannot be played is
/// reported on standard error and skipped.
class SongPlayer {
 public:
  /// \throws std::runtime_error when libmpv cannot be set up
  SongPlayer(sd_event* loop, const SoundOutput& output);
  SongPlayer(const SongPlayer&) = delete;
  SongPlayer& operator=(const SongPlayer&) = delete;

  /// \param told callback, called after each change
  void OnChange(std::function<void(PlayerChange)> told) { told_ = std::move(told); }

  /// Paused: resumes. Playing: restarts the track. Stopped: starts the current track.
  void Play();
  /// Paused: resumes. Stopped: like Play. Playing: does nothing.
  void Resume();
  /// Pauses when playing, resumes when paused.
  void TogglePause();
  /// Stops playback. The list and the current track stay.
  void Stop();
  /// Goes to the next track; does nothing on the last one. Stays paused or stopped.
  void Next();
  /// Goes to the previous track, or restarts the first one. Stays paused or stopped.
  void Previous();
  /// Stops after the current track. Play then starts the next one.
  void StopAfterCurrent();
  /// Stops playback and empties the list.
  void Clear();
  /// Appends a file to the list.
  /// \returns false when the list is full, see kMaxListBytes; nothing has changed in that case
  bool Add(std::string path);
  /// \param ms   position in the track
  /// \returns false when the position is out of range or nothing plays; nothing has changed in that
  /// case
  bool Seek(std::int64_t ms);
  /// \param volume 0 to 255, proportional to the amplitude; 255 is the original volume
  void SetVolume(std::int32_t volume);
  /// \param balance -127 (only left) to 127 (only right)
  void SetBalance(std::int32_t balance);

  /// The status after the last command, even if the sound has not followed yet.
  PlayerStatus Status() const noexcept { return status_; }
  /// The position in the track, in ms; -1 when nothing plays.
  std::int64_t Position() const noexcept;
  /// 0 to 255, see SetVolume.
  std::int32_t Volume() const noexcept { return volume_; }
  /// The track that plays or is paused, or that Play would start when stopped. Null when the list
  /// is empty.
  const Track* CurrentTrack() const noexcept;
  /// Whether there is a next track.
  bool HasNext() const noexcept { return current_ + 1 < list_.size(); }
  /// Whether there is a previous track.
  bool HasPrevious() const noexcept { return current_ > 0 && !list_.empty(); }
  /// A number that identifies an entry of the list and is never reused; 0 when the list is empty.
  std::uint64_t TrackNumber() const noexcept { return list_.empty() ? 0 : list_[current_].number; }

  /// Passes the length of the track in s, or -1 if unknown, to a callback. Calls it at once, except
  /// when Play has just started a track: then calls it once the track is open, after two seconds at
  /// the latest.
  void WhenLengthIsKnown(std::function<void(std::int64_t)> tell);

 private:
  using Clock = std::chrono::steady_clock;

  /// State of opening the current track in mpv.
  enum class Opening { kWaits, kUnderWay, kDone };

  bool IsOpen() const noexcept { return opening_ == Opening::kDone; }
  void ShowTrack();
  void BeginTrack(Opening opening);
  void StartTrack(std::size_t index, bool paused);
  void StartAgainAt(std::int64_t ms, bool paused);
  void QueueFollowing();
  void TrackBegins(std::int64_t entry);
  void EndTrack(bool list_ran_out_on_error);
  void SetStatus(PlayerStatus status);
  void TellLength();
  std::int64_t Length() const noexcept;
  void Changed(PlayerChange change) const;

  void TakeEvent(const mpv_event& event);
  void TakeReply(const mpv_event& event);
  void TrackOpened();
  void OnLength();
  void SendSeek();
  void TrackEnded(const mpv_event_end_file& end);
  void SoundEnded();
  void FinishList(bool ran_out);
  void TakeProperty(const mpv_event_property& property);
  void OnPosition(double position);
  void TakeTags(const mpv_node& tags);

  sd_event* loop_;
  SoundEngine engine_;
  std::function<void(PlayerChange)> told_;

  struct ListEntry {
    std::string path;
    std::uint64_t number = 0;  ///< never reused
  };

  std::vector<ListEntry> list_;
  std::size_t list_bytes_ = 0;  ///< limited by kMaxListBytes
  std::size_t current_ = 0;     ///< index in list_
  PlayerStatus status_ = kStopped;
  Track track_;
  std::uint64_t last_number_ = 0;
  std::int32_t volume_ = kMaxVolume;
  bool stop_after_current_ = false;
  /// True when playback reached the end of the list because the last file could not be played. A
  /// file added in this state starts at once.
  bool ran_out_ = false;

  /// An entry of mpv's playlist. Its number arrives in the reply to the loadfile command. Events
  /// with other numbers refer to earlier tracks and are ignored.
  struct Entry {
    std::uint64_t reply = 0;
    std::int64_t number = kNoEntry;
  };

  /// Number of tracks that mpv's playlist holds in advance. Unplayable files are skipped without
  /// closing the sound device if one of these tracks is playable.
  static constexpr std::size_t kMaxFollowing = 8;

  Entry playing_;
  std::deque<Entry> following_;  ///< the tracks after the current one, in order
  Opening opening_ = Opening::kWaits;
  bool draining_ = false;  ///< the track has ended, but the device still plays its last audio
  Clock::time_point fades_since_;
  bool failed_ = false;         ///< the track that has ended could not be played
  double position_ = 0;         ///< in s
  double seek_target_ = 0;      ///< target of the last seek in this track, in s
  std::uint64_t seek_ = 0;      ///< reply number of the last seek in progress; 0 for none
  bool seek_waits_ = false;     ///< a seek is deferred until the track is open
  bool seek_restarts_ = false;  ///< the seek was replied to, but playback has not restarted yet

  bool length_is_asked_ = false;  ///< Play has started a track that is not open yet
  std::vector<std::function<void(std::int64_t)>> length_askers_;
  EventSource length_timer_;
};

}  // namespace tallow
