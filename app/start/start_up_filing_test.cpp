// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/start/start_up_filing.h"

#include "app/start/start_up_notices.h"
#include "tests/library_fixture.h"
#include "tests/recorded_windows.h"

namespace tallow {
namespace {

using std::chrono_literals::operator""h;
using std::chrono_literals::operator""ms;

/// Windows whose splash window may be unloaded.
class SplashWindows : public RecordedWindows {
 public:
  SearchProgress* LoadedSplash() override { return progress.loaded ? &progress : nullptr; }
};

class StartUpFilingTest : public LibraryTest {
 protected:
  SplashWindows windows;
  StartUpNotices notices{tallow};
};

TEST_F(StartUpFilingTest, LongFilingIsShownAndTheSplashWindowIsRestored) {
  StartUpFiling filing(tallow, windows, notices, 0ms);
  tallow.SearchCancelled = true;  // by a click before the filing
  const FilingProgress progress = filing.Progress();
  EXPECT_TRUE(progress(1, 50));
  EXPECT_FALSE(tallow.SearchCancelled);
  EXPECT_EQ(windows.log, (Texts{"found on", "cancel on"}));
  EXPECT_EQ(windows.progress.status, Texts{"Filing songs  . . . "});
  EXPECT_EQ(windows.progress.found, Texts{"Filed 1 of 50 songs"});
  EXPECT_TRUE(progress(2, 50));
  EXPECT_EQ(windows.log.size(), 2U);
  EXPECT_EQ(windows.progress.status.size(), 1U);
  windows.log.clear();
  filing.End();
  EXPECT_EQ(windows.log, (Texts{"cancel off", "found off"}));
  EXPECT_FALSE(tallow.filing_is_pending);
  EXPECT_EQ(notices.TakeAll(), Texts{});
  filing.End();
  EXPECT_EQ(windows.log.size(), 2U);
}

TEST_F(StartUpFilingTest, ACancelLeavesTheRestToTheNextSearch) {
  StartUpFiling filing(tallow, windows, notices, 0ms);
  windows.progress.on_events = [this] { tallow.SearchCancelled = true; };
  EXPECT_FALSE(filing.Progress()(1, 50));
  filing.End();
  EXPECT_FALSE(tallow.SearchCancelled);
  EXPECT_TRUE(tallow.filing_is_pending);
  EXPECT_EQ(notices.TakeAll(), Texts{FilingCancelledLine() + "."});
  // The next filing is not cancelled.
  windows.progress.on_events = {};
  EXPECT_TRUE(filing.Progress()(1, 50));
  filing.End();
  EXPECT_EQ(notices.TakeAll(), Texts{});
}

TEST_F(StartUpFilingTest, ShortFilingIsNotShownAndCannotBeCancelled) {
  StartUpFiling filing(tallow, windows, notices, 1h);
  int events = 0;
  windows.progress.on_events = [&] {
    ++events;
    tallow.SearchCancelled = true;
  };
  EXPECT_TRUE(filing.Progress()(1, 50));
  EXPECT_EQ(events, 1);
  filing.End();
  EXPECT_EQ(windows.log, Texts{});
  EXPECT_EQ(windows.progress.found, Texts{});
  EXPECT_FALSE(tallow.filing_is_pending);
  EXPECT_TRUE(tallow.SearchCancelled);
}

TEST_F(StartUpFilingTest, WithoutASplashWindowTheFilingGoesOn) {
  StartUpFiling filing(tallow, windows, notices, 0ms);
  windows.progress.loaded = false;
  tallow.SearchCancelled = true;
  EXPECT_TRUE(filing.Progress()(1, 50));
  EXPECT_EQ(windows.log, Texts{});
}

}  // namespace
}  // namespace tallow
