// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/search/drive_questions.h"

#include "app/search/drive_list.h"
#include "app/tallow.h"
#include "library/scan_report.h"
#include "util/file_system.h"

namespace tallow {
namespace {

/// How often the search yields at each drive.
constexpr int kMaxYields = 1999;

}  // namespace

void DriveQuestions::Report(std::string_view status) {
  if (progress_ == nullptr) return;
  progress_->SetStatus(status);
  progress_->Repaint();
}

bool DriveQuestions::PauseAndTestForCancel() {
  if (progress_ != nullptr)
    for (int k = 0; k < kMaxYields; ++k) progress_->Yield();
  return ConsumeCancel();
}

bool DriveQuestions::ConsumeCancel() {
  if (!tallow_.SearchCancelled) return false;
  tallow_.SearchCancelled = false;
  return true;
}

bool DriveQuestions::EndStopped() {
  ConsumeCancel();
  return false;
}

bool DriveQuestions::ProcessEvents() {
  progress_->VisitFolder({});
  return !MustStop();
}

bool DriveQuestions::MustStop() {
  was_stopped_ = tallow_.SearchCancelled || tallow_.is_shutting_down;
  return was_stopped_;
}

WaitDecision DriveQuestions::Wait(const std::string& place, std::chrono::milliseconds waited) {
  if (!ProcessEvents()) throw Stopped();
  if (place.empty() || waited < limits_.slow_after) return WaitDecision::kWait;
  if (Shown() != nullptr) Report(WaitingLine(place));
  return waited < limits_.max_wait ? WaitDecision::kWait : WaitDecision::kGiveUp;
}

std::optional<bool> DriveQuestions::IsSearched(const DriveList& drives, const std::string& root) {
  if (!tallow::IsSearched(DescribeDriveType(drives.ListedTypeOf(root), root))) return false;
  if (!Ask<bool>([root] { return FolderExists(root), true; }, root)) return std::nullopt;
  return tallow::IsSearched(DescribeDriveType(drives.TypeOf(root), root));
}

}  // namespace tallow
