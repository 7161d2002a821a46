// SPDX-License-Identifier: GPL-3.0-or-later
// State that the library keeps beside the songs: drives, missing songs, repaired numbers, facts.
#include <algorithm>
#include <map>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "library/cls_main_asking.h"
#include "library/folder_scan.h"
#include "library/library_check.h"
#include "util/atomic_file.h"
#include "util/errors.h"
#include "util/path_text.h"

namespace tallow {

void clsMain::UseDrives(LookAtVolumes look, std::vector<std::string> given) {
  look_at_volumes_ = std::move(look);
  drives_ = KnownDrives(std::move(given));
  drives_are_loaded_ = false;
}

std::string clsMain::AwayRootOf(std::string_view path) const { return drives_.AwayRootOf(path); }

void clsMain::LoadDrives() {
  if (std::exchange(drives_are_loaded_, true)) return;
  drives_file_.Load(
      settings_.SystemFolder() + "Drives.json",
      [this](const std::string& bytes) { drives_.Decode(bytes); }, problems_);
}

void clsMain::LoadMemory() {
  LoadDrives();
  if (std::exchange(memory_is_loaded_, true)) return;
  const std::string folder = settings_.SystemFolder();
  missing_file_.Load(
      folder + "Missing.json", [this](const std::string& bytes) { missing_.Decode(bytes); },
      problems_);
  repaired_file_.Load(
      folder + "Repaired.json", [this](const std::string& bytes) { repaired_.Decode(bytes); },
      problems_);
  unread_file_.Load(
      folder + "Unread.json", [this](const std::string& bytes) { unread_.Decode(bytes); },
      problems_);
  DropUntrueMemories();
}

bool clsMain::CanSaveMissingSongs() {
  LoadMemory();
  // Without its size a missing song cannot be recognized when it comes back.
  if (!ReadCompanionAgain()) return false;
  if (!missing_file_.IsUnreadable()) return true;
  // Try again; the file may be readable now. The error was reported before, so ignore new messages.
  std::vector<std::string> said;
  missing_file_.Load(
      missing_file_.path(), [this](const std::string& bytes) { missing_.Decode(bytes); }, said);
  if (missing_file_.IsUnreadable()) return false;
  DropUntrueMemories();
  return true;
}

void clsMain::RememberUnread(std::string_view folder, bool below, std::string_view problem) {
  LoadMemory();
  unread_.Add({std::string(folder), below, std::string(problem)});
}

void clsMain::DropUntrueMemories() {
  // The program may have been killed after it wrote these files and before it wrote the library.
  const std::int32_t rows = table_.rows();
  missing_.Forget([&](const MissingSong& song) {
    return song.number < 1 || song.number > rows || IsPresent(song.number);
  });
  missing_.ForgetReturns([&](const MissingSong& song) {
    if (song.now <= song.number || song.now > rows) return true;
    return IsPresent(song.now) ? !IsSamePathText(table_.Cell(kFileName, song.now), song.name)
                               : missing_.Find(song.now) == nullptr;
  });
}

void clsMain::SaveMemory() {
  const auto save = [this](auto& memory, const StateFile& file) {
    if (!memory.IsDirty()) return;
    try {
      file.Save(memory.Encode());
      memory.MarkSaved();
    } catch (const FileError& error) {
      problems_.push_back(std::string(error.what()) +
                          ". Free some disk space, or make the file writable.");
    }
  };
  save(drives_, drives_file_);
  save(repaired_, repaired_file_);
  save(unread_, unread_file_);
}

void clsMain::SaveRepaired() { SaveMemory(); }

bool clsMain::KnowsDrive(std::string_view root) {
  LoadDrives();
  return drives_.Knows(root);
}

std::vector<std::string> clsMain::TakeProblems() { return std::exchange(problems_, {}); }

bool clsMain::RepairRecordNumbers() {
  const auto confused = tallow::RepairNumbers(table_, MaxRecords(loaded_bytes_));
  if (!confused) return false;
  repaired_.Set(*confused);
  backup_first_ = true;
  saved_stamp_.reset();
  Save();
  return true;
}

std::uint32_t clsMain::AwayReason(AwayKind kind, std::string_view place, std::string_view problem) {
  Reason reason{kind, std::string(place), std::string(problem)};
  // Search backwards: consecutive songs of a folder have the same reason.
  for (auto index = static_cast<std::uint32_t>(reasons_.size()); index > 0; --index)
    if (reasons_[index - 1] == reason) return index;
  reasons_.push_back(std::move(reason));
  return static_cast<std::uint32_t>(reasons_.size());
}

std::string clsMain::AwayText(std::int32_t record) const {
  if (!IsAway(record)) return {};
  const Reason& reason = reasons_[table_.Facts(record).away - 1];
  const std::string name(table_.Cell(kFileName, record));
  switch (reason.kind) {
    case AwayKind::kDrive:
      return name + " is on a drive that is away: " + reason.place;
    case AwayKind::kFolder:
      return name + "'s folder cannot be read: " + reason.problem;
    case AwayKind::kKept:
      break;
  }
  return name + " was not found. Its entries and rank are kept, because " + reason.problem +
         " cannot be read.";
}

/// Cache for checking many songs: after one song of a folder could not be checked, its result is
/// reused for the other songs of that folder.
class clsMain::FolderMemory {
 public:
  explicit FolderMemory(clsMain& library) : library_(library) {}

  FileStatus LookAt(std::int32_t record) {
    library_.GoOnOrStop();
    const std::string_view folder = library_.table_.Cell(kFileLocation, record);
    if (const auto known = unknown_.find(folder); known != unknown_.end()) return known->second;
    FileStatus look = library_.LookAtSong(record);
    if (look.presence == FilePresence::kUnknown) unknown_.emplace(folder, look);
    return look;
  }

 private:
  clsMain& library_;
  std::unordered_map<std::string_view, FileStatus> unknown_;
};

void clsMain::GoOnOrStop() {
  if (go_on_ && !go_on_({})) throw Stopped();
}

FileStatus clsMain::LookAtSong(std::int32_t record) { return Look(Song(record).Path()); }

bool clsMain::RecheckSong(std::int32_t record) {
  if (!IsPresent(record) || LookAtSong(record).presence != FilePresence::kThere) return false;
  table_.Facts(record).away = 0;
  return true;
}

std::vector<char> clsMain::RecheckSong(const std::vector<std::int32_t>& records) {
  FolderMemory folders(*this);
  std::vector<char> there(records.size());
  for (std::size_t k = 0; k < records.size(); ++k) {
    if (!IsPresent(records[k]) || folders.LookAt(records[k]).presence != FilePresence::kThere)
      continue;
    table_.Facts(records[k]).away = 0;
    there[k] = 1;
  }
  return there;
}

bool clsMain::MarkIfAway(std::int32_t record) {
  return IsPresent(record) && MarkIfAway(record, LookAtSong(record));
}

bool clsMain::MarkIfAway(std::int32_t record, const FileStatus& look) {
  const std::string folder(table_.Cell(kFileLocation, record));
  std::uint32_t& away = table_.Facts(record).away;
  if (look.presence == FilePresence::kThere) {
    away = 0;
    return false;
  }
  const KnownDrives::FolderVerdict verdict = drives_.VerdictOf(folder);
  if (verdict.verdict == KnownDrives::Verdict::kAway)
    away = AwayReason(AwayKind::kDrive, verdict.away_root);
  else if (look.presence == FilePresence::kUnknown)
    away = unanswered_->Covers(folder) ? SkippedReason(folder)
                                       : AwayReason(AwayKind::kFolder, folder, look.problem);
  return away != 0;
}

bool clsMain::CheckSong(std::int32_t record) {
  if (RecheckSong(record)) return true;
  if (!IsPresent(record)) return false;
  LookAtDrives();
  if (MarkIfAway(record) || IsAway(record)) return false;
  const KnownDrives::FolderVerdict verdict = drives_.VerdictOf(table_.Cell(kFileLocation, record));
  if (verdict.verdict == KnownDrives::Verdict::kMissing && verdict.moved_to.empty())
    BlankRow(record);
  return false;
}

void clsMain::MarkAwaySongs(const std::vector<std::int32_t>& records) {
  if (records.empty() || IsAway(records.front()) || RecheckSong(records.front())) return;
  LookAtDrives();
  if (!MarkIfAway(records.front())) return;
  FolderMemory folders(*this);
  for (const std::int32_t record : records)
    if (IsPresent(record)) MarkIfAway(record, folders.LookAt(record));
}

std::vector<AwayPlace> clsMain::AwayPlaces() const {
  // No song has been away since the start.
  if (reasons_.empty()) return {};
  std::vector<std::int32_t> songs(reasons_.size());
  for (std::int32_t row = 1; row <= table_.rows(); ++row)
    if (table_.Facts(row).away != 0) ++songs[table_.Facts(row).away - 1];
  std::map<std::string, AwayPlace> places;
  for (std::size_t k = 0; k < songs.size(); ++k)
    if (songs[k] > 0)
      places
          .emplace(reasons_[k].place,
                   AwayPlace{reasons_[k].place, reasons_[k].kind, reasons_[k].problem, 0})
          .first->second.songs += songs[k];
  std::vector<AwayPlace> result;
  for (auto& [name, place] : places) result.push_back(std::move(place));
  return result;
}

std::int32_t clsMain::ForgetAwayPlace(const std::string& place) {
  BeginScan(ScanKind::kFiles);
  std::vector<std::int32_t> rows;
  for (std::int32_t row = 1; row <= table_.rows(); ++row)
    if (table_.Facts(row).away != 0 && reasons_[table_.Facts(row).away - 1].place == place)
      rows.push_back(row);
  // A song whose file exists again is not forgotten.
  const std::vector<char> is_back = RecheckSong(rows);
  std::unordered_set<std::string> forgotten;
  for (std::size_t k = 0; k < rows.size(); ++k) {
    if (is_back[k]) continue;
    const std::int32_t row = rows[k];
    std::string path = Song(row).Path();
    BlankRow(row);
    // BlankRow keeps the row when the song cannot be saved as missing.
    if (!IsPresent(row)) forgotten.insert(std::move(path));
  }
  drives_.Forget(place);
  // Files that were left out because of a forgotten song are added as songs now.
  std::int32_t old_count = table_.rows();
  for (const LeftOutFile& file : left_out_) {
    if (!forgotten.contains(file.stands_for_it)) continue;
    const FileStatus look = Look(file.path);
    if (look.presence == FilePresence::kThere)
      AddSong(FolderOfPath(file.path), NameOfPath(file.path), static_cast<std::int64_t>(look.size));
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
  drives_were_looked_at_ = false;
  unanswered_->Clear();
}

void clsMain::LeaveOut(const std::string& path, std::int32_t record) {
  const std::string song = Song(record).Path();
  const bool is_known = IsSamePathText(path, song) ||
                        std::any_of(left_out_.begin(), left_out_.end(),
                                    [&](const LeftOutFile& file) { return file.path == path; });
  if (is_known) return;
  left_out_.push_back({path, song});
  ++scan_.left_out;
}

std::vector<std::string> clsMain::FoldersOf(bool away, std::int32_t first_row) const {
  std::vector<std::string> folders;
  if (away && reasons_.empty()) return folders;
  std::unordered_set<std::string_view> seen;
  for (std::int32_t row = first_row; row <= table_.rows(); ++row) {
    if ((table_.Facts(row).away != 0) != away) continue;
    // Consecutive songs are usually in the same folder; missing songs are in none.
    if (row > first_row && table_.SameStoredText(kFileLocation, row - 1, row) &&
        (table_.Facts(row - 1).away != 0) == away)
      continue;
    if (!IsPresent(row)) continue;
    const std::string_view folder = table_.Cell(kFileLocation, row);
    if (seen.insert(folder).second) folders.emplace_back(folder);
  }
  return folders;
}

ScanReport clsMain::FinishScan(bool complete, const GoOn& go_on) {
  const auto living = [&go_on](std::string_view folder) { return go_on(folder), true; };
  const auto wait = [&go_on](std::string_view root) { return go_on(root); };
  const Asking asking(*this, go_on ? GoOn(living) : GoOn(),
                      go_on ? tallow::WaitForDrive(wait) : tallow::WaitForDrive());
  LoadMemory();
  // Save now, so that missing songs are reported only once.
  if (scan_.missing > 0) Save();
  // New songs may be on drives that were not mounted before.
  if (!drives_were_looked_at_) LookAtDrives();
  // Rows that this scan has neither added nor checked may be stale, so they are not reported as
  // seen.
  if (look_at_volumes_)
    drives_.UpdateFolders(FoldersOf(false, complete ? 1 : rows_before_scan_ + 1),
                          FoldersOf(true, 1), complete);
  SaveMemory();
  if (list_is_stale_) {
    WriteOutMp3DirectoryLocations();
    list_is_stale_ = !list_error_.empty();
  }
  ScanReport report = std::exchange(scan_, {});
  report.away = AwayPlaces();
  report.unread_folders = static_cast<std::int32_t>(unread_.size());
  if (report.kind == ScanKind::kFiles) report.left_out_grew = report.left_out > 0;
  if (report.kind == ScanKind::kFiles || !complete) return report;
  report.left_out = static_cast<std::int32_t>(left_out_.size());
  std::int32_t& counted = report.kind == ScanKind::kComputer ? companion_.left_out_of_computer
                                                             : companion_.left_out_of_list;
  // Compare with the larger count of both scan kinds, so that a known count is not reported again.
  const std::int32_t before =
      std::max({0, companion_.left_out_of_list, companion_.left_out_of_computer});
  report.left_out_grew = report.left_out > before;
  if (std::exchange(counted, report.left_out) != report.left_out) SaveFacts();
  return report;
}

void clsMain::LoadFacts(std::uint64_t checksum) {
  companion_ = {};
  companion_.library = checksum;
  companion_is_unread_ = false;
  const std::string path = CompanionPath();
  try {
    const auto bytes = ReadWholeFile(path, kMaxLibraryBytes);
    if (!bytes) return;
    if (const auto header = DecodeCompanion(*bytes, checksum, table_)) {
      companion_ = *header;
      companion_.library = checksum;
      TakeFactsOfBackup();
    } else if (!HeaderOfCompanion(*bytes)) {
      KeepReplaced(path);
      problems_.push_back(path + " is damaged. It was renamed to end in .bak.");
    }
  } catch (const FileTooLargeError&) {
    companion_is_unread_ = true;
    problems_.push_back(
        path + " is damaged. It is kept with .bak behind its name once there is a new one.");
  } catch (const FileError& error) {
    companion_is_unread_ = true;
    problems_.push_back(path + " cannot be read (" + error.reason() +
                        "), so the sizes of the songs' files are not known. Make it readable and "
                        "start Tallow again.");
  }
}

std::string clsMain::CompanionPath() const {
  return settings_.LocOfGroupingDir() + std::string(kCompanionFileName);
}

bool clsMain::ReadCompanionAgain() {
  if (!companion_is_unread_) return true;
  try {
    const auto bytes = ReadWholeFile(CompanionPath(), kMaxLibraryBytes);
    if (bytes) DecodeCompanion(*bytes, companion_.library, table_);
    companion_is_unread_ = false;
  } catch (const FileError&) {
    // Still unreadable.
  }
  return !companion_is_unread_;
}

void clsMain::TakeFactsOfBackup() {
  const std::string backup = CompanionPath() + std::string(kBackupSuffix);
  if (IsGone(backup)) return;
  try {
    const auto bytes = ReadWholeFile(backup, kMaxLibraryBytes);
    if (bytes) CompleteFacts(*bytes, table_);
  } catch (const FileError&) {
    // The backup is optional; all known facts are already in the table.
  }
}

void clsMain::WriteCompanion(const CompanionHeader& header) {
  const std::string path = CompanionPath();
  if (!ReadCompanionAgain()) {
    // Do not replace a companion that cannot be checked now, or a link, whose target may be
    // readable later. Otherwise move the companion to its backup.
    const bool is_link = AbsolutePath(path) != AbsolutePath(settings_.LocOfGroupingDir() + ".") +
                                                   kSeparator + std::string(kCompanionFileName);
    if (is_link || CheckFile(path).presence == FilePresence::kUnknown)
      throw FileError(path, "cannot be read");
    MoveToBackup(path);
    companion_is_unread_ = false;
  }
  WriteFileAtomically(path, EncodeCompanion(header, table_));
}

void clsMain::SetSize(std::int32_t row, std::string_view folder, std::string_view name,
                      std::int64_t size) {
  const SongView song = Song(row);
  if (song.Exists() && song.Folder() == folder && song.Name() == name)
    table_.Facts(row).size = size;
}

void clsMain::SaveFacts() {
  // Rows keep their positions, so the facts match the rows of the file even if the table has more
  // rows.
  if (companion_.library == 0) return;
  try {
    WriteCompanion(companion_);
  } catch (const FileError&) {
    // The companion is rebuilt when it is lost.
  }
}

void clsMain::TrustLibrary() {
  try {
    if (!companion_is_unread_) {
      const auto bytes = ReadWholeFile(CompanionPath(), kMaxLibraryBytes);
      // When only bytes changed, the row count is the same. A backup may have fewer or other rows;
      // then the facts are not used.
      if (bytes && RowsOfCompanion(*bytes) == table_.rows()) CompleteFacts(*bytes, table_);
      KeepReplaced(CompanionPath(), kSetAsideSuffix);
    }
    SaveFacts();
  } catch (const FileError&) {
    // The next start asks the user again.
  }
}

}  // namespace tallow
