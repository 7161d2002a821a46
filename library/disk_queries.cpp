// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/disk_queries.h"

#include <algorithm>
#include <chrono>
#include <utility>

#include "library/drive_timeouts.h"
#include "util/read_ahead.h"

namespace tallow {
namespace {

/// Replaces kMaxWait when there is no callback that could report the slow drive.
constexpr std::chrono::milliseconds kMaxQuietWait{5000};

FileStatus NoAnswer() { return {FilePresence::kUnknown, 0, std::string(kDoesNotAnswer)}; }

}  // namespace

void DiskQueries::SetCallbacks(GoOn go_on, WaitForDrive wait) {
  go_on_ = std::move(go_on);
  wait_for_drive_ = std::move(wait);
}

void DiskQueries::GoOnOrStop(std::string_view folder) const {
  if (go_on_ && !go_on_(folder)) throw Stopped();
}

WhileWaiting DiskQueries::WaitingFor(std::function<std::string(std::size_t)> path_of, GoOn go_on,
                                     WaitForDrive wait) {
  const auto max_wait = wait || go_on ? kMaxWait : kMaxQuietWait;
  return [this, path_of = std::move(path_of), go_on = std::move(go_on), wait = std::move(wait),
          max_wait](std::size_t i, std::chrono::milliseconds waited) {
    if (go_on && !go_on({})) throw Stopped();
    const std::string path = path_of(i);
    if (unanswered_->Covers(path)) return WaitDecision::kGiveUp;
    if (waited < kSlowAfter) return WaitDecision::kWait;
    const std::string root = drives_.RootToGiveUp(path);
    if (waited < max_wait && (!wait || wait(root))) return WaitDecision::kWait;
    unanswered_->Add(root);
    drives_.MarkAway(root);
    return WaitDecision::kGiveUp;
  };
}

WhileWaiting DiskQueries::WaitingFor(std::function<std::string(std::size_t)> path_of) {
  return WaitingFor(std::move(path_of), go_on_, wait_for_drive_);
}

template <typename Answer>
Answer DiskQueries::Ask(const std::string& path, Answer (*ask)(const std::string&),
                        const Answer& unanswered) {
  if (unanswered_->Covers(path)) return unanswered;
  if (!drives_.IsOnNetwork(path)) return ask(path);
  return AskOnWorkerThread(path, ask, unanswered);
}

template <typename Answer>
Answer DiskQueries::AskOnWorkerThread(const std::string& path, Answer (*ask)(const std::string&),
                                      const Answer& unanswered) {
  Answer result = unanswered;
  ReadAhead(
      1, 1, [&](std::size_t) { return path; }, ask,
      [&](std::size_t, Answer answer) { result = std::move(answer); },
      WaitingFor([path](std::size_t) { return path; }), [&](std::size_t) { return unanswered; });
  return result;
}

FileStatus DiskQueries::CheckPath(const std::string& path) {
  return Ask(path, CheckFile, NoAnswer());
}

FileStatus DiskQueries::CheckPathWithTimeout(const std::string& path) {
  try {
    return AskOnWorkerThread(path, CheckFile, NoAnswer());
  } catch (const Stopped&) {
    return NoAnswer();
  }
}

FolderState DiskQueries::StateOf(const std::string& folder) {
  return Ask(folder, StateOfFolder, FolderState::kUnreadable);
}

std::vector<std::optional<FolderState>> DiskQueries::StatesOf(
    const std::vector<std::string>& folders) {
  std::vector<std::optional<FolderState>> states(folders.size());
  using State = std::optional<FolderState>;
  const auto waits_alone = [this](const std::string& folder) {
    return !go_on_ && !wait_for_drive_ && !drives_.IsOnNetwork(folder);
  };
  // Without callbacks local folders are checked on this thread, as in Ask.
  if (std::all_of(folders.begin(), folders.end(), waits_alone))
    return KnownDrives::AskAtOnce(folders);
  ReadAhead(
      folders.size(), 1, [&](std::size_t k) { return folders[k]; },
      [unanswered = unanswered_](const std::string& folder) {
        return unanswered->Covers(folder) ? State() : State(StateOfFolder(folder));
      },
      [&](std::size_t k, State state) { states[k] = state; },
      WaitingFor([&](std::size_t k) { return folders[k]; }), [](std::size_t) { return State(); });
  return states;
}

bool DiskQueries::IsNotAsked(std::string_view folder) const {
  return drives_.IsBehindAutomounter(folder) || unanswered_->Covers(folder);
}

std::string DiskQueries::SkippedRootOf(std::string_view folder) const {
  std::string root = drives_.AwayRootOf(folder);
  return root.empty() ? unanswered_->RootOf(folder) : root;
}

}  // namespace tallow
