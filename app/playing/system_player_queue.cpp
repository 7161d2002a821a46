// SPDX-License-Identifier: GPL-3.0-or-later
// The queue of SystemPlayerModel: what is to come, handing songs over, storing and restoring them.
#include <utility>

#include "app/playing/flag_guard.h"
#include "app/playing/hand_over_record.h"
#include "app/playing/player_choice.h"
#include "app/playing/queue_restoring.h"
#include "app/playing/system_player_model.h"
#include "app/tallow.h"

namespace tallow {
namespace {

/// The queue is stored when it has not changed for this time.
constexpr std::chrono::seconds kStoreQueueAfter{5};
/// A longer queue is stored only at the end, because writing it takes long.
constexpr std::size_t kMaxStoredOften = 10'000;

}  // namespace

std::vector<std::uint64_t> SystemPlayerModel::AskQueue(std::size_t from, std::size_t count) {
  if (std::optional<TallowPlayer> own = OwnPlayer()) {
    std::optional<UpcomingEntries> answer = own->Upcoming(from, count);
    return answer ? std::move(answer->entries) : std::vector<std::uint64_t>();
  }
  std::vector<std::uint64_t> entries;
  for (std::size_t row = from; row < queue_length_ && entries.size() < count; ++row)
    entries.push_back(last_.entry + 1 + row);
  return entries;
}

PlayerModel::QueueRow SystemPlayerModel::QueueAt(std::size_t row) {
  const std::uint64_t entry = entries_.At(row);
  return {entry, tallow_.handed_over.SongOf(entry)};
}

std::vector<std::int32_t> SystemPlayerModel::SongsOfQueue() {
  std::vector<std::int32_t> songs;
  for (const std::uint64_t entry : entries_.All(queue_length_))
    if (const std::int32_t song = tallow_.handed_over.SongOf(entry)) songs.push_back(song);
  return songs;
}

void SystemPlayerModel::MoveInQueue(std::span<const std::uint64_t> entries, std::uint64_t before) {
  keeps_stored_queue_ = false;
  if (std::optional<TallowPlayer> own = OwnPlayer()) own->Move(entries, before);
  Update();
}

void SystemPlayerModel::RemoveFromQueue(std::span<const std::uint64_t> entries) {
  keeps_stored_queue_ = false;
  if (std::optional<TallowPlayer> own = OwnPlayer()) own->Remove(entries);
  Update();
}

void SystemPlayerModel::PlayFromQueue(std::uint64_t entry) {
  keeps_stored_queue_ = false;
  if (std::optional<TallowPlayer> own = OwnPlayer()) {
    own->Play(entry);
  } else if (player_.IsRunning() && entry > 0) {
    player_.SetListPlace(static_cast<std::int32_t>(entry - 1));
    player_.SendWinampCommand(kPlay);
  }
  Update();
}

bool SystemPlayerModel::HasNothingToPlay() {
  LookForPlayer();
  if (!player_.IsRunning()) return true;
  const std::optional<PlayerReport> state = AskState(player_, last_failure_);
  // A player that is late with its answer may play.
  if (!state || state->status != kStopped || state->upcoming > 0) return false;
  // What a Winamp in random order has left is not known.
  return player_.Kind() == PlayerKind::kTallowPlayer || !state->shuffle || state->count == 0;
}

void SystemPlayerModel::HandOverSongs(const ShowMessage& show, HandOffPanel& panel,
                                      const HandOverProgress& progress,
                                      const WhileStarting& while_starting) {
  PlayOrder how = tallow_.play_order;
  const bool is_another_player = CloseFormerPlayer();
  if (is_another_player || (how.to != HandOverTo::kReplace && HasNothingToPlay()))
    how.to = HandOverTo::kReplace;
  FollowPlayer();
  keeps_stored_queue_ = false;
  HandOverRecord record(tallow_.handed_over, how.origin, panel, [this] { FollowPlayer(); });
  {
    const FlagGuard handing_over(is_handing_over_);
    HandOver({tallow_.SongsToPlay, how.to, how.first}, tallow_.library, player_, show, record,
             progress, while_starting);
  }
  // If Tallow is killed, the next start knows the songs of the player.
  if (tallow_.handed_over.Count() <= kMaxStoredOften) StoreQueue();
}

void SystemPlayerModel::DropStoredQueue() {
  set_up_ = 0;
  queue_is_new_ = false;
  keeps_stored_queue_ = false;
  saved_.Store({});
}

void SystemPlayerModel::KeepQueue() {
  if (!queue_is_new_ || queue_length_ > kMaxStoredOften ||
      clocks_.now() - queue_changed_ < kStoreQueueAfter)
    return;
  // Unless it is stored now, another attempt is made after some time.
  queue_changed_ = clocks_.now();
  StoreQueue();
}

void SystemPlayerModel::StoreQueue() {
  // A player that has ended by itself leaves the file as it was before.
  if (!preferences_.RestoresQueue() || keeps_stored_queue_ || tallow_.handed_over.IsEmpty()) {
    queue_is_new_ = false;
    return;
  }
  std::optional<TallowPlayer> own = OwnPlayer();
  if (!own) return;
  const std::optional<PlayerReport> state = AskState(player_, last_failure_);
  if (!state) return;
  std::vector<std::uint64_t> entries;
  if (state->status != kStopped || state->upcoming > 0) {
    entries = entries_.All(state->upcoming);
    // The player has not answered all questions.
    if (entries.size() != state->upcoming) return;
    entries.insert(entries.begin(), state->entry);
  }
  queue_is_new_ = false;
  saved_.Store(SongsToSave(tallow_, entries, *state));
  for (std::string& problem : saved_.TakeProblems()) tallow_.AddProblem(std::move(problem));
}

bool SystemPlayerModel::AdoptPlayer() {
  LookForPlayer();
  std::optional<TallowPlayer> own = OwnPlayer();
  if (!own) return false;
  const std::optional<TallowPlayerState> state = own->State();
  if (!state || state->count == 0) return false;
  FollowPlayer();
  set_up_ = player_.Window();
  volume_is_begun_ = true;
  VolumeWasSet(state->volume);
  BalanceWasSet(state->balance);
  std::vector<std::uint64_t> entries = entries_.All(state->upcoming);
  entries.insert(entries.begin(), state->entry);
  tallow_.handed_over.Clear();
  tallow_.handed_over.Add(SongsOfEntries(tallow_.library, saved_.Load(), entries, state->count),
                          {});
  Update();
  return true;
}

void SystemPlayerModel::RestoreQueue(const ShowMessage& show, const WhileStarting& starting,
                                     const HandOverProgress& progress) {
  if (KindOfPlayer(tallow_.player_path) != PlayerKind::kTallowPlayer) return;
  const bool is_adopted = AdoptPlayer();
  if (is_adopted || !preferences_.RestoresQueue()) return;
  const SavedSongs saved = saved_.Load();
  for (std::string& problem : saved_.TakeProblems()) tallow_.AddProblem(std::move(problem));
  const RestoredSongs songs = SongsToRestore(tallow_.library, saved);
  if (songs.records.empty() || !ReachPlayer(player_, show, starting)) return;
  FollowPlayer();
  std::optional<TallowPlayer> own = OwnPlayer();
  const std::optional<PlayerReport> state = AskState(player_, last_failure_);
  if (!own || !state || state->count > 0) return;
  SetUpNewPlayer();
  const FlagGuard handing_over(is_handing_over_);
  const bool is_complete =
      CueSongs(*own, songs, preferences_.Shuffles(), tallow_.handed_over, progress);
  keeps_stored_queue_ = !is_complete || songs.paths.size() < saved.paths.size();
  Update();
}

}  // namespace tallow
