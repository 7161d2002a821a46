// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/playing/system_player_model.h"

#include <algorithm>
#include <utility>

#include "app/data_paths.h"
#include "app/playing/player_choice.h"
#include "app/tallow.h"
#include "util/path_text.h"

namespace tallow {
namespace {

constexpr const char* kWinampCannot =
    "Winamp cannot do this. Tallow's own player can; choose it in Preferences, page Player.";

/// The texts of songs are asked for anew this often.
constexpr std::chrono::seconds kAskTextsAfter{1};

std::int32_t Seconds(std::int64_t ms) { return ms < 0 ? -1 : static_cast<std::int32_t>(ms / 1000); }

}  // namespace

SystemPlayerModel::SystemPlayerModel(Tallow& tallow, WinAMP_Control& player, PlayingClocks clocks)
    : tallow_(tallow),
      player_(player),
      clocks_(std::move(clocks)),
      preferences_(tallow.preferences),
      volume_(preferences_),
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

bool SystemPlayerModel::FollowPlayer() {
  const bool is_running = player_.IsRunning();
  if (is_running && player_.Window() == known_) return false;
  known_ = is_running ? player_.Window() : 0;
  if (!tallow_.handed_over.IsEmpty()) tallow_.handed_over.Clear();
  failures_.ForgetEntries();
  last_failure_ = 0;
  failure_.clear();
  return true;
}

void SystemPlayerModel::Update() {
  const bool was_set_up = known_ != 0 && known_ == set_up_;
  const bool is_another = FollowPlayer();
  std::optional<PlayerReport> state = AskState(player_, last_failure_);
  const bool is_running = player_.IsRunning();
  // A player that is late with its answer does what it did.
  if (!state && is_running && !is_another) return volume_.Poll(clocks_.now());
  if (was_set_up && !is_running && last_.status != kStopped)
    notices_.emplace_back("The player has ended. Play starts it again.");
  const Playing before = now_;
  if (state) FollowFailures(*state);
  FollowQueue(state);
  now_ = Describe(state);
  FollowTexts();
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
  now.texts_revision = now_.texts_revision;
  now.queue_generation = tallow_.handed_over.Generation();
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
  const bool has_list = state->count > 0;
  if (now.kind == PlayerKind::kTallowPlayer) {
    now.can_go_next = has_list && (state->upcoming > 0 || state->repeat == RepeatMode::kAll);
    // It begins the first song anew.
    now.can_go_previous = has_list;
  } else {
    const bool wraps = state->repeat != RepeatMode::kOff || state->shuffle;
    now.can_go_next = has_list && (state->upcoming > 0 || wraps);
    now.can_go_previous = has_list && (state->place > 0 || wraps);
  }
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
    const std::string path = PathOf(tallow_.handed_over.SongOf(failure.entry));
    failures_.Set(failure.entry, path, failure.reason);
    ++now_.failures_revision;
    failure_.clear();
    if (failure.reason.empty()) continue;
    failure_ = path.empty() ? "A song" : NameOfPath(path);
    failure_ += " cannot be played: " + failure.reason;
  }
  if (failure_.empty()) return;
  if (state.status == kStopped)
    notices_.push_back(std::exchange(failure_, {}));
  else if (state.failures.empty() && state.position > 0)
    failure_.clear();
}

void SystemPlayerModel::FollowTexts() {
  const bool is_reading = tallow_.details.IsReading();
  if (now_.song == last_song_ && clocks_.now() - texts_asked_ < kAskTextsAfter) return;
  texts_asked_ = clocks_.now();
  std::string text = texts_.AskAnew(now_.song);
  // Reading a few songs may begin and end between two calls.
  const bool is_other = std::exchange(last_song_, now_.song) == now_.song && text != text_;
  text_ = std::move(text);
  if (!std::exchange(texts_may_change_, is_reading) && !is_other) return;
  texts_.Forget();
  ++now_.texts_revision;
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
  const HeardTime::Entry entry{now_.queue_generation, now_.entry};
  if (!heard_.Update(entry, position, length, clocks_.now())) return;
  const std::string path = PathOf(now_.song);
  if (path.empty()) return;
  tallow_.play_counts.Add(path, clocks_.today());
  for (std::string& problem : tallow_.play_counts.TakeProblems())
    tallow_.AddProblem(std::move(problem));
}

std::vector<std::string> SystemPlayerModel::TakeNotices() { return std::exchange(notices_, {}); }

PlayCount SystemPlayerModel::CountOf(std::int32_t song) {
  return tallow_.play_counts.Of(PathOf(song));
}

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
  // The length that the views show is rounded.
  player_.SetTrackPosition(std::min(seconds, player_.GetTrackLength()));
  Update();
}

void SystemPlayerModel::ShowVolumeOfLastTime() {
  if (volume_is_begun_) return;
  volume_.Begin();
  TellVolume();
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
  // The user may choose it before a player is opened; the balance is that of last time then.
  if (!std::exchange(volume_is_begun_, true)) volume_.Begin();
  volume = std::clamp(volume, 0, kMaxVolume);
  if (player_.IsRunning()) player_.SetVolume(volume);
  VolumeWasSet(volume);
}

void SystemPlayerModel::SetBalance(std::int32_t balance) {
  if (!std::exchange(volume_is_begun_, true)) volume_.Begin();
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

bool SystemPlayerModel::Can(PlayerFeature /*feature*/) const {
  return (player_.IsRunning() ? player_.Kind() : KindOfPlayer(tallow_.player_path)) ==
         PlayerKind::kTallowPlayer;
}

std::string SystemPlayerModel::WhyNot(PlayerFeature feature) const {
  return Can(feature) ? std::string() : kWinampCannot;
}

std::string SystemPlayerModel::FailureOf(std::int32_t song) const {
  return failures_.IsEmpty() ? std::string() : failures_.OfPath(PathOf(song));
}

bool SystemPlayerModel::HasList() {
  const std::optional<PlayerReport> state = AskState(player_, last_failure_);
  if (!state && player_.IsRunning()) return last_.count > 0;
  return state && state->count > 0;
}

void SystemPlayerModel::LookForPlayer() {
  if (!player_.IsRunning()) player_.FindWinamp();
}

bool SystemPlayerModel::HasPlayer() {
  return player_.IsRunning() &&
         (player_.Window() == set_up_ || player_.Kind() == PlayerKind::kTallowPlayer);
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

bool SystemPlayerModel::CloseFormerPlayer() {
  if (!player_.IsRunning() || player_.Window() != set_up_ ||
      player_.Kind() == KindOfPlayer(tallow_.player_path))
    return false;
  ClosePlayer();
  return true;
}

}  // namespace tallow
