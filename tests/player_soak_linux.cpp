// SPDX-License-Identifier: GPL-3.0-or-later
// Plays very short songs with the real player, without sound and as fast as possible, while three
// clients send random commands at once. Fails when the player ends, when it plays another song than
// it says, when the songs do not follow each other in the order of its queue, or when it grows.
//
// Phases alternate. In a storm the three clients send commands at once; every state that the player
// answers must be consistent: a song is recognized by its length, which is different for each. In a
// quiet phase one client compares the songs that play with the queue, which it has read before.
//
// Usage: player_soak PLAYER CHANGES [SEED]
//   CHANGES  of the track, as seen by the clients; the memory is checked from 10,000 on
#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <mutex>
#include <random>
#include <stdexcept>
#include <string>
#include <sys/stat.h>
#include <thread>
#include <utility>
#include <vector>

#include "player/tallow_player.h"
#include "tests/resident_memory_linux.h"

namespace tallow {
namespace {

using Numbers = std::vector<std::uint64_t>;

/// Lengths of the songs, in ms, and how much a length may differ, because MP3 has whole frames.
constexpr std::array<std::int64_t, 5> kLengths{200, 500, 800, 1100, 1400};
constexpr std::int64_t kTolerance = 120;
/// The index of a file that cannot be played, after those of the songs.
constexpr std::size_t kBroken = kLengths.size();

constexpr int kClients = 3;
constexpr int kStormCommands = 60;  ///< of each client
constexpr std::size_t kMaxList = 400;
/// A quiet phase ends after so many changes or states.
constexpr std::size_t kQuietChanges = 20;
constexpr int kQuietStates = 2000;
constexpr int kRepeatedStates = 40;

/// At least one change in this many must be compared with the queue.
constexpr std::size_t kMinFollowed = 20;

constexpr std::size_t kWarmUp = 5'000;
constexpr std::size_t kMemoryFrom = 10'000;
constexpr long kMaxGrowthKib = 5 * 1024;

void Require(bool condition, const std::string& what) {
  if (!condition) throw std::runtime_error(what);
}

/// The files, and which of them each entry of the player is.
class Songs {
 public:
  explicit Songs(const std::string& folder) {
    for (const std::int64_t length : kLengths) {
      const std::string path = folder + "/" + std::to_string(length) + ".mp3";
      const std::string command = "sox -n -r 22050 -c 1 -b 16 -t wav - synth " +
                                  std::to_string(static_cast<double>(length) / 1000) +
                                  " sine 440 2>/dev/null | lame --quiet -b 32 - '" + path + "'";
      Require(std::system(command.c_str()) == 0, "sox and lame are required");
      paths_.push_back(path);
    }
    paths_.push_back(folder + "/broken.mp3");
    std::ofstream(paths_.back()) << "no sound";
  }

  /// Adds random files to the player's list.
  void Add(TallowPlayer player, std::int64_t at, std::size_t count, std::mt19937& random) {
    std::vector<std::size_t> songs(count);
    std::vector<std::string> paths;
    for (std::size_t& song : songs) {
      song = random() % 40 == 0 ? kBroken : random() % kLengths.size();
      paths.push_back(paths_[song]);
    }
    // Whoever sees one of these entries waits here until it is known.
    const std::lock_guard lock(mutex_);
    const std::int64_t first = player.AddFiles(at, paths);
    // The entry to add before may be gone.
    if (first == kNoSuchEntry) return;
    Require(first > 0, "files were not added: " + std::to_string(first));
    Require(static_cast<std::size_t>(first) >= song_of_.size(), "an entry number was used again");
    song_of_.resize(static_cast<std::size_t>(first), kBroken);
    song_of_.insert(song_of_.end(), songs.begin(), songs.end());
  }

  std::size_t SongOf(std::uint64_t entry) {
    const std::lock_guard lock(mutex_);
    Require(entry > 0 && entry < song_of_.size(), "unknown entry " + std::to_string(entry));
    return song_of_[entry];
  }

 private:
  std::vector<std::string> paths_;
  std::mutex mutex_;
  std::vector<std::size_t> song_of_;  ///< by entry number; that of entry 0 means nothing
};

/// Counts the changes of the track that one client has seen.
class Client {
 public:
  Client(Songs& songs, unsigned seed)
      : songs_(songs), random_(seed), link_(SystemPlayerLink()), handle_(link_->Find()) {
    Require(handle_ != 0, "no player was found");
  }

  std::size_t Changes() const noexcept { return changes_; }
  /// The number of changes that were compared with the queue.
  std::size_t Followed() const noexcept { return followed_; }

  void Storm() {
    for (int k = 0; k < kStormCommands; ++k) {
      RandomCommand();
      if (random_() % 2 == 0) State();
    }
  }

  /// Compares what plays with the queue while no other client sends commands.
  void Quiet() {
    const auto [before, queue] = Prepare();
    Require(queue.size() == before.upcoming, "the queue is not as long as the player says");
    const bool repeats = random_() % 4 == 0;
    if (repeats) own_.SetRepeat(RepeatMode::kOne);
    Command(kPause);
    is_quiet_ = true;
    std::size_t index = 0;
    for (int k = 0; k < kQuietStates; ++k) {
      const TallowPlayerState now = State();
      if (repeats && songs_.SongOf(before.entry) != kBroken) {
        Require(now.entry == before.entry, "the track is not repeated");
        if (k == kRepeatedStates) break;
        continue;
      }
      if (repeats || now.upcoming > queue.size()) break;
      const std::size_t next = queue.size() - now.upcoming;
      Require(next >= index, "the player went back");
      Require(now.entry == (next == 0 ? before.entry : queue[next - 1]),
              "entry " + std::to_string(now.entry) + " plays as number " + std::to_string(next) +
                  " of the queue");
      if (next > index) changes_ += next - index - 1;  // State has counted one
      followed_ += next - index;
      index = next;
      if (now.status == kStopped || index >= kQuietChanges) break;
      std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    is_quiet_ = false;
    own_.SetRepeat(RepeatMode::kOff);
  }

 private:
  std::int64_t User(std::int64_t value, std::int64_t request) {
    return link_->Send(handle_, kWmUser, value, request);
  }
  void Command(PlayerCommand command) { link_->Send(handle_, kWmCommand, command, 0); }

  /// Asks for the state and checks it.
  TallowPlayerState State() {
    const std::optional<TallowPlayerState> state = own_.State();
    Require(state.has_value(), "the player does not answer");
    Require((state->count == 0) == (state->entry == 0),
            "an entry without a list, or none with one");
    if (state->entry == 0) return *state;
    Require(state->place < state->count, "the place is not in the list");
    const std::size_t song = songs_.SongOf(state->entry);
    if (song != kBroken && state->length >= 0)
      Require(std::abs(state->length - kLengths[song]) <= kTolerance,
              "a song of " + std::to_string(state->length) + " ms plays, not one of " +
                  std::to_string(kLengths[song]));
    // A seek that waits for the length may be to a position behind the end.
    if (is_quiet_ && state->length >= 0)
      Require(state->position <= state->length + kTolerance, "the position is behind the end");
    if (std::exchange(last_entry_, state->entry) != state->entry) ++changes_;
    return *state;
  }

  /// Makes the player pause at a song with others behind it, and nothing repeat.
  /// \returns the state and the queue
  std::pair<TallowPlayerState, Numbers> Prepare() {
    own_.SetRepeat(RepeatMode::kOff);
    User(0, kClearList);
    songs_.Add(own_, kAtEnd, 100 + random_() % 200, random_);
    if (random_() % 2 == 0) songs_.Add(own_, kPlayNext, 3, random_);
    User(static_cast<std::int64_t>(random_() % 2), kSetShuffle);
    Command(kPlay);
    Command(kPause);
    for (int k = 0; State().status != kPaused; ++k) {
      Require(k < 1000, "the player does not pause");
      Command(State().status == kStopped ? kPlay : kPause);
    }
    // A paused player still leaves out a song that it finds it cannot play.
    for (TallowPlayerState before = State();;) {
      Numbers queue = own_.Upcoming(0, TallowPlayer::kMaxAsked)->entries;
      const TallowPlayerState after = State();
      if (after.entry == before.entry && after.upcoming == before.upcoming)
        return {after, std::move(queue)};
      before = after;
    }
  }

  Numbers SomeUpcoming() {
    const std::optional<UpcomingEntries> upcoming = own_.Upcoming(0, 50);
    Require(upcoming.has_value(), "the player does not answer");
    for (const std::uint64_t entry : upcoming->entries) songs_.SongOf(entry);
    Numbers some = upcoming->entries;
    std::shuffle(some.begin(), some.end(), random_);
    some.resize(std::min<std::size_t>(some.size(), random_() % 5));
    return some;
  }

  void RandomCommand() {
    switch (random_() % 24) {
      case 0:
      case 1:
        return Command(kNextTrack);
      case 2:
        return Command(kPreviousTrack);
      case 3:
        return Command(kPause);
      case 4:
        return Command(random_() % 4 == 0 ? kStop : kPlay);
      case 5:
        return Command(random_() % 8 == 0 ? kStopAfterTrack : kPlay);
      case 6:
        User(static_cast<std::int64_t>(random_() % 1500), kSeek);
        return;
      case 7:
        User(static_cast<std::int64_t>(random_() % 256), kSetVolume);
        return;
      case 8:
        User(static_cast<std::int64_t>(random_() % 255), kSetBalance);
        return;
      case 9:
        User(static_cast<std::int64_t>(random_() % 2), kSetShuffle);
        return;
      case 10:
        return own_.SetRepeat(static_cast<RepeatMode>(random_() % 3));
      case 11:
        return own_.SetGain(static_cast<ReplayGain>(random_() % 3));
      case 12:
        User(static_cast<std::int64_t>(random_() % kMaxList), kSetPlace);
        return;
      default:
        return RandomListCommand();
    }
  }

  void RandomListCommand() {
    const Numbers some = SomeUpcoming();
    switch (random_() % 7) {
      case 0:
        if (!some.empty()) own_.Move(some, random_() % 2 == 0 ? 0 : some.front());
        return;
      case 1:
        return own_.Remove(some);
      case 2:
        if (!some.empty()) own_.Play(some.front());
        return;
      case 3:
        if (!some.empty()) own_.Cue(some.front(), static_cast<std::int64_t>(random_() % 1000));
        return;
      case 4:
        return songs_.Add(own_, kPlayNext, 1 + random_() % 3, random_);
      case 5:
        if (State().count > kMaxList) User(0, kClearList);
        return songs_.Add(own_, kAtEnd, 1 + random_() % 30, random_);
      default:
        // Before an entry that may be gone by now.
        return songs_.Add(own_, some.empty() ? kAtEnd : static_cast<std::int64_t>(some.front()),
                          1 + random_() % 3, random_);
    }
  }

  Songs& songs_;
  std::mt19937 random_;
  std::unique_ptr<PlayerLink> link_;
  PlayerHandle handle_;
  TallowPlayer own_{*link_, handle_};
  std::uint64_t last_entry_ = 0;
  std::size_t changes_ = 0;
  std::size_t followed_ = 0;
  bool is_quiet_ = false;  ///< no other client sends commands
};

/// Runs the clients at once.
void Storm(std::vector<Client>& clients) {
  std::array<std::string, kClients> failures;
  {
    std::vector<std::jthread> threads;
    for (std::size_t k = 0; k < clients.size(); ++k)
      threads.emplace_back([&client = clients[k], &failure = failures[k]] {
        try {
          client.Storm();
        } catch (const std::exception& error) {
          failure = error.what();
        }
      });
  }
  for (const std::string& failure : failures) Require(failure.empty(), failure);
}

/// Starts the player. \returns its process id
std::string Start(PlayerLink& link, const std::string& player, const std::string& folder) {
  const std::string script = folder + "/player";
  std::ofstream(script) << "#!/bin/sh\necho $$ > '" << folder << "/pid'\nexec '" << player
                        << "' --audio-file /dev/null \"$@\" 2> /dev/null\n";
  Require(chmod(script.c_str(), S_IRWXU) == 0 && link.Start(script), "the player cannot be run");
  while (link.FollowStart() != PlayerStart::kAnswers) {
    Require(link.FollowStart() != PlayerStart::kEnded, "the player has ended");
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
  std::string pid;
  std::getline(std::ifstream(folder + "/pid"), pid);
  return pid;
}

void Soak(const std::string& player, std::size_t changes, unsigned seed,
          const std::string& folder) {
  Songs songs(folder);
  const std::unique_ptr<PlayerLink> link = SystemPlayerLink();
  const std::string pid = Start(*link, player, folder);
  std::vector<Client> clients;
  clients.reserve(kClients);
  for (unsigned k = 0; k < kClients; ++k) clients.emplace_back(songs, seed + k);
  long warm = 0;
  std::size_t seen = 0;
  std::size_t round = 0;
  while (seen < changes) {
    Storm(clients);
    clients[round++ % kClients].Quiet();
    seen = 0;
    for (const Client& client : clients) seen = std::max(seen, client.Changes());
    Require(link->IsRunning(link->Find()), "the player has ended");
    if (warm == 0 && seen >= kWarmUp) warm = ResidentKib(pid);
  }
  const long growth = warm == 0 ? 0 : ResidentKib(pid) - warm;
  std::size_t followed = 0;
  for (const Client& client : clients) followed += client.Followed();
  std::printf("%zu changes, %zu compared with the queue, %ld KiB of growth\n", seen, followed,
              growth);
  // Otherwise nothing was tested.
  Require(followed >= changes / kMinFollowed, "too few songs were compared with the queue");
  if (changes >= kMemoryFrom)
    Require(growth <= kMaxGrowthKib, "the player has grown by " + std::to_string(growth) + " KiB");
  link->Send(link->Find(), kWmCommand, kClosePlayer, 0);
}

int Run(const std::string& player, std::size_t changes, unsigned seed) {
  char folder[] = "/tmp/tallow-soak-XXXXXX";
  if (mkdtemp(folder) == nullptr) return 1;
  setenv("XDG_RUNTIME_DIR", folder, 1);
  setenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent", 1);
  int code = 0;
  try {
    Soak(player, changes, seed, folder);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "player_soak: %s (seed %u)\n", error.what(), seed);
    const std::unique_ptr<PlayerLink> link = SystemPlayerLink();
    link->Send(link->Find(), kWmCommand, kClosePlayer, 0);
    code = 1;
  }
  return std::system(("rm -rf " + std::string(folder)).c_str()) == 0 ? code : 1;
}

}  // namespace
}  // namespace tallow

int main(int argc, char** argv) {
  if (argc < 3) return 2;
  return tallow::Run(argv[1], std::strtoul(argv[2], nullptr, 10),
                     argc > 3 ? static_cast<unsigned>(std::strtoul(argv[3], nullptr, 10)) : 1);
}
