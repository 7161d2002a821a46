// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/start/start_up_filing.h"

#include <chrono>
#include <utility>

#include "app/long_work.h"
#include "app/search/search_progress.h"
#include "app/start/start_up_notices.h"
#include "app/start/start_up_windows.h"
#include "app/tallow.h"

namespace tallow {
namespace {

/// Interval between two updates of the progress line.
constexpr std::chrono::milliseconds kShowLineEvery{40};

}  // namespace

FilingProgress StartUpFiling::Progress() {
  using Clock = std::chrono::steady_clock;
  return [this, begun = Clock::now(), line_shown = Clock::time_point()](std::size_t filed,
                                                                        std::size_t songs) mutable {
    SearchProgress* const splash = windows_.LoadedSplash();
    if (splash == nullptr) return true;
    const Clock::time_point now = Clock::now();
    if (!is_shown_ && now - begun >= show_after_) {
      is_shown_ = true;
      tallow_.SearchCancelled = false;
      splash->SetStatus(kFilingSongs);
      windows_.ShowFoundLine(true);
      windows_.ShowCancelButton(true);
    }
    // A line for each song would take longer than to file it.
    if (is_shown_ && now - line_shown >= kShowLineEvery) {
      splash->SetFound(FilingLine(filed, songs));
      line_shown = now;
    }
    splash->VisitFolder({});
    was_cancelled_ = is_shown_ && tallow_.SearchCancelled;
    return !was_cancelled_;
  };
}

void StartUpFiling::End() {
  if (std::exchange(is_shown_, false)) {
    windows_.ShowCancelButton(false);
    windows_.ShowFoundLine(false);
  }
  if (!std::exchange(was_cancelled_, false)) return;
  tallow_.SearchCancelled = false;
  tallow_.filing_is_pending = true;
  notices_.Add(FilingCancelledLine() + ".");
}

}  // namespace tallow
