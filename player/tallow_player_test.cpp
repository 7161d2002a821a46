// SPDX-License-Identifier: GPL-3.0-or-later
#include "player/tallow_player.h"

#include <gtest/gtest.h>
#include <numeric>

#include "tests/tallow_player_stand_in.h"

namespace tallow {
namespace {

using Texts = std::vector<std::string>;
using Numbers = std::vector<std::uint64_t>;

class TallowPlayerTest : public testing::Test {
 protected:
  /// Makes the list 1 to `count`, of which the first plays.
  void FillList(std::size_t count) {
    for (std::size_t k = 1; k <= count; ++k) link.list.push_back({k, std::to_string(k)});
    link.last_number = count;
    link.status = kPlaying;
  }
  Numbers List() const {
    Numbers numbers;
    for (const auto& entry : link.list) numbers.push_back(entry.number);
    return numbers;
  }

  TallowPlayerStandIn link;
  TallowPlayer player{link, 7};
};

TEST_F(TallowPlayerTest, TheStateIsRead) {
  FillList(5);
  link.current = 1;
  link.position = 61'999;
  link.length = 215'000;
  link.revision = 9;
  link.balance = -127;
  link.shuffle = true;
  link.repeat = "one";
  link.gain = "album";
  link.device = "alsa/default";
  link.device_missing = true;
  link.ended = true;
  const std::optional<TallowPlayerState> state = player.State();
  ASSERT_TRUE(state);
  EXPECT_EQ(state->status, kPlaying);
  EXPECT_EQ(state->position, 61'999);
  EXPECT_EQ(state->length, 215'000);
  EXPECT_EQ(state->entry, 2U);
  EXPECT_EQ(state->place, 1U);
  EXPECT_EQ(state->count, 5U);
  EXPECT_EQ(state->upcoming, 3U);
  EXPECT_EQ(state->revision, 9U);
  EXPECT_EQ(state->volume, 255);
  EXPECT_EQ(state->balance, -127);
  EXPECT_TRUE(state->shuffle);
  EXPECT_EQ(state->repeat, RepeatMode::kOne);
  EXPECT_EQ(state->gain, ReplayGain::kAlbum);
  EXPECT_EQ(state->device, "alsa/default");
  EXPECT_TRUE(state->device_missing);
  EXPECT_TRUE(state->ended);
  EXPECT_FALSE(state->stops_after);
  EXPECT_TRUE(state->failures.empty());
  EXPECT_EQ(link.requests, Texts{R"({"do":"state","failuresAfter":0})"});
  EXPECT_EQ(link.handles, std::vector<PlayerHandle>{7});
}

TEST_F(TallowPlayerTest, OnlyLaterFailuresAreAskedFor) {
  link.failures = nlohmann::json::parse(
      R"([{"number":1,"entry":4,"reason":"first"},{"number":2,"entry":5,"reason":"second"}])");
  const std::optional<TallowPlayerState> state = player.State(1);
  ASSERT_TRUE(state);
  ASSERT_EQ(state->failures.size(), 1U);
  EXPECT_EQ(state->failures[0].number, 2U);
  EXPECT_EQ(state->failures[0].entry, 5U);
  EXPECT_EQ(state->failures[0].reason, "second");
}

TEST_F(TallowPlayerTest, WithoutAnAnswerThereIsNoState) {
  link.is_answering = false;
  EXPECT_FALSE(player.State());
  EXPECT_FALSE(player.Upcoming(0, 10));
  EXPECT_TRUE(player.Devices().empty());
  const Texts paths{"/a"};
  EXPECT_EQ(player.AddFiles(kAtEnd, paths), 0);
}

TEST_F(TallowPlayerTest, AnAnswerThatIsNoObjectIsNoAnswer) {
  for (const char* const text : {"", "{", "[]", "null", "7", "\"x\"", "{}{}", "\xFF"}) {
    link.answer = text;
    EXPECT_FALSE(player.State()) << text;
    EXPECT_FALSE(player.Upcoming(0, 10)) << text;
    EXPECT_TRUE(player.Devices().empty()) << text;
  }
}

TEST_F(TallowPlayerTest, MembersThatAreMissingOrOfAnotherTypeCountAsUnknown) {
  for (const char* const text :
       {"{}",
        R"({"status":"x","position":null,"length":[],"entry":-1,"place":-5,"count":1.5,
            "upcoming":"3","revision":{},"volume":1e99,"balance":true,"shuffle":1,"repeat":7,
            "gain":"loud","device":0,"stopAfter":"yes","failures":{"number":1}})",
        R"({"status":9999999999999,"position":18446744073709551615,"failures":[1,null,[]],
            "volume":99999999999})"}) {
    link.answer = text;
    const std::optional<TallowPlayerState> state = player.State();
    ASSERT_TRUE(state) << text;
    EXPECT_EQ(state->status, kStopped);
    EXPECT_EQ(state->position, -1);
    EXPECT_EQ(state->length, -1);
    EXPECT_EQ(state->entry, 0U);
    EXPECT_EQ(state->place, 0U);
    EXPECT_EQ(state->count, 0U);
    EXPECT_EQ(state->upcoming, 0U);
    EXPECT_EQ(state->volume, 0);
    EXPECT_EQ(state->balance, 0);
    EXPECT_FALSE(state->shuffle);
    EXPECT_EQ(state->repeat, RepeatMode::kOff);
    EXPECT_EQ(state->gain, ReplayGain::kOff);
    EXPECT_EQ(state->device, "");
    EXPECT_TRUE(state->failures.empty());
  }
}

TEST_F(TallowPlayerTest, VolumeAndBalanceStayInTheirRanges) {
  link.volume = 300;
  link.balance = -200;
  EXPECT_EQ(player.State()->volume, 255);
  EXPECT_EQ(player.State()->balance, -127);
}

TEST_F(TallowPlayerTest, UpcomingEntriesAreReadFromAnyPlace) {
  FillList(10);
  link.revision = 4;
  const std::optional<UpcomingEntries> upcoming = player.Upcoming(2, 3);
  ASSERT_TRUE(upcoming);
  EXPECT_EQ(upcoming->revision, 4U);
  EXPECT_EQ(upcoming->upcoming, 9U);
  EXPECT_EQ(upcoming->entries, (Numbers{4, 5, 6}));
  EXPECT_EQ(player.Upcoming(9, 3)->entries, Numbers{});
  link.answer = R"({"entries":[1,"x",-3,4]})";
  EXPECT_EQ(player.Upcoming(0, 4)->entries, (Numbers{1, 0, 0, 4}));
}

TEST_F(TallowPlayerTest, NoMoreEntriesAreAskedForThanThePlayerAnswers) {
  player.Upcoming(0, 1'000'000);
  EXPECT_EQ(link.requests, Texts{R"({"do":"queue","from":0,"count":4096})"});
}

TEST_F(TallowPlayerTest, FilesAreAddedAtAPlaceAndNumbered) {
  const Texts first{"/a", "/b"};
  EXPECT_EQ(player.AddFiles(kAtEnd, first), 1);
  const Texts before{"/c"};
  EXPECT_EQ(player.AddFiles(2, before), 3);
  EXPECT_EQ(link.Paths(), (Texts{"/a", "/c", "/b"}));
  EXPECT_EQ(link.records, (std::vector<std::size_t>{14, 11}));
  link.max_files = 3;
  EXPECT_EQ(player.AddFiles(kAtEnd, before), kListHasNoRoom);
  link.max_files = 4;
  EXPECT_EQ(player.AddFiles(77, before), kNoSuchEntry);
}

TEST_F(TallowPlayerTest, ARecordHoldsThePathsThatFit) {
  const std::string path(100, 'p');
  std::size_t bytes = 0;
  Texts paths;
  for (; TallowPlayer::FitsInRecord(bytes, path); bytes += TallowPlayer::RecordBytes(path))
    paths.push_back(path);
  player.AddFiles(kAtEnd, paths);
  EXPECT_LE(link.records[0], kMaxPayload);
  EXPECT_GT(link.records[0] + path.size() + 1, kMaxPayload);
  EXPECT_TRUE(TallowPlayer::FitsInRecord(0, std::string(kMaxPayload - 9, 'p')));
  EXPECT_FALSE(TallowPlayer::FitsInRecord(0, std::string(kMaxPayload - 8, 'p')));
}

TEST_F(TallowPlayerTest, EntriesAreMovedAndRemoved) {
  FillList(6);
  player.Move(Numbers{5, 3}, 2);
  EXPECT_EQ(List(), (Numbers{1, 5, 3, 2, 4, 6}));
  player.Move(Numbers{3}, 0);
  EXPECT_EQ(List(), (Numbers{1, 5, 2, 4, 6, 3}));
  player.Remove(Numbers{2, 6});
  EXPECT_EQ(List(), (Numbers{1, 5, 4, 3}));
}

TEST_F(TallowPlayerTest, ManyEntriesAreMovedAndRemovedInSeveralRequests) {
  constexpr std::uint64_t kCount = 6'200;
  FillList(kCount);
  Numbers moved(kCount / 2);
  std::iota(moved.begin(), moved.end(), kCount / 2 + 1);
  player.Move(moved, 2);
  Numbers expected{1};
  expected.insert(expected.end(), moved.begin(), moved.end());
  for (std::uint64_t k = 2; k <= kCount / 2; ++k) expected.push_back(k);
  EXPECT_EQ(List(), expected);
  for (const std::string& request : link.requests) EXPECT_LE(request.size(), kMaxPayload);
  player.Remove(moved);
  EXPECT_EQ(link.list.size(), kCount / 2);
  // Numbers of the greatest length fit, too.
  link.requests.clear();
  player.Move(Numbers(3'000, UINT64_MAX), UINT64_MAX);
  ASSERT_EQ(link.requests.size(), 1U);
  EXPECT_LE(link.requests[0].size(), kMaxPayload);
}

TEST_F(TallowPlayerTest, PlayAndCueNameAnEntry) {
  FillList(3);
  player.Play(2);
  EXPECT_EQ(link.current, 1U);
  EXPECT_EQ(link.status, kPlaying);
  player.Cue(3, 61'999);
  EXPECT_EQ(link.current, 2U);
  EXPECT_EQ(link.status, kPaused);
  EXPECT_EQ(link.position, 61'999);
}

TEST_F(TallowPlayerTest, ModesAndTheDeviceAreSet) {
  for (const RepeatMode mode : {RepeatMode::kAll, RepeatMode::kOne, RepeatMode::kOff}) {
    player.SetRepeat(mode);
    EXPECT_EQ(player.State()->repeat, mode);
  }
  for (const ReplayGain mode : {ReplayGain::kTrack, ReplayGain::kAlbum, ReplayGain::kOff}) {
    player.SetGain(mode);
    EXPECT_EQ(player.State()->gain, mode);
  }
  for (const std::string name : {"alsa/hw:0", "a\"b\\c\n", "\xFF"}) {
    player.SetDevice(name);
    EXPECT_EQ(link.device, name);
  }
}

TEST_F(TallowPlayerTest, DevicesHaveNamesAndDescriptions) {
  link.devices =
      nlohmann::json::parse(R"([{"name":"auto","description":"Default"},7,{"name":"alsa/hw:0"}])");
  const std::vector<SoundDevice> devices = player.Devices();
  ASSERT_EQ(devices.size(), 2U);
  EXPECT_EQ(devices[0].name, "auto");
  EXPECT_EQ(devices[0].description, "Default");
  EXPECT_EQ(devices[1].name, "alsa/hw:0");
  EXPECT_EQ(devices[1].description, "");
}

TEST_F(TallowPlayerTest, OnlyQueriesAreRecognizedAsSuch) {
  player.State();
  player.Upcoming(0, 1);
  player.Devices();
  for (const std::string& request : std::exchange(link.requests, {}))
    EXPECT_TRUE(AsksOnly(request)) << request;
  player.Move(Numbers{1}, 0);
  player.Remove(Numbers{1});
  player.Play(1);
  player.Cue(1, 0);
  player.SetRepeat(RepeatMode::kAll);
  player.SetGain(ReplayGain::kTrack);
  player.SetDevice("auto");
  EXPECT_EQ(link.requests.size(), 7U);
  for (const std::string& request : link.requests) EXPECT_FALSE(AsksOnly(request)) << request;
}

}  // namespace
}  // namespace tallow
