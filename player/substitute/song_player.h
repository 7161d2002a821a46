// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "player/player_messages.h"
#include "player/substitute/engine_playlist.h"
#include "player/substitute/length_callbacks.h"
#include "player/substitute/play_failures.h"
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
  kRanOut,    ///< stopped because the last file of the list, or each of them, could not be played
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
/// reported on standard error and by Failures, and skipped.
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
/// | kRanOut          | Add, not before an entry             | kLoading  | go there, LoadCurrent  |
/// | any              | PlayEntry                            | kLoading  | go there, LoadCurrent  |
/// | any              | Cue                                  | kLoading  | go there, LoadCurrentAt|
/// | track            | SetPlace                             | kLoading  | go there, LoadCurrent  |
/// | kStopped kRanOut | SetPlace                             | same      | go there               |
/// | entry            | Add; what follows was changed        | same      | UpdateFollowing        |
/// | kLoading         | reply: the entry number              | kLoaded   | UpdateFollowing        |
/// | kLoading         | reply: failure                       | kStopped  | EndTrack               |
/// | entry            | the current entry starts             | kOpening  |                        |
/// | entry            | the next entry starts                | kOpening  | UpdateFollowing        |
/// | entry            | another entry starts; stop-after     | kStopped  | FinishList             |
/// | entry            | a former next one starts; HasNext    | kOpening  | Redirect               |
/// | entry            | a former next one starts; else       | kStopped  | FinishList             |
/// | kOpening         | the track is open                    | kOpen     | request its properties |
/// | kOpen            | position                             | same      | store it               |
/// | open             | length, tags                         | same      | store them             |
/// | open             | the properties are reported          | same      | send the deferred seek |
/// | entry            | track failed; Previous went to it    | kLoading  | to previous one again  |
/// | entry            | track failed; so did all others      | kRanOut   | FinishList             |
/// | entry            | track failed; it would repeat        | kLoading  | go to next, LoadCurrent|
/// | entry            | ...; it is the last of the list      | kRanOut   | FinishList             |
/// | entry            | track ended; the engine has the next | same      |                        |
/// | entry            | track ended; else HasNext            | kLoading  | LoadNext               |
/// | entry            | track ended; else                    | kDraining |                        |
/// | entry            | the engine is idle; HasNext          | kLoading  | LoadNext               |
/// | entry            | idle; else the last track failed     | kRanOut   | FinishList             |
/// | entry            | idle; else                           | kStopped  | FinishList             |
/// | any              | events were lost                     | kStopped  | EndTrack               |
///
/// HasNext means here that a track follows without a command: the next one, or the same again if it
/// is repeated. "Previous went to it" holds until the track plays, and there must be a previous
/// one. After StopAfterCurrent ("stop-after"), HasNext counts as false when a track ends, and the
/// track does not count as failed. Loading leads to kStopped when the command queue of the engine
/// is full.
class SongPlayer : private PlaybackListener {
 public:
  /// \param engine must outlive this object, which becomes its listener
  /// \param seed of the order with shuffle
  SongPlayer(EventLoop& loop, PlaybackEngine& engine,
             std::mt19937::result_type seed = std::random_device{}());
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
  /// Goes to the next track, also when the current one is repeated; does nothing on the last one
  /// unless the list is repeated. Stays paused or stopped.
  void Next();
  /// Goes to the previous track that can be played, or restarts the first one. Stays paused or
  /// stopped.
  void Previous();
  /// Stops after the current track. Play then starts the next one.
  void StopAfterCurrent();
  /// Stops playback and empties the list.
  void Clear();
  /// Appends a file to the list.
  /// \returns false when the list is full, see kMaxListBytes; nothing has changed in that case
  bool Add(std::string path) { return AddFiles(std::vector{std::move(path)}, kAtEnd) != 0; }
  /// Adds files to the list, see PlayList::Add.
  ListNumber AddFiles(std::vector<std::string> paths, std::int64_t at);
  /// Moves upcoming entries, see PlayList::Move.
  void Move(const std::vector<ListNumber>& entries, ListNumber before);
  /// Removes upcoming entries.
  void Remove(const std::vector<ListNumber>& entries);
  /// Plays an entry from its beginning. Ignores an entry that is not in the list.
  void PlayEntry(ListNumber entry);
  /// Makes an entry the current track, paused at a position. Ignores an entry that is not in the
  /// list.
  /// \param ms 0 or more; the beginning is meant when the track is shorter
  void Cue(ListNumber entry, std::int64_t ms);
  /// Goes to the beginning of a track, which may be the current one. Stays paused or stopped.
  /// Ignores a place that is not in the list.
  /// \param place in the list, from 0
  void SetPlace(std::size_t place);
  void SetShuffle(bool shuffle);
  void SetRepeat(RepeatMode mode);
  /// \param ms   position in the track
  /// \returns false when the position is out of range or nothing plays; nothing has changed in that
  /// case
  bool Seek(std::int64_t ms);
  /// \param volume 0 to 255, proportional to the amplitude; 255 is the original volume
  void SetVolume(std::int32_t volume);
  /// \param balance -127 (only left) to 127 (only right)
  void SetBalance(std::int32_t balance);
  void SetGain(ReplayGain mode);
  /// \param name see PlaybackEngine::SetDevice
  void SetDevice(const std::string& name);
  /// See PlaybackEngine::RequestDevices.
  void RequestDevices(std::function<void(std::vector<SoundDevice>)> callback) {
    engine_.RequestDevices(std::move(callback));
  }

  /// Number of tracks that will play after the current one in this round; 0 after the end of the
  /// list, until something is played or added.
  std::size_t Upcoming() const noexcept { return has_ended_ ? 0 : list_.Upcoming(); }
  /// Whether the list has ended, and nothing was played or added since.
  bool HasEnded() const noexcept { return has_ended_; }
  PlayerState State() const noexcept { return state_; }
  /// The status after the last command, even if the sound has not followed yet.
  PlayerStatus Status() const noexcept;
  /// The position in the track, in ms; -1 when nothing plays.
  std::int64_t Position() const noexcept;
  /// The length of the track, in ms; -1 when nothing plays or it is not known.
  std::int64_t LengthInMs() const noexcept;
  /// 0 to 255, see SetVolume.
  std::int32_t Volume() const noexcept { return volume_; }
  /// -127 to 127, see SetBalance.
  std::int32_t Balance() const noexcept { return balance_; }
  ReplayGain Gain() const noexcept { return gain_; }
  /// See SetDevice.
  const std::string& Device() const noexcept { return device_; }
  /// Whether the track plays silently because the sound device cannot be opened.
  bool DeviceIsMissing() const noexcept { return device_is_missing_; }
  /// Whether playback stops after the current track.
  bool StopsAfterCurrent() const noexcept { return after_track_ == AfterTrack::kStop; }
  /// The list, its order and the current entry.
  const PlayList& List() const noexcept { return list_; }
  /// The tracks that could not be played.
  const PlayFailures& Failures() const noexcept { return failures_; }
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
  /// What plays after the current track; none after StopAfterCurrent.
  /// \param distance 1 for the next track
  PlayList::Following After(std::size_t distance) {
    return after_track_ == AfterTrack::kContinue ? list_.After(distance) : PlayList::Following();
  }
  bool ContinuesWithNext() { return After(1).number != 0; }
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
  /// Makes the engine's playlist hold the tracks that follow: at once, or when the engine has
  /// answered the commands of the last time. Many changes in a short time would fill its command
  /// queue otherwise. If it starts a track meanwhile that is not the next one any more, that one is
  /// redirected.
  void UpdateFollowing();
  /// Makes the engine's playlist hold the tracks that follow, enough of them in advance. Replaces
  /// tracks only from the first that differs, so that a change of later ones cannot cause a gap
  /// before the next one. When the next one differs, takes the first of two steps, see ReplaceNext.
  void SendFollowing();
  /// Puts the next track before the one that the engine has as its next one. That one stays until
  /// the engine has answered, because the engine would close the sound device if the current track
  /// ended while no other one follows.
  void ReplaceNext(const PlayList::Following& next);
  /// Removes tracks from the engine's playlist.
  /// \param keep number of tracks after the current one that stay
  void RemoveFollowing(std::size_t keep);
  /// Call this after a change of the list or of what follows.
  void ListHasChanged();
  /// Call this after a command has made another track of the list the current one: loads it if the
  /// player has a track.
  void CurrentHasChanged();
  /// Goes to the previous track, and loads it if the player has a track.
  void GoBack();
  /// Resets the properties of the track to those of a new one: only its path is known.
  void ResetTrack();
  /// The engine has started an entry; the next track of the list is the current one now.
  void ContinueInEngine();
  /// Call this when the current track has failed, or has not.
  void StoreResult(const char* error);
  /// Goes back again from a failed track that Previous went to, leaves one that would be repeated,
  /// or stops when all have failed.
  /// \returns whether there was nothing to do
  bool MayContinueAfterFailure();
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
  void OnDevice(bool is_missing) override { device_is_missing_ = is_missing; }
  void OnEventsLost() override { EndTrack(PlayerState::kStopped); }

  PlaybackEngine& engine_;
  std::function<void(PlayerChange)> on_change_;

  PlayerState state_ = PlayerState::kStopped;
  bool paused_ = false;     ///< only with a track
  bool has_ended_ = false;  ///< the last track of the list has ended, see Upcoming
  AfterTrack after_track_ = AfterTrack::kContinue;
  TrackEnd end_;

  PlayList list_;
  EnginePlaylist engine_list_;
  Track track_;  ///< the current one of list_
  PlayFailures failures_;
  FailureReasons failure_reasons_;
  bool following_outdated_ = false;  ///< UpdateFollowing waits for an answer
  std::size_t failures_in_row_ = 0;  ///< tracks that failed since one has played
  bool goes_back_ = false;           ///< Previous went to the current track, which has not played
  TrackPosition position_;
  LengthCallbacks length_callbacks_;
  std::int32_t volume_ = kMaxVolume;
  std::int32_t balance_ = 0;
  ReplayGain gain_ = ReplayGain::kOff;
  std::string device_ = "auto";
  bool device_is_missing_ = false;
};

}  // namespace tallow
