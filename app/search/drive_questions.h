// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "app/search/search_progress.h"
#include "library/drive_timeouts.h"
#include "library/folder_scan.h"
#include "util/read_ahead.h"
#include "util/wait_decision.h"

namespace tallow {

class DriveList;
class Tallow;

/// The time limits of DriveQuestions::Ask.
struct QuestionLimits {
  std::chrono::milliseconds slow_after = kSlowAfter;
  std::chrono::milliseconds max_wait = kMaxWait;
};

/// What the searches of the drives have in common: they show their progress, process window events
/// while they wait for a drive, stop at a cancel, and give up a drive that does not respond.
///
/// A cancel is Tallow::SearchCancelled; the end of the program (is_shutting_down) stops a search as
/// well.
class DriveQuestions {
 public:
  /// \param tallow   must outlive this object
  /// \param progress may be null when there is no window to report to
  DriveQuestions(Tallow& tallow, SearchProgress* progress, const QuestionLimits& limits = {})
      : tallow_(tallow), progress_(progress), limits_(limits) {}

  /// The window to report to; null while it is not loaded.
  SearchProgress* Shown() const {
    return progress_ != nullptr && progress_->IsLoaded() ? progress_ : nullptr;
  }
  /// Shows a status at once, in a window that may not be loaded yet.
  void Report(std::string_view status);

  /// Processes window events between two drives.
  /// \returns whether the search was cancelled; resets the cancel
  bool PauseAndTestForCancel();
  /// Processes window events while the search waits.
  /// \returns false when it is to stop, see WasStopped
  bool ProcessEvents();
  /// Whether a cancel or the end of the program stops the search now.
  bool MustStop();
  /// The result of the last MustStop, ProcessEvents or question.
  bool WasStopped() const noexcept { return was_stopped_; }
  /// Resets WasStopped, at the beginning of a walk.
  void BeginWalk() noexcept { was_stopped_ = false; }
  /// Resets the cancel after the search was stopped.
  /// \returns false, the result of a search that was cancelled
  bool EndStopped();

  /// Whether a drive is to be searched for songs and for the player. Network shares are not: they
  /// may not respond.
  ///
  /// \returns no value when the drive does not respond or the search was stopped
  std::optional<bool> IsSearched(const DriveList& drives, const std::string& root);

  /// Runs a file system query on another thread and waits for the result.
  ///
  /// \param place path that the query accesses, given up when it does not respond within
  ///              the time limit; empty: the query may take any time
  /// \returns no value when the place was given up, or the search was stopped
  template <typename Answer>
  std::optional<Answer> Ask(std::function<Answer()> ask, const std::string& place = {}) {
    std::optional<Answer> result;
    const auto waiting = [this, &place](std::size_t, std::chrono::milliseconds waited) {
      return Wait(place, waited);
    };
    try {
      ReadAhead(
          1, 1, [](std::size_t) { return 0; },
          [ask = std::move(ask)](int) { return std::optional<Answer>(ask()); },
          [&](std::size_t, std::optional<Answer> answer) { result = std::move(answer); },
          progress_ != nullptr ? WhileWaiting(waiting) : WhileWaiting(),
          [](std::size_t) { return std::optional<Answer>(); });
    } catch (const Stopped&) {
      return std::nullopt;
    }
    return result;
  }

 private:
  bool ConsumeCancel();
  /// \throws Stopped when the search is to stop
  WaitDecision Wait(const std::string& place, std::chrono::milliseconds waited);

  Tallow& tallow_;
  SearchProgress* progress_;
  const QuestionLimits limits_;
  bool was_stopped_ = false;
};

}  // namespace tallow
