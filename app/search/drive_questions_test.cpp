// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/search/drive_questions.h"

#include <functional>
#include <future>
#include <optional>
#include <utility>

#include "tests/library_fixture.h"
#include "tests/recorded_progress.h"

namespace tallow {
namespace {

using std::chrono_literals::operator""h;
using std::chrono_literals::operator""ms;

class DriveQuestionsTest : public LibraryTest {
 protected:
  ~DriveQuestionsTest() override { Respond(); }

  /// A query on a drive that responds after Respond().
  std::function<int()> Query() const {
    return [answer = future_] { return answer.get(); };
  }
  void Respond() {
    if (!std::exchange(has_responded_, true)) answer_.set_value(7);
  }

  RecordedProgress progress;

 private:
  std::promise<int> answer_;
  const std::shared_future<int> future_ = answer_.get_future().share();
  bool has_responded_ = false;
};

TEST_F(DriveQuestionsTest, ADriveThatDoesNotRespondIsNamedAndGivenUp) {
  DriveQuestions questions(tallow, &progress, {.slow_after = 0ms, .max_wait = 0ms});
  EXPECT_EQ(questions.Ask<int>(Query(), music.path()), std::nullopt);
  EXPECT_FALSE(questions.WasStopped());
  EXPECT_EQ(progress.status, Texts{"Waiting for " + music.path() + ", which does not answer"});
  EXPECT_EQ(progress.repaints, 1);
}

TEST_F(DriveQuestionsTest, ADriveThatRespondsLateIsNamedUntilItDoes) {
  DriveQuestions questions(tallow, &progress, {.slow_after = 0ms, .max_wait = 1h});
  progress.on_events = [this] {
    if (progress.status.size() == 3) Respond();
  };
  EXPECT_EQ(questions.Ask<int>(Query(), music.path()), 7);
  ASSERT_GE(progress.status.size(), 3U);
  EXPECT_EQ(progress.status.back(), "Waiting for " + music.path() + ", which does not answer");
}

TEST_F(DriveQuestionsTest, ADriveIsNotNamedBeforeItIsSlow) {
  DriveQuestions questions(tallow, &progress, {.slow_after = 1h, .max_wait = 0ms});
  int events = 0;
  progress.on_events = [&] {
    if (++events == 3) Respond();
  };
  EXPECT_EQ(questions.Ask<int>(Query(), music.path()), 7);
  EXPECT_EQ(progress.status, Texts{});
}

TEST_F(DriveQuestionsTest, AQueryWithoutAPlaceMayTakeAnyTime) {
  DriveQuestions questions(tallow, &progress, {.slow_after = 0ms, .max_wait = 0ms});
  int events = 0;
  progress.on_events = [&] {
    if (++events == 3) Respond();
  };
  EXPECT_EQ(questions.Ask<int>(Query()), 7);
  EXPECT_EQ(progress.status, Texts{});
}

TEST_F(DriveQuestionsTest, NothingIsShownInAWindowThatIsNotLoaded) {
  progress.loaded = false;
  DriveQuestions questions(tallow, &progress, {.slow_after = 0ms, .max_wait = 0ms});
  EXPECT_EQ(questions.Ask<int>(Query(), music.path()), std::nullopt);
  EXPECT_EQ(progress.status, Texts{});
}

TEST_F(DriveQuestionsTest, ACancelAndTheEndOfTheProgramStopTheWait) {
  DriveQuestions questions(tallow, &progress, {.slow_after = 0ms, .max_wait = 1h});
  for (bool* const stop : {&tallow.SearchCancelled, &tallow.is_shutting_down}) {
    progress.on_events = [stop] { *stop = true; };
    EXPECT_EQ(questions.Ask<int>(Query(), music.path()), std::nullopt);
    EXPECT_TRUE(questions.WasStopped());
    *stop = false;
    questions.BeginWalk();
    EXPECT_FALSE(questions.WasStopped());
  }
  EXPECT_EQ(progress.status, Texts{});
}

/// A window that only implements what it must.
class PlainProgress : public SearchProgress {
 public:
  bool IsLoaded() const override { return true; }
  void SetStatus(std::string_view /*text*/) override {}
  void SetFound(std::string_view /*text*/) override {}
  void Repaint() override {}
  void Yield() override { ++yields; }
  void YieldAfterSong() override {}

  int yields = 0;
};

TEST_F(DriveQuestionsTest, AWindowNeedNotProcessEventsDuringTheWait) {
  PlainProgress plain;
  DriveQuestions questions(tallow, &plain, {.slow_after = 0ms, .max_wait = 0ms});
  EXPECT_TRUE(questions.ProcessEvents());
  EXPECT_EQ(questions.Ask<int>(Query(), music.path()), std::nullopt);
  EXPECT_FALSE(questions.WasStopped());
  EXPECT_EQ(plain.yields, 0);
}

}  // namespace
}  // namespace tallow
