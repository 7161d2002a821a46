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

/// What is known of the track that plays.
struct Track {
  std::string path;
  std::string title;             ///< UTF-8; empty when there is none in the tag
  std::string artist;            ///< UTF-8; empty when there is none in the tag
  std::optional<double> length;  ///< in s; no value until the track is open
};

/// No entry of mpv's list.
inline constexpr std::int64_t kNoEntry = -1;

/// What has changed in a player, to be told to others.
enum class PlayerChange { kStatus, kTrack, kList, kVolume, kSeeked };

/// A list of files and the playing of it.
///
/// No call waits for the sound: commands take effect in their order while the program goes on, and
/// queries tell what is known. Tracks follow each other without a gap; one that cannot be played is
/// named on standard error and left out.
class SongPlayer {
 public:
  /// \throws std::runtime_error when there can be no sound at all
  SongPlayer(sd_event* loop, const SoundOutput& output);
  SongPlayer(const SongPlayer&) = delete;
  SongPlayer& operator=(const SongPlayer&) = delete;

  /// \param told called after each change
  void OnChange(std::function<void(PlayerChange)> told) { told_ = std::move(told); }

  /// Goes on when paused, begins the track anew when it plays, else starts where the list stands.
  void Play();
  /// Goes on when paused, else as Play when stopped; nothing when it plays.
  void Resume();
  /// Halts what plays, and lets what is halted go on.
  void TogglePause();
  /// Ends the playing; the list and the place in it stay.
  void Stop();
  /// To the next track; nothing on the last one. What is paused or stopped remains so.
  void Next();
  /// To the previous track, on the first one to its beginning. What is paused or stopped remains so.
  void Previous();
  /// Stops when the track that plays is over; Play then starts the next one.
  void StopAfterCurrent();
  /// Ends the playing and empties the list.
  void Clear();
  /// Appends a file to the list.
  /// \returns false when it has no room, see kMaxListBytes; nothing has changed then
  bool Add(std::string path);
  /// \param ms   from the beginning of the track
  /// \returns whether there is such a place; else nothing happens
  bool Seek(std::int64_t ms);
  /// \param volume 0 to 255, in proportion to the amplitude; 255 leaves the sound as it is
  void SetVolume(std::int32_t volume);
  /// \param balance -127, only left, to 127, only right
  void SetBalance(std::int32_t balance);

  /// As it was told last, not as far as the sound has followed.
  PlayerStatus Status() const noexcept { return status_; }
  /// Where the track is, in ms; -1 when nothing plays.
  std::int64_t Position() const noexcept;
  /// 0 to 255, see SetVolume.
  std::int32_t Volume() const noexcept { return volume_; }
  /// The track that plays or is paused; the one that Play would start when stopped. Null when the list
  /// is empty.
  const Track* CurrentTrack() const noexcept;
  /// Whether Next leads anywhere.
  bool HasNext() const noexcept { return current_ + 1 < list_.size(); }
  /// Whether Previous leads to another track.
  bool HasPrevious() const noexcept { return current_ > 0 && !list_.empty(); }
  /// Tells an entry of the list from all others there ever were; 0 when the list is empty.
  std::uint64_t TrackNumber() const noexcept { return list_.empty() ? 0 : list_[current_].number; }

  /// Tells the length of the track in s, -1 for none: at once, or when a track was just started with
  /// Play, as soon as it is open, waiting two seconds at most.
  void WhenLengthIsKnown(std::function<void(std::int64_t)> tell);

 private:
  using Clock = std::chrono::steady_clock;

  /// How far the current track is on its way to be heard.
  enum class Opening { kWaits, kUnderWay, kDone };

  bool IsOpen() const noexcept { return opening_ == Opening::kDone; }
  void ShowTrack();
  void BeginTrack(Opening opening);
  void StartTrack(std::size_t index, bool paused);
  void StartAgainAt(std::int64_t ms, bool paused);
  void FeedFollowing();
  void TrackBegins(std::int64_t entry);
  void EndTrack(bool list_ran_out_on_error);
  void SetStatus(PlayerStatus status);
  void TellLength();
  std::int64_t Length() const noexcept;
  void Changed(PlayerChange change) const;

  void TakeEvent(const mpv_event& event);
  void TakeReply(const mpv_event& event);
  void TrackOpened();
  void LengthTold();
  void SendSeek();
  void TrackEnded(const mpv_event_end_file& end);
  void SoundEnded();
  void FinishList(bool ran_out);
  void TakeProperty(const mpv_event_property& property);
  void PositionTold(double position);
  void TakeTags(const mpv_node& tags);

  sd_event* loop_;
  SoundEngine engine_;
  std::function<void(PlayerChange)> told_;

  struct ListEntry {
    std::string path;
    std::uint64_t number = 0;  ///< never used again
  };

  std::vector<ListEntry> list_;
  std::size_t list_bytes_ = 0;  ///< see kMaxListBytes
  std::size_t current_ = 0;     ///< place in the list
  PlayerStatus status_ = kStopped;
  Track track_;
  std::uint64_t last_number_ = 0;
  std::int32_t volume_ = kMaxVolume;
  bool stop_after_current_ = false;
  /// Playing came to the end of the list over a file that could not be played. A file that is added
  /// now is its next one.
  bool ran_out_ = false;

  /// An entry of mpv's own list. Its number comes with the reply to the command that made it; what mpv
  /// tells of others is about tracks that are gone.
  struct Entry {
    std::uint64_t reply = 0;
    std::int64_t number = kNoEntry;
  };

  /// How many tracks mpv knows of in advance: files that cannot be played are passed over without
  /// closing the device as long as a playable one is among them.
  static constexpr std::size_t kMaxFollowing = 8;

  Entry playing_;
  std::deque<Entry> following_;  ///< the tracks behind the current one, in order
  Opening opening_ = Opening::kWaits;
  bool fading_ = false;  ///< the current track is over but for what the device still holds
  Clock::time_point fades_since_;
  bool failed_ = false;         ///< and it was one that could not be played
  double position_ = 0;         ///< in s
  double sought_ = 0;           ///< where the last seek in this track went to, in s
  std::uint64_t seek_ = 0;      ///< the reply of the last seek that is under way; 0 for none
  bool seek_waits_ = false;     ///< and it waits for the track to be open
  bool seek_restarts_ = false;  ///< that reply has come, and the sound has not begun again yet

  bool length_is_asked_ = false;  ///< Play has started a track that is not open yet
  std::vector<std::function<void(std::int64_t)>> length_askers_;
  EventSource length_timer_;
};

}  // namespace tallow
