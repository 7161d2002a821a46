// SPDX-License-Identifier: GPL-3.0-or-later
#include "player/substitute/player_requests.h"

#include <cstring>
#include <gtest/gtest.h>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "player/player_messages.h"
#include "player/substitute/event_loop.h"
#include "player/substitute/song_player.h"
#include "player/tallow_player_requests.h"
#include "tests/mutated_bytes.h"
#include "tests/recorded_engine.h"

namespace tallow {
namespace {

using Texts = std::vector<std::string>;

class PlayerRequestsTest : public testing::Test {
 protected:
  /// Executes a message. No value when it is invalid.
  std::optional<PlayerAnswer> Send(std::uint32_t message, std::int64_t wParam, std::int64_t lParam,
                                   const std::string& payload = {}) {
    std::optional<PlayerAnswer> result;
    const bool valid = requests.Execute(
        {.message = message, .payload = 0, .wParam = wParam, .lParam = lParam}, payload,
        [&](PlayerAnswer answer) { result = answer; },
        [](const std::string& text) { ADD_FAILURE() << text; });
    EXPECT_EQ(valid, result.has_value());
    return result;
  }
  std::optional<PlayerAnswer> User(std::int64_t request, std::int64_t value = 0) {
    return Send(kWmUser, value, request);
  }
  std::optional<PlayerAnswer> AddFiles(std::int64_t at, const Texts& paths) {
    std::string payload(sizeof at, '\0');
    std::memcpy(payload.data(), &at, sizeof at);
    for (const std::string& path : paths) payload += path + '\0';
    return Send(kWmCopyData, 0, kAddFiles, payload);
  }
  /// Executes a request in JSON. No value when it is invalid.
  std::optional<std::string> Ask(const std::string& request) {
    std::optional<std::string> result;
    const bool valid = requests.Execute(
        {.message = kWmCopyData, .payload = 0, .wParam = 0, .lParam = kAsk}, request,
        [](PlayerAnswer) { ADD_FAILURE(); }, [&](std::string text) { result = std::move(text); });
    EXPECT_EQ(valid, result.has_value());
    return result;
  }
  std::string Upcoming() {
    const std::string answer = Ask(R"({"do":"queue","from":0,"count":100})").value_or("");
    return answer.substr(answer.find('['));
  }
  /// Plays "/1" of the files "/1" to "/5".
  void PlayFive() {
    EXPECT_EQ(AddFiles(kAtEnd, {"/1", "/2", "/3", "/4", "/5"}), 1);
    Send(kWmCommand, kPlay, 0);
    engine.ReplyToLoads();
    engine.events->OnTrackStarted(engine.entries.at("/1"));
    engine.events->OnTrackOpened();
  }

  const std::unique_ptr<EventLoop> loop = NewEventLoop();
  RecordedEngine engine;
  SongPlayer player{*loop, engine, 1};
  PlayerRequests requests{player, [] {}};
};

TEST_F(PlayerRequestsTest, FilesAreAddedAtTheEndNextAndBeforeAnEntry) {
  PlayFive();
  EXPECT_EQ(AddFiles(kAtEnd, {"/6"}), 6);
  EXPECT_EQ(AddFiles(kPlayNext, {"/7", "/8"}), 7);
  EXPECT_EQ(AddFiles(kPlayNext, {"/9"}), 9);
  EXPECT_EQ(AddFiles(1, {"/10", "/11"}), 10);
  EXPECT_EQ(Upcoming(), "[7,8,9,2,3,4,5,6]}");
  EXPECT_EQ(User(kListPlace), 2);
  EXPECT_EQ(User(kListLength), 11);
}

TEST_F(PlayerRequestsTest, FilesWithoutRoomOrBeforeAnUnknownEntryAreRefused) {
  EXPECT_EQ(AddFiles(1, {"/1"}), kNoSuchEntry);
  EXPECT_EQ(AddFiles(kAtEnd, {"/" + std::string(kMaxListBytes, 'a')}), kListHasNoRoom);
  EXPECT_EQ(User(kListLength), 0);
}

TEST_F(PlayerRequestsTest, ARecordOfFilesMustBeComplete) {
  EXPECT_EQ(AddFiles(kAtEnd, {}), std::nullopt);
  EXPECT_EQ(AddFiles(kAtEnd, {"/1", ""}), std::nullopt);
  EXPECT_EQ(AddFiles(kAtEnd, {"/1", "relative"}), std::nullopt);
  EXPECT_EQ(AddFiles(-2, {"/1"}), std::nullopt);
  const std::string at(sizeof(std::int64_t), '\0');
  for (const std::string& payload : {std::string(), std::string("1234567"), at, at + "/1"})
    EXPECT_EQ(Send(kWmCopyData, 0, kAddFiles, payload), std::nullopt);
  EXPECT_EQ(Send(kWmCopyData, 1, kAddFiles, at + "/1" + '\0'), std::nullopt);
  EXPECT_EQ(Send(kWmCopyData, 0, kAddFiles, at + "/1" + '\0'), 1);
}

TEST_F(PlayerRequestsTest, ThePlaceInTheListIsSetAndAnswered) {
  PlayFive();
  EXPECT_EQ(User(kListPlace), 0);
  EXPECT_EQ(User(kSetPlace, 3), 0);
  EXPECT_EQ(User(kListPlace), 3);
  EXPECT_EQ(engine.sent.back(), "load /4");
  EXPECT_EQ(User(kSetPlace, 5), 0);
  EXPECT_EQ(User(kListPlace), 3);
  EXPECT_EQ(User(kSetPlace, -1), std::nullopt);
  EXPECT_EQ(User(kListPlace, 1), std::nullopt);
  EXPECT_EQ(User(kListLength, 1), std::nullopt);
}

TEST_F(PlayerRequestsTest, ShuffleAndRepeatAreSetAndAnswered) {
  PlayFive();
  for (const auto& [ask, set] :
       {std::pair{kShuffle, kSetShuffle}, std::pair{kRepeat, kSetRepeat}}) {
    EXPECT_EQ(User(ask), 0);
    EXPECT_EQ(User(set, 1), 0);
    EXPECT_EQ(User(ask), 1);
    EXPECT_EQ(User(set, 2), std::nullopt);
    EXPECT_EQ(User(ask, 1), std::nullopt);
    EXPECT_EQ(User(ask), 1);
    EXPECT_EQ(User(set, 0), 0);
    EXPECT_EQ(User(ask), 0);
  }
  EXPECT_EQ(Ask(R"({"do":"repeat","mode":"one"})"), "{}");
  EXPECT_EQ(User(kRepeat), 1);
}

TEST_F(PlayerRequestsTest, TheStateNamesEverythingThatAClientShows) {
  EXPECT_EQ(
      Ask(R"({"do":"state","failuresAfter":0})"),
      R"({"status":0,"position":-1,"length":-1,"entry":0,"place":0,"count":0,"upcoming":0,)"
      R"("ended":false,"revision":0,"volume":255,"balance":0,"shuffle":false,"repeat":"off","gain":"off",)"
      R"("device":"auto","deviceMissing":false,"stopAfter":false,"failures":[]})");
  PlayFive();
  engine.events->OnLength(60.5);
  engine.events->OnPosition(2);
  engine.events->OnDevice(true);
  User(kSetVolume, 10);
  User(kSetBalance, 254);
  EXPECT_EQ(Ask(R"({"do":"repeat","mode":"all"})"), "{}");
  EXPECT_EQ(Ask(R"({"do":"gain","mode":"album"})"), "{}");
  EXPECT_EQ(Ask(R"({"do":"device","name":"a \"b\""})"), "{}");
  Send(kWmCommand, kStopAfterTrack, 0);
  EXPECT_EQ(
      Ask(R"({"do":"state","failuresAfter":0})"),
      R"({"status":1,"position":2000,"length":60500,"entry":1,"place":0,"count":5,"upcoming":4,)"
      R"("ended":false,"revision":1,"volume":10,"balance":-1,"shuffle":false,"repeat":"all","gain":"album",)"
      R"("device":"a \"b\"","deviceMissing":true,"stopAfter":true,"failures":[]})");
}

TEST_F(PlayerRequestsTest, TheQueueIsAnsweredInParts) {
  PlayFive();
  EXPECT_EQ(Ask(R"({"do":"queue","from":1,"count":2})"),
            R"({"revision":1,"upcoming":4,"entries":[3,4]})");
  EXPECT_EQ(Ask(R"({"do":"queue","from":4,"count":2})"),
            R"({"revision":1,"upcoming":4,"entries":[]})");
  EXPECT_EQ(Ask(R"({"do":"queue","from":18446744073709551615,"count":18446744073709551615})"),
            R"({"revision":1,"upcoming":4,"entries":[]})");
  AddFiles(kAtEnd, Texts(5000, "/a"));
  const std::string all =
      Ask(R"({"do":"queue","from":0,"count":18446744073709551615})").value_or("");
  EXPECT_EQ(std::count(all.begin(), all.end(), ','), 4095 + 2);
}

TEST_F(PlayerRequestsTest, UpcomingEntriesAreMovedAndRemoved) {
  PlayFive();
  EXPECT_EQ(Ask(R"({"do":"move","entries":[5,4],"before":2})"), "{}");
  EXPECT_EQ(Upcoming(), "[5,4,2,3]}");
  EXPECT_EQ(Ask(R"({"do":"move","entries":[5,1,77],"before":0})"), "{}");
  EXPECT_EQ(Upcoming(), "[4,2,3,5]}");
  EXPECT_EQ(Ask(R"({"do":"remove","entries":[2,1,77]})"), "{}");
  EXPECT_EQ(Upcoming(), "[4,3,5]}");
  EXPECT_EQ(User(kListLength), 4);
}

TEST_F(PlayerRequestsTest, AnEntryIsPlayedOrCued) {
  PlayFive();
  EXPECT_EQ(Ask(R"({"do":"play","entry":4})"), "{}");
  EXPECT_EQ(engine.sent.back(), "load /4");
  EXPECT_EQ(User(kStatus), kPlaying);
  EXPECT_EQ(Ask(R"({"do":"cue","entry":2,"position":30000})"), "{}");
  EXPECT_EQ(engine.sent[engine.sent.size() - 2], "pause");
  EXPECT_EQ(engine.sent.back(), "load /2");
  EXPECT_EQ(User(kStatus), kPaused);
  EXPECT_EQ(User(kTrackTime), 30000);
  for (const char* const unknown :
       {R"({"do":"play","entry":6})", R"({"do":"cue","entry":0,"position":0})"})
    EXPECT_EQ(Ask(unknown), "{}");
  EXPECT_EQ(User(kListPlace), 1);
}

TEST_F(PlayerRequestsTest, FailuresAreAnsweredFromANumberOn) {
  PlayFive();
  testing::internal::CaptureStderr();
  engine.events->OnTrackEnded(engine.entries.at("/1"), "It has no sound.");
  testing::internal::GetCapturedStderr();
  const std::string state = Ask(R"({"do":"state","failuresAfter":0})").value_or("");
  EXPECT_EQ(state.substr(state.find("\"failures\"")),
            R"("failures":[{"number":1,"entry":1,"reason":"The file is gone."}]})");
  EXPECT_TRUE(
      Ask(R"({"do":"state","failuresAfter":1})").value_or("").ends_with(R"("failures":[]})"));
}

TEST_F(PlayerRequestsTest, TheSoundDevicesAreAnswered) {
  EXPECT_EQ(Ask(R"({"do":"devices"})"), R"({"devices":[{"name":"auto","description":"Any"}]})");
}

TEST_F(PlayerRequestsTest, ARequestThatIsNotValidChangesNothing) {
  PlayFive();
  const std::size_t sent = engine.sent.size();
  for (const char* const text : {"",
                                 "{",
                                 "[]",
                                 "1",
                                 "null",
                                 "\"state\"",
                                 "{}",
                                 R"({"do":1})",
                                 R"({"do":"none"})",
                                 R"({"do":"state"})",
                                 R"({"do":"state","failuresAfter":-1})",
                                 R"({"do":"state","failuresAfter":"1"})",
                                 R"({"do":"queue","from":0})",
                                 R"({"do":"queue","from":0,"count":1.5})",
                                 R"({"do":"move","entries":[2]})",
                                 R"({"do":"move","entries":[2,"3"],"before":0})",
                                 R"({"do":"move","entries":2,"before":0})",
                                 R"({"do":"remove"})",
                                 R"({"do":"remove","entries":[-1]})",
                                 R"({"do":"play"})",
                                 R"({"do":"play","entry":null})",
                                 R"({"do":"play","entry":1e3})",
                                 R"({"do":"cue","entry":1})",
                                 R"({"do":"cue","entry":1,"position":9223372036854775808})",
                                 R"({"do":"cue","entry":1,"position":-1})",
                                 R"({"do":"repeat"})",
                                 R"({"do":"repeat","mode":"two"})",
                                 R"({"do":"gain","mode":true})",
                                 R"({"do":"device"})",
                                 R"({"do":"device","name":""})",
                                 R"({"do":"device","name":"a\u0000b"})",
                                 "{\"do\":\"device\",\"name\":\"\xFF\"}",
                                 R"({"do":"devices"} x)"})
    EXPECT_EQ(Ask(text), std::nullopt) << text;
  EXPECT_EQ(Ask(std::string(60'000, '[')), std::nullopt);
  EXPECT_EQ(Send(kWmCopyData, 1, kAsk, R"({"do":"devices"})"), std::nullopt);
  EXPECT_EQ(engine.sent.size(), sent);
  EXPECT_EQ(Upcoming(), "[2,3,4,5]}");
}

TEST_F(PlayerRequestsTest, DamagedRequestsAreAnsweredOnceOrRefused) {
  PlayFive();
  Mutator mutate(1);
  for (int k = 0; k < 500; ++k)
    for (const char* const request :
         {R"({"do":"state","failuresAfter":0})", R"({"do":"queue","from":0,"count":9})",
          R"({"do":"move","entries":[5,4],"before":2})", R"({"do":"cue","entry":2,"position":30})",
          R"({"do":"device","name":"\u00e4\ud83d\ude00"})"})
      Ask(mutate(request));
  EXPECT_EQ(User(kListLength), 5);
}

}  // namespace
}  // namespace tallow
