// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/playing/system_player_model.h"

#include <algorithm>
#include <utility>

#include "app/data_paths.h"
#include "app/playing/hand_over_record.h"
#include "app/playing/player_choice.h"
#include "app/playing/queue_restoring.h"
#include "app/tallow.h"

namespace tallow {
namespace {

constexpr const char* kWinampCannot =
    "Winamp cannot do this. Tallow's own player can; choose it in Preferences, page Player.";

/// The queue is stored when it has not changed for this time.
constexpr std::chrono::seconds kStoreQueueAfter{5};
/// A longer queue is stored only at the end, because writing it takes long.
constexpr std::size_t kMaxStoredOften = 10'000;

std::int32_t Seconds(std::int64_t ms) { return ms < 0 ? -1 : static_cast<std::int32_t>(ms / 1000); }

}  // namespace

SystemPlayerModel::SystemPlayerModel(Tallow& tallow, WinAMP_Control& player, PlayingClocks clocks)
    : tallow_(tallow),
      player_(player),
      clocks_(std::move(clocks)),
      preferences_(tallow.preferences),
      volume_(preferences_),
      counts_(GroupingFolder(tallow.application_folder)),
      saved_(SystemFolder(tallow.application_folder)),
      entries_([this](std::size_t from, std::size_t count) { return AskQueue(from, count); }),
      texts_(tallow) {
  volume_.Begin();
}

SystemPlayerModel::~SystemPlayerModel() { volume_.Store(); }

void SystemPlayerModel::AddListener(PlayerListener& listener) { listeners_.push_back(&listener); }

void SystemPlayerModel::RemoveListener(PlayerListener& listener) {
  std::erase(listeners_, &listener);
}

void SystemPlayerModel::Tell(const Playing& before) {
  if (before == now_) return;
  // A copy, because a listener may remove itself, and now_ may change meanwhile.
  const Playing now = now_;
  for (PlayerListener* const listener : std::vector(listeners_))
    if (std::ranges::find(listeners_, listener) != listeners_.end())
      listener->PlayingChanged(before, now);
}

void SystemPlayerModel::TellVolume() {
  for (PlayerListener* const listener : std::vector(listeners_))
    if (std::ranges::find(listeners_, listener) != listeners_.end()) listener->VolumeChanged();
}

void SystemPlayerModel::FollowPlayer() {
  const bool is_running = player_.IsRunning();
  if (is_running && player_.Window() == known_) return;
  known_ = is_running ? player_.Window() : 0;
  if (!tallow_.handed_over.IsEmpty()) tallow_.handed_over.Clear();
  failures_.ForgetEntries();
  last_failure_ = 0;
}

void SystemPlayerModel::Update() {
  FollowPlayer();
  std::optional<PlayerReport> state = AskState(player_, last_failure_);
  const Playing before = now_;
  if (state) FollowFailures(*state);
  FollowQueue(state);
  now_ = Describe(state);
  CountPlays(state);
  last_ = state ? *std::move(state) : PlayerReport();
  volume_.Poll(clocks_.now());
  KeepQueue();
  Tell(before);
}

bool SystemPlayerModel::IsListKnown(const PlayerReport& state) const {
  const std::size_t handed_over = tallow_.handed_over.Count();
  if (handed_over == 0) return false;
  if (player_.Kind() == PlayerKind::kTallowPlayer) return true;
  // While songs are handed over, the player may already have some that were not recorded yet.
  return state.count == handed_over || (is_handing_over_ && state.count > handed_over);
}

Playing SystemPlayerModel::Describe(const std::optional<PlayerReport>& state) {
  Playing now;
  now.queue_revision = now_.queue_revision;
  now.failures_revision = now_.failures_revision;
  if (!state) {
    now.kind = KindOfPlayer(tallow_.player_path);
    now.shuffle = preferences_.Shuffles();
    now.repeat = preferences_.Repeat();
    return now;
  }
  now.is_running = true;
  now.kind = player_.Kind();
  now.status = state->status;
  now.shuffle = state->shuffle;
  now.repeat = state->repeat;
  const bool wraps = state->repeat != RepeatMode::kOff;
  now.can_go_next = state->upcoming > 0 || (state->count > 0 && (wraps || state->shuffle));
  now.can_go_previous = state->count > 0 && (state->place > 0 || wraps || state->shuffle);
  if (state->status == kStopped) return now;
  now.position = Seconds(state->position);
  now.length = state->length > 0 ? Seconds(state->length + 500) : -1;
  if (!IsListKnown(*state)) return now;
  now.song = tallow_.handed_over.SongOf(state->entry);
  if (now.song == 0) return now;
  now.entry = state->entry;
  now.origin = tallow_.handed_over.OriginOf(state->entry);
  return now;
}

void SystemPlayerModel::FollowFailures(const PlayerReport& state) {
  for (const PlayFailure& failure : state.failures) {
    last_failure_ = std::max(last_failure_, failure.number);
    failures_.Set(failure.entry, PathOf(tallow_.handed_over.SongOf(failure.entry)), failure.reason);
    ++now_.failures_revision;
  }
}

void SystemPlayerModel::FollowQueue(const std::optional<PlayerReport>& state) {
  const PlayerReport now = state.value_or(PlayerReport());
  const std::size_t length = state && IsListKnown(*state) ? state->upcoming : 0;
  const std::uint64_t handed = tallow_.handed_over.Revision();
  if (length == queue_length_ && handed == last_handed_ && now.revision == last_.revision &&
      now.entry == last_.entry && now.count == last_.count)
    return;
  queue_length_ = length;
  last_handed_ = handed;
  entries_.Forget();
  ++now_.queue_revision;
  queue_is_new_ = true;
  queue_changed_ = clocks_.now();
}

void SystemPlayerModel::CountPlays(const std::optional<PlayerReport>& state) {
  const std::int64_t position = state ? state->position : -1;
  const std::int64_t length = state ? state->length : -1;
  if (!heard_.Update(now_.entry, position, length, clocks_.now())) return;
  const std::string path = PathOf(now_.song);
  if (path.empty()) return;
  counts_.Add(path, clocks_.today());
  for (std::string& problem : counts_.TakeProblems()) tallow_.AddProblem(std::move(problem));
}

PlayCount SystemPlayerModel::CountOf(std::int32_t song) { return counts_.Of(PathOf(song)); }

std::string SystemPlayerModel::PathOf(std::int32_t song) const {
  return tallow_.library.IsPresent(song) ? tallow_.library.Song(song).Path() : std::string();
}

std::optional<TallowPlayer> SystemPlayerModel::OwnPlayer() {
  if (!player_.IsRunning() || player_.Kind() != PlayerKind::kTallowPlayer) return std::nullopt;
  return player_.OwnPlayer();
}

void SystemPlayerModel::Send(PlayerCommand command) {
  if (!player_.IsRunning()) return;
  player_.SendWinampCommand(command);
  Update();
}

void SystemPlayerModel::PlayOrPause() {
  const std::optional<PlayerReport> state = AskState(player_, last_failure_);
  if (state) Send(state->status == kStopped ? kPlay : kPause);
}

void SystemPlayerModel::Seek(std::int32_t seconds) {
  if (!player_.IsRunning()) return;
  player_.SetTrackPosition(seconds);
  Update();
}

void SystemPlayerModel::BeginVolume() {
  if (std::exchange(volume_is_begun_, true)) return;
  volume_.Begin();
  TellVolume();
}

void SystemPlayerModel::SetUpPlayer() {
  BeginVolume();
  set_up_ = player_.Window();
  player_.SetVolume(volume_.Volume());
  player_.SetBalance(volume_.Balance());
  std::optional<TallowPlayer> own = OwnPlayer();
  if (!own) return;
  player_.SetShuffle(preferences_.Shuffles());
  own->SetRepeat(preferences_.Repeat());
  own->SetGain(preferences_.Gain());
  own->SetDevice(preferences_.Device());
}

void SystemPlayerModel::SetUpNewPlayer() {
  if (player_.Window() != 0 && player_.Window() != set_up_) SetUpPlayer();
}

void SystemPlayerModel::SetVolume(std::int32_t volume) {
  // The user has chosen it before a player was opened.
  volume_is_begun_ = true;
  volume = std::clamp(volume, 0, kMaxVolume);
  if (player_.IsRunning()) player_.SetVolume(volume);
  VolumeWasSet(volume);
}

void SystemPlayerModel::SetBalance(std::int32_t balance) {
  volume_is_begun_ = true;
  balance = std::clamp(balance, -kMaxBalance, kMaxBalance);
  if (player_.IsRunning()) player_.SetBalance(balance);
  BalanceWasSet(balance);
}

void SystemPlayerModel::VolumeWasSet(std::int32_t volume) {
  // The player that a bar of the panel has found keeps what the bar shows.
  if (player_.Window() != 0) volume_is_begun_ = true;
  volume_.SetVolume(volume, clocks_.now());
  TellVolume();
}

void SystemPlayerModel::BalanceWasSet(std::int32_t balance) {
  // The player that a bar of the panel has found keeps what the bar shows.
  if (player_.Window() != 0) volume_is_begun_ = true;
  volume_.SetBalance(balance, clocks_.now());
  TellVolume();
}

void SystemPlayerModel::SetShuffle(bool on) {
  preferences_.SetShuffles(on);
  if (player_.IsRunning()) player_.SetShuffle(on);
  Update();
}

void SystemPlayerModel::SetRepeat(RepeatMode mode) {
  if (mode == RepeatMode::kOne && !Can(PlayerFeature::kRepeatOne)) return;
  preferences_.SetRepeat(mode);
  if (std::optional<TallowPlayer> own = OwnPlayer())
    own->SetRepeat(mode);
  else if (player_.IsRunning())
    player_.SetRepeat(mode == RepeatMode::kAll);
  Update();
}

void SystemPlayerModel::SetGain(ReplayGain mode) {
  preferences_.SetGain(mode);
  if (std::optional<TallowPlayer> own = OwnPlayer()) own->SetGain(mode);
}

void SystemPlayerModel::SetDevice(const std::string& name) {
  preferences_.SetDevice(name);
  if (std::optional<TallowPlayer> own = OwnPlayer()) own->SetDevice(name);
}

bool SystemPlayerModel::Can(PlayerFeature /*feature*/) const {
  return (player_.IsRunning() ? player_.Kind() : KindOfPlayer(tallow_.player_path)) ==
         PlayerKind::kTallowPlayer;
}

std::string SystemPlayerModel::WhyNot(PlayerFeature feature) const {
  return Can(feature) ? std::string() : kWinampCannot;
}

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
  if (std::optional<TallowPlayer> own = OwnPlayer()) own->Move(entries, before);
  Update();
}

void SystemPlayerModel::RemoveFromQueue(std::span<const std::uint64_t> entries) {
  if (std::optional<TallowPlayer> own = OwnPlayer()) own->Remove(entries);
  Update();
}

void SystemPlayerModel::PlayFromQueue(std::uint64_t entry) {
  if (std::optional<TallowPlayer> own = OwnPlayer()) {
    own->Play(entry);
  } else if (player_.IsRunning() && entry > 0) {
    player_.SetListPlace(static_cast<std::int32_t>(entry - 1));
    player_.SendWinampCommand(kPlay);
  }
  Update();
}

std::string SystemPlayerModel::FailureOf(std::int32_t song) const {
  return failures_.IsEmpty() ? std::string() : failures_.OfPath(PathOf(song));
}

void SystemPlayerModel::HandOverSongs(const ShowMessage& show, HandOffPanel& panel,
                                      const HandOverProgress& progress,
                                      const WhileStarting& while_starting) {
  PlayOrder how = tallow_.play_order;
  if (how.to != HandOverTo::kReplace) {
    const std::optional<PlayerReport> state = AskState(player_, last_failure_);
    const bool has_ended = !state || (state->status == kStopped && state->upcoming == 0);
    if (has_ended) how.to = HandOverTo::kReplace;
  }
  FollowPlayer();
  HandOverRecord record(tallow_.handed_over, how.origin, panel, [this] { FollowPlayer(); });
  is_handing_over_ = true;
  HandOver({tallow_.SongsToPlay, how.to, how.first}, tallow_.library, player_, show, record,
           progress, while_starting);
  is_handing_over_ = false;
}

bool SystemPlayerModel::HasList() {
  const std::optional<PlayerReport> state = AskState(player_, last_failure_);
  return state && state->count > 0;
}

void SystemPlayerModel::LookForPlayer() {
  if (player_.Window() == 0 || !player_.IsRunning()) player_.FindWinamp();
}

void SystemPlayerModel::ClosePlayer() {
  volume_.Store();
  volume_is_begun_ = false;
  set_up_ = 0;
  if (!player_.IsRunning()) return;
  player_.SendWinampCommand(kStop);
  player_.ClearWinampPlaylist();
  player_.SendWinampCommand(kClosePlayer);
  tallow_.handed_over.Clear();
}

void SystemPlayerModel::DropStoredQueue() {
  queue_is_new_ = false;
  saved_.Store({});
}

void SystemPlayerModel::KeepQueue() {
  if (!queue_is_new_ || queue_length_ > kMaxStoredOften ||
      clocks_.now() - queue_changed_ < kStoreQueueAfter)
    return;
  StoreQueue();
}

void SystemPlayerModel::StoreQueue() {
  queue_is_new_ = false;
  // A player that has ended by itself leaves the file as it was before.
  if (!preferences_.RestoresQueue() || tallow_.handed_over.IsEmpty()) return;
  std::optional<TallowPlayer> own = OwnPlayer();
  const std::optional<PlayerReport> state = AskState(player_, last_failure_);
  if (!own || !state) return;
  std::vector<std::uint64_t> entries;
  if (state->status != kStopped || state->upcoming > 0) {
    entries = entries_.All(state->upcoming);
    entries.insert(entries.begin(), state->entry);
  }
  saved_.Store(SongsToSave(tallow_, entries, state->position));
  for (std::string& problem : saved_.TakeProblems()) tallow_.AddProblem(std::move(problem));
}

void SystemPlayerModel::RestoreQueue(const ShowMessage& show, const WhileStarting& go_on) {
  if (!preferences_.RestoresQueue() ||
      KindOfPlayer(tallow_.player_path) != PlayerKind::kTallowPlayer)
    return;
  const RestoredSongs songs = SongsToRestore(tallow_.library, saved_.Load());
  for (std::string& problem : saved_.TakeProblems()) tallow_.AddProblem(std::move(problem));
  if (songs.records.empty() || !ReachPlayer(player_, show, go_on)) return;
  FollowPlayer();
  std::optional<TallowPlayer> own = OwnPlayer();
  const std::optional<PlayerReport> state = AskState(player_, last_failure_);
  if (!own || !state || state->count > 0) return;
  SetUpNewPlayer();
  is_handing_over_ = true;
  CueSongs(*own, songs, tallow_.handed_over, go_on);
  is_handing_over_ = false;
  Update();
}

}  // namespace tallow
