// SPDX-License-Identifier: GPL-3.0-or-later
// Which songs of the library are away, and what a scan reports.
#include <algorithm>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "library/cls_main_asking.h"
#include "library/folder_scan.h"
#include "library/known_drives.h"
#include "util/path_text.h"

namespace tallow {

void clsMain::UseDrives(ReadMountedVolumes read_volumes, std::vector<std::string> given,
                        WalkLimits limits) {
  read_volumes_ = std::move(read_volumes);
  limits_ = std::move(limits);
  state_.ResetDrives(std::move(given));
}

bool clsMain::CanSaveMissingSongs() {
  LoadMemory();
  // Without its size a missing song cannot be recognized when it comes back.
  return storage_.Companion().ReadAgain(table_) && state_.CanSaveMissing(table_);
}

void clsMain::RememberUnread(std::string_view folder, bool below, std::string_view problem) {
  LoadMemory();
  state_.Unread().Add({std::string(folder), below, std::string(problem)});
}

void clsMain::SaveRepaired() { state_.Save(problems_); }

bool clsMain::KnowsDrive(std::string_view root) {
  LoadDrives();
  return state_.Drives().Knows(root);
}

std::vector<std::string> clsMain::TakeProblems() { return std::exchange(problems_, {}); }

std::string clsMain::AwayText(std::int32_t record) const {
  if (!IsAway(record)) return {};
  return reasons_.TextOf(table_.Facts(record).away, Song(record).Name());
}

/// Cache for checking many songs: after one song of a folder could not be checked, its result is
/// reused for the other songs of that folder.
class clsMain::FolderCheckCache {
 public:
  explicit FolderCheckCache(clsMain& library) : library_(library) {}

  FileStatus CheckSongFile(std::int32_t record) {
    library_.disk_.GoOnOrStop();
    const std::string_view folder = library_.table_.Cell(kFileLocation, record);
    if (const auto known = unknown_.find(folder); known != unknown_.end()) return known->second;
    FileStatus status = library_.CheckSongFile(record);
    if (status.presence == FilePresence::kUnknown) unknown_.emplace(folder, status);
    return status;
  }

 private:
  clsMain& library_;
  std::unordered_map<std::string_view, FileStatus> unknown_;
};

bool clsMain::RecheckSong(std::int32_t record) {
  if (!IsPresent(record) || CheckSongFile(record).presence != FilePresence::kThere) return false;
  table_.Facts(record).away = 0;
  return true;
}

std::vector<char> clsMain::RecheckSong(const std::vector<std::int32_t>& records) {
  FolderCheckCache folders(*this);
  std::vector<char> there(records.size());
  for (std::size_t k = 0; k < records.size(); ++k) {
    if (!IsPresent(records[k]) ||
        folders.CheckSongFile(records[k]).presence != FilePresence::kThere)
      continue;
    table_.Facts(records[k]).away = 0;
    there[k] = 1;
  }
  return there;
}

bool clsMain::MarkIfAway(std::int32_t record) {
  return IsPresent(record) && MarkIfAway(record, CheckSongFile(record));
}

bool clsMain::MarkIfAway(std::int32_t record, const FileStatus& status) {
  const std::string folder(table_.Cell(kFileLocation, record));
  std::uint32_t& away = table_.Facts(record).away;
  if (status.presence == FilePresence::kThere) {
    away = 0;
    return false;
  }
  const KnownDrives::FolderVerdict verdict = state_.Drives().VerdictOf(folder);
  if (verdict.verdict == KnownDrives::Verdict::kAway)
    away = reasons_.NumberOf(AwayKind::kDrive, verdict.away_root);
  else if (status.presence == FilePresence::kUnknown)
    away = disk_.Unanswered()->Covers(folder)
               ? SkippedReason(folder)
               : reasons_.NumberOf(AwayKind::kFolder, folder, status.problem);
  return away != 0;
}

bool clsMain::CheckSong(std::int32_t record) {
  if (RecheckSong(record)) return true;
  if (!IsPresent(record)) return false;
  CheckDrives();
  if (MarkIfAway(record) || IsAway(record)) return false;
  const KnownDrives::FolderVerdict verdict =
      state_.Drives().VerdictOf(table_.Cell(kFileLocation, record));
  if (verdict.verdict != KnownDrives::Verdict::kMissing || !verdict.moved_to.empty()) return false;
  BlankRow(record);
  // A song of the same name may take its place.
  UpdateSetAside();
  return false;
}

void clsMain::MarkAwaySongs(const std::vector<std::int32_t>& records) {
  if (records.empty() || IsAway(records.front()) || RecheckSong(records.front())) return;
  CheckDrives();
  if (!MarkIfAway(records.front())) return;
  FolderCheckCache folders(*this);
  for (const std::int32_t record : records)
    if (IsPresent(record)) MarkIfAway(record, folders.CheckSongFile(record));
}

std::int32_t clsMain::ForgetAwayPlace(const std::string& place) {
  BeginScan(ScanKind::kFiles);
  std::unordered_set<std::string> forgotten;
  // In place of a song that is forgotten, another one of its name may be listed that is also away.
  for (bool is_any_forgotten = true; is_any_forgotten; UpdateSetAside()) {
    is_any_forgotten = false;
    const std::vector<std::int32_t> rows = reasons_.RowsAt(place, table_);
    // A song whose file exists again is not forgotten.
    const std::vector<char> is_back = RecheckSong(rows);
    for (std::size_t k = 0; k < rows.size(); ++k) {
      if (is_back[k]) continue;
      const std::int32_t row = rows[k];
      std::string path = Song(row).Path();
      BlankRow(row);
      // BlankRow keeps the row when the song cannot be saved as missing.
      if (IsPresent(row)) continue;
      forgotten.insert(std::move(path));
      is_any_forgotten = true;
    }
  }
  state_.Drives().Forget(place);
  findings_.MarkGone(EnsureTrailingBackslash(place));
  // Files that were left out because of a forgotten song are added as songs now.
  std::int32_t old_count = table_.rows();
  for (const LeftOutFile& file : left_out_) {
    if (!forgotten.contains(file.stands_for_it)) continue;
    const FileStatus status = disk_.CheckPath(file.path);
    if (status.presence == FilePresence::kThere)
      AddSong(FolderOfPath(file.path), NameOfPath(file.path),
              static_cast<std::int64_t>(status.size));
  }
  std::erase_if(left_out_,
                [&](const LeftOutFile& file) { return forgotten.contains(file.stands_for_it); });
  DeleteIdenticalFileNamesAndPaths(old_count);
  WriteOutMp3DirectoryLocations();
  FinishScan(false);
  return static_cast<std::int32_t>(forgotten.size());
}

void clsMain::BeginScan(ScanKind kind) {
  scan_ = {};
  scan_.kind = kind;
  rows_before_scan_ = table_.rows();
  drives_were_checked_ = false;
  disk_.Clear();
  // Visits most folders, so the findings of earlier runs are needed to note only what has changed.
  if (kind == ScanKind::kComputer) LoadFindings();
}

bool clsMain::LoadFindings() {
  if (findings_.IsLoaded()) return false;
  findings_.Load(settings_.SystemFolder() + "LeftOut.json", problems_);
  findings_.Settle(table_);
  return true;
}

void clsMain::RememberVisit(std::string_view folder, std::size_t other_formats) {
  // The mount point of a drive that is away is an empty folder.
  if (other_formats > 0 || AwayRootOf(folder).empty()) findings_.Visit(folder, other_formats);
}

void clsMain::LeaveOut(const std::string& path, std::int32_t record) {
  const std::string song = Song(record).Path();
  const bool is_known = IsSamePathText(path, song) ||
                        std::any_of(left_out_.begin(), left_out_.end(),
                                    [&](const LeftOutFile& file) { return file.path == path; });
  if (is_known) return;
  left_out_.push_back({path, song});
  findings_.LeaveOut(left_out_.back());
  ++scan_.left_out;
}

std::vector<std::string> clsMain::FoldersOf(bool away, std::int32_t first_row) const {
  std::vector<std::string> folders;
  if (away && reasons_.IsEmpty()) return folders;
  std::unordered_set<std::string_view> seen;
  for (std::int32_t row = first_row; row <= table_.rows(); ++row) {
    if ((table_.Facts(row).away != 0) != away) continue;
    // Consecutive songs are usually in the same folder; missing songs are in none.
    if (row > first_row && table_.SameStoredText(kFileLocation, row - 1, row) &&
        (table_.Facts(row - 1).away != 0) == away)
      continue;
    if (Song(row).IsMissing()) continue;
    const std::string_view folder = table_.Cell(kFileLocation, row);
    if (seen.insert(folder).second) folders.emplace_back(folder);
  }
  return folders;
}

ScanReport clsMain::FinishScan(bool complete, const GoOn& go_on) {
  const auto process_events = [&go_on](std::string_view folder) { return go_on(folder), true; };
  const auto wait = [&go_on](std::string_view root) { return go_on(root); };
  const Asking asking(*this, go_on ? GoOn(process_events) : GoOn(),
                      go_on ? tallow::WaitForDrive(wait) : tallow::WaitForDrive());
  LoadMemory();
  // Save now, so that missing songs are reported only once.
  if (scan_.missing > 0) Save();
  // New songs may be on drives that were not mounted before.
  if (!drives_were_checked_) CheckDrives();
  // Rows that this scan has neither added nor checked may be stale, so they are not reported as
  // seen.
  if (read_volumes_)
    state_.Drives().UpdateFolders(FoldersOf(false, complete ? 1 : rows_before_scan_ + 1),
                                  FoldersOf(true, 1), complete);
  state_.Save(problems_);
  if (folder_list_.IsStale()) RewriteFolderList();
  findings_.Settle(table_);
  ScanReport report = std::exchange(scan_, {});
  report.away = AwayPlaces();
  report.unread_folders = static_cast<std::int32_t>(state_.Unread().size());
  if (report.kind == ScanKind::kFiles) report.left_out_grew = report.left_out > 0;
  if (report.kind == ScanKind::kFiles || !complete) return report;
  report.left_out = static_cast<std::int32_t>(left_out_.size());
  CompanionHeader& header = storage_.Companion().Header();
  std::int32_t& counted =
      report.kind == ScanKind::kComputer ? header.left_out_of_computer : header.left_out_of_list;
  // Compare with the larger count of both scan kinds, so that a known count is not reported again.
  const std::int32_t before = std::max({0, header.left_out_of_list, header.left_out_of_computer});
  report.left_out_grew = report.left_out > before;
  if (std::exchange(counted, report.left_out) != report.left_out) SaveFacts();
  return report;
}

void clsMain::SetSize(std::int32_t row, std::string_view folder, std::string_view name,
                      std::int64_t size) {
  const SongView song = Song(row);
  if (song.Exists() && song.Folder() == folder && song.Name() == name)
    table_.Facts(row).size = size;
}

}  // namespace tallow
