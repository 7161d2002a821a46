// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "app/playing/heard_time.h"
#include "app/playing/known_failures.h"
#include "app/playing/play_counts.h"
#include "app/playing/player_model.h"
#include "app/playing/player_report.h"
#include "app/playing/playing_preferences.h"
#include "app/playing/queue_entries.h"
#include "app/playing/saved_queue.h"
#include "app/playing/song_texts.h"
#include "app/playing/volume_of_last_time.h"
#include "player/playfile.h"
#include "player/winamp_control.h"
#include "util/day.h"

namespace tallow {

class Tallow;

/// The clocks of a SystemPlayerModel.
struct PlayingClocks {
  std::function<std::chrono::steady_clock::time_point()> now = std::chrono::steady_clock::now;
  std::function<std::chrono::sys_days()> today = [] {
    return std::chrono::sys_days(std::chrono::days(Today()));
  };
};

/// The model of the player that the system has: Tallow's own or a Winamp.
class SystemPlayerModel : public PlayerModel {
 public:
  using Time = std::chrono::steady_clock::time_point;

  /// \param tallow, player have to outlive the model
  SystemPlayerModel(Tallow& tallow, WinAMP_Control& player, PlayingClocks clocks = {});
  SystemPlayerModel(const SystemPlayerModel&) = delete;
  SystemPlayerModel& operator=(const SystemPlayerModel&) = delete;
  ~SystemPlayerModel() override;

  void AddListener(PlayerListener& listener) override;
  void RemoveListener(PlayerListener& listener) override;
  void Update() override;
  const Playing& Now() const override { return now_; }
  std::string TextOf(std::int32_t song) const override { return texts_.Of(song); }

  void PlayOrPause() override;
  void Next() override { Send(kNextTrack); }
  void Previous() override { Send(kPreviousTrack); }
  void Seek(std::int32_t seconds) override;
  std::int32_t Volume() const override { return volume_.Volume(); }
  std::int32_t Balance() const override { return volume_.Balance(); }
  void SetVolume(std::int32_t volume) override;
  void SetBalance(std::int32_t balance) override;
  void SetShuffle(bool on) override;
  void SetRepeat(RepeatMode mode) override;
  void SetGain(ReplayGain mode) override;

  bool Can(PlayerFeature feature) const override;
  std::string WhyNot(PlayerFeature feature) const override;

  std::size_t QueueLength() const override { return queue_length_; }
  QueueRow QueueAt(std::size_t row) override;
  void MoveInQueue(std::span<const std::uint64_t> entries, std::uint64_t before) override;
  void RemoveFromQueue(std::span<const std::uint64_t> entries) override;
  void PlayFromQueue(std::uint64_t entry) override;
  std::vector<std::int32_t> SongsOfQueue() override;

  std::string FailureOf(std::int32_t song) const override;
  std::string FailureOfEntry(std::uint64_t entry) const override {
    return failures_.OfEntry(entry);
  }

  // What the panel and the frame window use.

  /// Hands the songs in Tallow::SongsToPlay over, see HandOver and Tallow::play_order. Where the
  /// player has nothing to play, Play Next and Add To Queue play.
  /// \param panel gets the callbacks
  void HandOverSongs(const ShowMessage& show, HandOffPanel& panel,
                     const HandOverProgress& progress = {},
                     const WhileStarting& while_starting = {});

  /// Shows the volume and balance that the next player gets, unless a player has been opened or the
  /// user has chosen them. To be called when the preferences have been loaded.
  void ShowVolumeOfLastTime();
  /// The player is to be opened: determines its volume and balance. Does nothing before the player
  /// is closed.
  void BeginVolume();
  /// Sends the volume, the balance and the user's preferences to the player that was found last.
  void SetUpPlayer();
  /// SetUpPlayer, unless that player has them.
  void SetUpNewPlayer();
  /// Another view has set the volume or the balance and sent it to the player.
  void VolumeWasSet(std::int32_t volume);
  void BalanceWasSet(std::int32_t balance);

  /// Whether the player that was found last has songs in its list.
  bool HasList();
  /// Whether Tallow plays: the player that was found last runs, and was set up or is Tallow's own.
  bool HasPlayer();
  /// Closes the player that was found last, if it runs: it stops, its list is cleared, and it ends.
  void ClosePlayer();
  /// Closes the player that was set up, if the user has chosen one of another kind since.
  /// \returns whether it was closed
  bool CloseFormerPlayer();
  /// The user has closed the player: the next start has no queue to restore.
  void DropStoredQueue();
  /// Stores the queue for the next start, if the user wants that.
  void StoreQueue();
  /// With Tallow's own player: takes over the one that a Tallow that was killed has left behind
  /// with a list. If there is none, starts it with the queue of the last run, paused where it was,
  /// if the user wants that.
  ///
  /// \param show     is called when the player cannot be started
  /// \param starting see ReachPlayer
  /// \param progress called between the requests; returns false to stop. May be empty
  void RestoreQueue(const ShowMessage& show, const WhileStarting& starting = {},
                    const HandOverProgress& progress = {});

  /// Removes and returns sentences for the status bar: what has happened to the player.
  std::vector<std::string> TakeNotices();

  PlayCount CountOf(std::int32_t song);

 private:
  void Send(PlayerCommand command);
  /// Looks for a player that runs already, without a message.
  void LookForPlayer();
  /// \returns whether another player runs than before, or none
  bool FollowPlayer();
  bool HasNothingToPlay();
  bool AdoptPlayer();
  /// Tallow's own player, if it runs.
  std::optional<TallowPlayer> OwnPlayer();
  std::string PathOf(std::int32_t song) const;
  bool IsListKnown(const PlayerReport& state) const;
  Playing Describe(const std::optional<PlayerReport>& state);
  void FollowQueue(const std::optional<PlayerReport>& state);
  void FollowFailures(const PlayerReport& state);
  /// Finds out whether the song has other texts, because its details were read.
  void FollowTexts();
  void CountPlays(const std::optional<PlayerReport>& state);
  void KeepQueue();
  void Tell(const Playing& before);
  void TellVolume();
  std::vector<std::uint64_t> AskQueue(std::size_t from, std::size_t count);

  Tallow& tallow_;
  WinAMP_Control& player_;
  PlayingClocks clocks_;
  PlayingPreferences preferences_;
  VolumeOfLastTime volume_;
  KnownFailures failures_;
  HeardTime heard_;
  SavedQueue saved_;
  QueueEntries entries_;
  mutable SongTexts texts_;
  std::vector<PlayerListener*> listeners_;

  Playing now_;
  PlayerHandle known_ = 0;        ///< the player of the last Update
  PlayerHandle set_up_ = 0;       ///< the player that has the volume
  bool volume_is_begun_ = false;  ///< since the player was closed
  bool is_handing_over_ = false;
  /// The stored queue has songs that the player does not have, and the user has not changed the
  /// queue since.
  bool keeps_stored_queue_ = false;
  std::uint64_t last_failure_ = 0;
  std::size_t queue_length_ = 0;
  PlayerReport last_;              ///< the last answer
  std::uint64_t last_handed_ = 0;  ///< HandedOverSongs::Revision() at the last Update
  bool queue_is_new_ = false;      ///< was not stored yet
  Time queue_changed_;
  std::int32_t last_song_ = 0;  ///< the current song when its text was asked for
  std::string text_;            ///< of that song
  Time texts_asked_;
  bool texts_may_change_ = false;  ///< details were being read at that time
  /// Why the last song could not be played, until one plays; empty for none.
  std::string failure_;
  std::vector<std::string> notices_;
};

}  // namespace tallow
