// SPDX-License-Identifier: GPL-3.0-or-later
// How the library checks files on disks that may not answer.
#include "library/cls_main_asking.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "library/folder_scan.h"
#include "util/path_text.h"
#include "util/read_ahead.h"

namespace tallow {
namespace {

/// After this time a drive is reported as slow.
constexpr std::chrono::milliseconds kSlowAfter{1000};

/// After this time a drive is given up, unless the user gave it up before.
constexpr std::chrono::milliseconds kMaxWait{30000};

/// Timeout when no callback can report the slow drive.
constexpr std::chrono::milliseconds kMaxQuietWait{5000};

FileStatus NoAnswer() { return {FilePresence::kUnknown, 0, std::string(kDoesNotAnswer)}; }

}  // namespace

void clsMain::CheckToSeeIfFilesAreMissingAndMakeFalse(const GoOn& go_on, const WaitForDrive& wait) {
  const Asking asking(*this, go_on, wait);
  LoadMemory();
  try {
    LookAtDrives();
    CheckPresence();
  } catch (const Stopped&) {
    // All songs stay as they are. Do not look at the drives again in this scan.
    drives_were_looked_at_ = true;
  }
}

bool clsMain::AddAnyAdditionalMp3FromTheNormalDirectories(
    const GoOn& go_on, const WaitForDrive& wait, const std::function<void()>& search_all_drives) {
  const Asking asking(*this, go_on, wait);
  if (settings_.NumerOfRecordsInTheMain() < 1) {
    if (search_all_drives) search_all_drives();
    TakeSearchedSongs(0);
  } else {
    AddFromRememberedFolders();
  }
  return false;
}

WhileWaiting clsMain::WaitingFor(std::function<std::string(std::size_t)> path_of, GoOn go_on,
                                 WaitForDrive wait) {
  const auto most = wait || go_on ? kMaxWait : kMaxQuietWait;
  return [this, path_of = std::move(path_of), go_on = std::move(go_on), wait = std::move(wait),
          most](std::size_t i, std::chrono::milliseconds waited) {
    if (go_on && !go_on({})) throw Stopped();
    const std::string path = path_of(i);
    if (unanswered_->Covers(path)) return WaitDecision::kGiveUp;
    if (waited < kSlowAfter) return WaitDecision::kWait;
    const std::string root = drives_.RootToGiveUp(path);
    if (waited < most && (!wait || wait(root))) return WaitDecision::kWait;
    unanswered_->Add(root);
    drives_.MarkAway(root);
    return WaitDecision::kGiveUp;
  };
}

WhileWaiting clsMain::WaitingFor(std::function<std::string(std::size_t)> path_of) {
  return WaitingFor(std::move(path_of), go_on_, wait_for_drive_);
}

template <typename Answer>
Answer clsMain::Ask(const std::string& path, Answer (*ask)(const std::string&),
                    const Answer& unanswered) {
  if (unanswered_->Covers(path)) return unanswered;
  if (!drives_.IsOnNetwork(path)) return ask(path);
  return AskOnWorkerThread(path, ask, unanswered);
}

template <typename Answer>
Answer clsMain::AskOnWorkerThread(const std::string& path, Answer (*ask)(const std::string&),
                                  const Answer& unanswered) {
  Answer result = unanswered;
  ReadAhead(
      1, 1, [&](std::size_t) { return path; }, ask,
      [&](std::size_t, Answer answer) { result = std::move(answer); },
      WaitingFor([path](std::size_t) { return path; }), [&](std::size_t) { return unanswered; });
  return result;
}

FileStatus clsMain::Look(const std::string& path) { return Ask(path, CheckFile, NoAnswer()); }

FileStatus clsMain::LookAt(const std::string& path, const GoOn& go_on, const WaitForDrive& wait) {
  const Asking asking(*this, go_on, wait);
  try {
    return AskOnWorkerThread(path, CheckFile, NoAnswer());
  } catch (const Stopped&) {
    return NoAnswer();
  }
}

void clsMain::CheckWithProgress(const GoOn& go_on, const std::function<void()>& act) {
  const Asking asking(*this, go_on, {});
  unanswered_->Clear();
  act();
}

FolderState clsMain::StateOf(const std::string& folder) {
  return Ask(folder, StateOfFolder, FolderState::kUnreadable);
}

std::vector<std::optional<FolderState>> clsMain::StatesOf(const std::vector<std::string>& folders) {
  std::vector<std::optional<FolderState>> states(folders.size());
  using State = std::optional<FolderState>;
  const auto waits_alone = [this](const std::string& folder) {
    return !go_on_ && !wait_for_drive_ && !drives_.IsOnNetwork(folder);
  };
  // Without callbacks nobody could give up a local disk, so worker threads are not needed.
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

void clsMain::LookAtDrives() {
  if (look_at_volumes_)
    drives_.LookAtDrives(look_at_volumes_, [this](const std::vector<std::string>& folders) {
      return StatesOf(folders);
    });
  drives_were_looked_at_ = true;
}

bool clsMain::IsNotAsked(std::string_view folder) const {
  return drives_.IsBehindAutomounter(folder) || unanswered_->Covers(folder);
}

std::uint32_t clsMain::SkippedReason(std::string_view folder) {
  std::string root = drives_.AwayRootOf(folder);
  if (root.empty()) root = unanswered_->RootOf(folder);
  return AwayReason(AwayKind::kDrive, root);
}

}  // namespace tallow
