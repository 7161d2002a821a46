// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <string>
#include <utility>

#include "player/player_messages.h"
#include "player/substitute/engine_playlist.h"
#include "player/substitute/length_callbacks.h"
#include "player/substitute/play_list.h"
#include "player/substitute/playback_engine.h"
#include "player/substitute/track.h"
#include "player/substitute/track_position.h"

namespace tallow {

/// What has changed in a player; passed to the change callback.
enum class PlayerChange { kStatus, kTrack, kList, kVolume, kSeeked };

/// State of a player. From kLoading on it has a track, which is playing or paused.
enum class PlayerState {
  kStopped,
  kRanOut,    ///< stopped at the end of the list because the last file could not be played
  kLoading,   ///< the command to load the track was sent; its entry number has not arrived
  kLoaded,    ///< the engine has the track in its playlist
  kOpening,   ///< the engine is opening the track
  kOpen,      ///< the track is decoded
  kDraining,  ///< the track has ended; the device still plays its last audio
};

/// A list of files and its playback.
///
/// No call waits for the sound: commands are queued and take effect in order, and queries return
/// the latest known state. Tracks follow each other without a gap. A track that cannot be played is
/// reported on standard error and skipped.
///
/// The table lists all transitions between the states. "track" is any state from kLoading on,
/// "entry" any state from kLoaded on, and "open" is kOpen, or kDraining if the track was open
/// before. An event without a row for a state is ignored in it.
///
/// | State            | Event                                | Next      | Action                 |
/// |------------------|--------------------------------------|-----------|------------------------|
/// | kStopped kRanOut | Play, Resume; the list has a file    | kLoading  | LoadCurrent            |
/// | track, playing   | Play                                 | kLoading  | LoadCurrent            |
/// | track, paused    | Play, Resume, TogglePause            | same      | resume                 |
/// | track, playing   | TogglePause, except in kDraining     | same      | pause                  |
/// | kDraining        | TogglePause when playing             | kLoading  | LoadCurrentAt          |
/// | kDraining        | Seek                                 | kLoading  | LoadCurrentAt          |
/// | kOpen            | Seek                                 | same      | SeekNow                |
/// | other track      | Seek                                 | same      | SeekWhenOpen           |
/// | track            | Next, Previous                       | kLoading  | go there, LoadCurrent  |
/// | kStopped kRanOut | Next, Previous                       | same      | go there               |
/// | track            | StopAfterCurrent                     | same      | RemoveFollowing        |
/// | track            | Stop                                 | kStopped  | EndTrack               |
/// | kRanOut          | Stop                                 | kStopped  |                        |
/// | track            | Clear                                | kStopped  | EndTrack               |
/// | kStopped kRanOut | Clear                                | kStopped  |                        |
/// | kRanOut          | Add                                  | kLoading  | go there, LoadCurrent  |
/// | entry            | Add                                  | same      | AppendFollowing        |
/// | kLoading         | reply: the entry number              | kLoaded   | AppendFollowing        |
/// | kLoading         | reply: failure                       | kStopped  | EndTrack               |
/// | entry            | the current entry starts             | kOpening  |                        |
/// | entry            | the next entry starts                | kOpening  | AppendFollowing        |
/// | entry            | another entry starts; stop-after     | kStopped  | FinishList             |
/// | kOpening         | the track is open                    | kOpen     | request its properties |
/// | kOpen            | position                             | same      | store it               |
/// | open             | length, tags                         | same      | store them             |
/// | open             | the properties are reported          | same      | send the deferred seek |
/// | entry            | track ended; the engine has the next | same      |                        |
/// | entry            | track ended; else HasNext            | kLoading  | LoadNext               |
/// | entry            | track ended; else                    | kDraining |                        |
/// | entry            | the engine is idle; HasNext          | kLoading  | LoadNext               |
/// | entry            | idle; else the last track failed     | kRanOut   | FinishList             |
/// | entry            | idle; else                           | kStopped  | FinishList             |
/// | any              | events were lost                     | kStopped  | EndTrack               |
///
/// After StopAfterCurrent ("stop-after"), HasNext counts as false when a track ends, and the track
/// does not count as failed. Loading leads to kStopped when the engine's command queue is full.
class SongPlayer : private PlaybackListener {
 public:
  /// \param engine must outlive this object, which becomes its listener
  SongPlayer(EventLoop& loop, PlaybackEngine& engine);
  SongPlayer(const SongPlayer&) = delete;
  SongPlayer& operator=(const SongPlayer&) = delete;

  /// \param callback called after each change
  void OnChange(std::function<void(PlayerChange)> callback) { on_change_ = std::move(callback); }

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

  PlayerState State() const noexcept { return state_; }
  /// The status after the last command, even if the sound has not followed yet.
  PlayerStatus Status() const noexcept;
  /// The position in the track, in ms; -1 when nothing plays.
  std::int64_t Position() const noexcept;
  /// 0 to 255, see SetVolume.
  std::int32_t Volume() const noexcept { return volume_; }
  /// The track that plays or is paused, or that Play would start when stopped. Null when the list
  /// is empty.
  const Track* CurrentTrack() const noexcept { return list_.IsEmpty() ? nullptr : &track_; }
  /// Whether there is a next track.
  bool HasNext() const noexcept { return list_.HasNext(); }
  /// Whether there is a previous track.
  bool HasPrevious() const noexcept { return list_.HasPrevious(); }
  /// A number that identifies an entry of the list and is never reused; 0 when the list is empty.
  std::uint64_t TrackNumber() const noexcept { return list_.CurrentNumber(); }

  /// Passes the length of the track in s, or -1 if unknown, to a callback. Calls it at once, except
  /// when Play has just started a track: then calls it once the track is open, after two seconds at
  /// the latest.
  void WhenLengthIsKnown(LengthCallbacks::Callback callback) {
    length_callbacks_.CallWhenKnown(std::move(callback));
  }

 private:
  using Clock = std::chrono::steady_clock;

  /// What happens at the end of the current track.
  enum class AfterTrack { kContinue, kStop };

  /// How the track has ended, in state kDraining.
  struct TrackEnd {
    Clock::time_point time;
    bool was_open = false;
    bool failed = false;  ///< it could not be played
  };

  bool HasTrack() const noexcept { return state_ >= PlayerState::kLoading; }
  bool HasEntry() const noexcept { return state_ >= PlayerState::kLoaded; }
  bool IsOpen() const noexcept;
  bool ContinuesWithNext() const noexcept {
    return HasNext() && after_track_ == AfterTrack::kContinue;
  }
  std::int64_t Length() const noexcept;

  /// Changes the state, and reports it if that changes the status.
  void Enter(PlayerState state, bool paused);
  void Enter(PlayerState state) { Enter(state, paused_); }
  /// Loads the current track of the list and enters kLoading.
  void LoadCurrent(bool paused);
  /// Loads the current track and seeks in it.
  void LoadCurrentAt(std::int64_t ms, bool paused);
  /// Goes to the next track and loads it. Stays paused.
  void LoadNext();
  /// Stops the engine and enters a state without a track.
  void EndTrack(PlayerState state);
  /// Goes to the next track, or from the last one to the first, and enters a state without a track.
  void FinishList(PlayerState state);
  /// Appends tracks to the engine's playlist until it holds enough in advance.
  void AppendFollowing();
  /// Call this after a command has made another track of the list the current one: loads it if the
  /// player has a track.
  void CurrentHasChanged();
  /// Resets the properties of the track to those of a new one: only its path is known.
  void ResetTrack();
  void Changed(PlayerChange change) const;

  void OnReply(CommandNumber command, bool succeeded, EntryNumber entry) override;
  void OnTrackStarted(EntryNumber entry) override;
  void OnTrackOpened() override;
  void OnTrackEnded(EntryNumber entry, const char* error) override;
  void OnIdle() override;
  void OnPlaybackRestarted() override { position_.OnPlaybackRestarted(); }
  void OnPosition(double seconds) override;
  void OnLength(double seconds) override;
  void OnTags(TrackTags tags) override;
  void OnPropertiesReported() override;
  void OnEventsLost() override { EndTrack(PlayerState::kStopped); }

  PlaybackEngine& engine_;
  std::function<void(PlayerChange)> on_change_;

  PlayerState state_ = PlayerState::kStopped;
  bool paused_ = false;  ///< only with a track
  AfterTrack after_track_ = AfterTrack::kContinue;
  TrackEnd end_;

  PlayList list_;
  EnginePlaylist engine_list_;
  Track track_;  ///< the current one of list_
  TrackPosition position_;
  LengthCallbacks length_callbacks_;
  std::int32_t volume_ = kMaxVolume;
};

}  // namespace tallow
