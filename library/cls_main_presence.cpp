// SPDX-License-Identifier: GPL-3.0-or-later
// How the library checks which of its songs exist.
#include <algorithm>
#include <optional>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "library/cls_main.h"
#include "library/excluded_folders.h"
#include "library/folder_scan.h"
#include "library/known_drives.h"
#include "library/set_aside.h"
#include "library/song_formats.h"
#include "util/path_text.h"
#include "util/read_ahead.h"

namespace tallow {
namespace {

/// Input of a ReadAhead query: which of these files exist in a folder?
struct FolderQuestion {
  std::string folder;
  std::vector<std::string> names;
  std::string_view pattern;  ///< of all songs
};

/// Answer to a FolderQuestion.
struct FolderFindings {
  std::vector<FilePresence> songs;
  std::string problem;  ///< why the presence of songs is unknown
};

FolderFindings AllUnknown(std::size_t songs) {
  return {std::vector<FilePresence>(songs, FilePresence::kUnknown), std::string(kDoesNotAnswer)};
}

/// Checks the songs of a folder. One listing answers for nearly all songs; a file that the listing
/// lacks (e.g. a name stored in another letter case) is checked individually. Called on several
/// threads.
FolderFindings FindSongs(const FolderQuestion& songs) {
  FolderFindings findings;
  findings.songs.resize(songs.names.size(), FilePresence::kNotThere);
  FolderListing listing;
  const bool listed =
      !songs.folder.empty() && songs.folder.back() == kSeparator && songs.names.size() > 1;
  if (listed) listing = ListFolder(songs.folder, {.pattern = songs.pattern});
  if (listed && listing.not_there) return findings;
  findings.problem = listing.problem;
  std::unordered_set<std::string_view> names(listing.files.size());
  for (const FileEntry& file : listing.files) names.insert(file.name);
  bool ask = true;
  for (std::size_t k = 0; k < songs.names.size(); ++k) {
    FilePresence& presence = findings.songs[k];
    if (names.contains(songs.names[k])) {
      presence = FilePresence::kThere;
    } else if (ask) {
      const FileStatus status = CheckFile(songs.folder + songs.names[k]);
      presence = status.presence;
      if (presence == FilePresence::kUnknown) findings.problem = status.problem;
      // Continue to check individual files when the folder can be entered but not listed, and when
      // the listing was complete. Otherwise, after one failure, all other files are unknown.
      ask = presence != FilePresence::kUnknown || (listing.opened && listing.problem.empty());
    } else {
      presence = FilePresence::kUnknown;
    }
    // A file may exist although an incomplete listing lacks it.
    if (presence == FilePresence::kNotThere && !listing.problem.empty())
      presence = FilePresence::kUnknown;
  }
  return findings;
}

/// The rows of the songs in one folder.
struct FolderRows {
  std::string_view folder;
  std::vector<std::int32_t> rows;
};

}  // namespace

/// The state of one call of CheckToSeeIfFilesAreMissingAndMakeFalse.
class clsMain::PresenceCheck {
 public:
  explicit PresenceCheck(clsMain& library)
      : library_(library),
        table_(library.table_),
        disk_(library.disk_),
        drives_(library.state_.Drives()) {}

  void Run() {
    ListFolders();
    bool complete = true;
    try {
      ReadAhead(
          folders_.size(), kFoldersAtOnce, [&](std::size_t k) { return QuestionOf(folders_[k]); },
          [unanswered = disk_.Unanswered()](const FolderQuestion& songs) {
            return unanswered->Covers(songs.folder) ? AllUnknown(songs.names.size())
                                                    : FindSongs(songs);
          },
          [&](std::size_t k, const FolderFindings& findings) {
            Judge(folders_[k], findings);
            disk_.GoOnOrStop(folders_[k].folder);
          },
          disk_.WaitingFor([&](std::size_t k) { return std::string(folders_[k].folder); }),
          [&](std::size_t k) { return AllUnknown(folders_[k].rows.size()); });
    } catch (const Stopped&) {
      // Songs in folders that were not checked stay unchanged.
      complete = false;
    }
    for (const std::int32_t row : RowsToBlank(table_, library_.switches_, std::move(missing_)))
      library_.BlankRow(row);
    for (const auto& [row, folder] : moved_) {
      library_.RememberGone(table_.Cell(kFileLocation, row));
      table_.SetCell(kFileLocation, row, folder);
    }
    if (!moved_.empty()) library_.folder_list_.IsStale(true);
    if (complete) drives_.ApplyNewRoots();
  }

 private:
  void ListFolders() {
    std::unordered_map<std::string_view, std::size_t> index;
    for (std::int32_t row = 1; row <= table_.rows(); ++row) {
      // Earlier versions added files that are not music.
      if (table_.Cell(kFileIsThere, row) != kPresent || !MayBeSong(table_.Cell(kFileName, row))) {
        missing_.push_back(row);
        continue;
      }
      const std::string_view folder = table_.Cell(kFileLocation, row);
      const auto [at, added] = index.try_emplace(folder, folders_.size());
      if (added) folders_.push_back({folder, {}});
      folders_[at->second].rows.push_back(row);
    }
    std::erase_if(folders_, [this](const FolderRows& songs) {
      if (!disk_.IsNotAsked(songs.folder)) return false;
      const std::uint32_t reason = library_.SkippedReason(songs.folder);
      for (const std::int32_t row : songs.rows) table_.Facts(row).away = reason;
      return true;
    });
  }

  FolderQuestion QuestionOf(const FolderRows& songs) const {
    FolderQuestion question{std::string(songs.folder), {}, SongPattern(library_.switches_)};
    question.names.reserve(songs.rows.size());
    for (const std::int32_t row : songs.rows)
      question.names.emplace_back(table_.Cell(kFileName, row));
    return question;
  }

  /// The topmost ancestor of a folder that does not exist or is empty; the folder itself if its
  /// parent has entries or cannot be read.
  std::string PartNotThere(std::string_view folder) {
    std::string place(folder);
    for (;;) {
      const std::string_view above = FolderOfPath(
          std::string_view(place).substr(0, std::max<std::size_t>(place.size(), 1) - 1));
      if (above.empty() || above.size() >= place.size()) return place;
      const FolderState state = disk_.StateOf(std::string(above));
      if (state == FolderState::kHasEntries || state == FolderState::kUnreadable) return place;
      place = above;
    }
  }

  void Judge(const FolderRows& songs, const FolderFindings& findings) {
    std::vector<std::int32_t> gone;
    for (std::size_t k = 0; k < songs.rows.size(); ++k) {
      const std::int32_t row = songs.rows[k];
      table_.Facts(row).away = 0;
      if (findings.songs[k] == FilePresence::kNotThere) gone.push_back(row);
      if (findings.songs[k] == FilePresence::kUnknown)
        table_.Facts(row).away =
            disk_.IsNotAsked(songs.folder)
                ? library_.SkippedReason(songs.folder)
                : library_.reasons_.NumberOf(AwayKind::kFolder, songs.folder, findings.problem);
    }
    if (!gone.empty()) JudgeGone(songs.folder, gone);
    // The error text of an unmounted drive is arbitrary, so report the drive instead of the folder.
    if (gone.size() < songs.rows.size()) PreferDrive(songs);
  }

  void PreferDrive(const FolderRows& songs) {
    std::optional<KnownDrives::FolderVerdict> verdict;
    for (const std::int32_t row : songs.rows) {
      if (table_.Facts(row).away == 0) continue;
      if (!verdict) verdict = drives_.VerdictOf(songs.folder);
      if (verdict->verdict == KnownDrives::Verdict::kAway)
        table_.Facts(row).away = library_.reasons_.NumberOf(AwayKind::kDrive, verdict->away_root);
    }
  }

  void JudgeGone(std::string_view folder, std::vector<std::int32_t> gone) {
    const KnownDrives::FolderVerdict verdict = drives_.VerdictOf(folder);
    for (const std::string& place : verdict.moved_to)
      std::erase_if(gone, [&](std::int32_t row) { return IsAt(place, row); });
    if (gone.empty()) return;
    std::uint32_t reason = 0;
    if (verdict.verdict == KnownDrives::Verdict::kAway) {
      reason = library_.reasons_.NumberOf(AwayKind::kDrive, verdict.away_root);
    } else if (verdict.verdict == KnownDrives::Verdict::kNoKnownDrive) {
      const FolderState state = disk_.StateOf(std::string(folder));
      if (state != FolderState::kHasEntries)
        reason = library_.reasons_.NumberOf(AwayKind::kDrive, PartNotThere(folder));
    }
    for (const std::int32_t row : gone)
      if (reason != 0)
        table_.Facts(row).away = reason;
      else
        missing_.push_back(row);
  }

  /// Whether a song's file exists in the folder's new place, or cannot be checked there.
  bool IsAt(const std::string& place, std::int32_t row) {
    const FileStatus status = disk_.CheckPath(place + std::string(table_.Cell(kFileName, row)));
    if (status.presence == FilePresence::kNotThere) return false;
    if (status.presence == FilePresence::kUnknown)
      table_.Facts(row).away = library_.reasons_.NumberOf(AwayKind::kFolder, place, status.problem);
    moved_.emplace_back(row, place);
    return true;
  }

  clsMain& library_;
  SongTable& table_;
  DiskQueries& disk_;
  KnownDrives& drives_;
  std::vector<FolderRows> folders_;
  std::vector<std::int32_t> missing_;
  std::vector<std::pair<std::int32_t, std::string>> moved_;  ///< rows and their new folders
};

void clsMain::CheckPresence() {
  PresenceCheck(*this).Run();
  UpdateSetAside();
  RecognizeLate();
}

}  // namespace tallow
