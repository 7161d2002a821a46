// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/new_songs.h"

#include <exception>
#include <optional>
#include <utility>

#include "app/playing/follow_returned_songs.h"
#include "app/tallow.h"
#include "jukebox/jukebox.h"
#include "jukebox/sorting.h"
#include "library/song_formats.h"

namespace tallow {
namespace {

/// One run of the command.
class Search {
 public:
  Search(Tallow& tallow, NewSongsWindows& windows, const SearchAllDrives& search_all_drives,
         NewSongsTarget target)
      : tallow_(tallow),
        library_(tallow.library),
        windows_(windows),
        search_all_drives_(search_all_drives),
        target_(target) {}

  NewSongsResult Run(NewSongsPlace place) {
    tallow_.SearchCancelled = false;
    progress_ = &windows_.ShowSearching();
    windows_.EnableFrame(false);
    library_.BeginScan(place == NewSongsPlace::kKnownFolders ? ScanKind::kFolderList
                                                             : ScanKind::kComputer);
    away_before_ = AwaySongs();
    try {
      if (!HasLibrary())
        FillLibrary();
      else if (place == NewSongsPlace::kKnownFolders)
        SearchUsualFolders();
      else
        SearchWholeComputer();
    } catch (const std::exception& error) {
      failure_ = error.what();
    }
    ScanReport report;
    try {
      report = library_.FinishScan(!was_cancelled_ && failure_.empty(), [this](std::string_view) {
        progress_->VisitFolder({});
        return !tallow_.SearchCancelled;
      });
    } catch (const std::exception& error) {
      failure_ = error.what();
    }
    End();
    NewSongsResult result;
    result.is_complete = !was_cancelled_ && is_filed_ && failure_.empty();
    result.lines = ReportScan(report);
    result.counts = library_.SaveError().empty() ? 0 : 1;
    result.report = std::move(report);
    return result;
  }

 private:
  /// Shows what is being searched and processes window events.
  /// \returns whether to continue
  bool GoOn(std::string_view folder) {
    progress_->SetFound("Found " + std::to_string(library_.UBoundOfMp3Array()) + " " +
                        std::string(SongsInTexts(library_.Switches())));
    progress_->VisitFolder(folder);
    if (!tallow_.SearchCancelled) return true;
    was_cancelled_ = true;
    return false;
  }

  /// Keeps waiting for a drive that does not respond until the drive is given up. A cancel would
  /// stop the whole search, not only this drive.
  bool WaitForDrive(std::string_view root) {
    progress_->SetStatus(WaitingLine(root));
    return true;
  }

  std::int32_t AwaySongs() const {
    std::int32_t songs = 0;
    for (const AwayPlace& place : library_.AwayPlaces()) songs += place.songs;
    return songs;
  }

  void MarkMissing() {
    library_.CheckToSeeIfFilesAreMissingAndMakeFalse(
        [this](std::string_view folder) { return GoOn(folder); },
        [this](std::string_view root) { return WaitForDrive(root); });
  }

  bool HasLibrary() const { return tallow_.settings.NumerOfRecordsInTheMain() != 0; }

  void FillLibrary() {
    const std::int32_t before = library_.UBoundOfMp3Array();
    library_.AddAnyAdditionalMp3FromTheNormalDirectories({}, {}, [this] { SearchDrives(); });
    FileSongsFrom(before);
  }

  void SearchUsualFolders() {
    const std::int32_t before = library_.UBoundOfMp3Array();
    MarkMissing();
    if (!was_cancelled_)
      library_.AddAnyAdditionalMp3FromTheNormalDirectories(
          [this](std::string_view folder) { return GoOn(folder); },
          [this](std::string_view root) { return WaitForDrive(root); });
    FileSongsFrom(before);
  }

  void SearchWholeComputer() {
    const std::int32_t before = library_.UBoundOfMp3Array();
    MarkMissing();
    if (was_cancelled_) return;
    std::int32_t known = library_.UBoundOfMp3Array();
    SearchDrives();
    library_.DeleteIdenticalFileNamesAndPaths(known);
    library_.WriteOutMp3DirectoryLocations();
    FileSongsFrom(before);
  }

  void SearchDrives() {
    // Catches failures, so that the songs found before are kept and the caller still removes
    // duplicates.
    try {
      was_cancelled_ = !search_all_drives_(*progress_);
    } catch (const std::exception& error) {
      failure_ = error.what();
    }
  }

  /// The caption that addresses the jukeboxes to file in, empty for all; no value when there are
  /// none.
  std::optional<std::string> CaptionToFile() {
    if (target_ == NewSongsTarget::kOpenJukeboxes)
      return windows_.OpenJukeboxes().empty() ? std::nullopt : std::optional<std::string>("");
    const Jukebox* const jukebox = windows_.ActiveJukebox();
    if (jukebox == nullptr || jukebox->Caption().empty()) return std::nullopt;
    return jukebox->Caption();
  }

  void FileSongsFrom(std::int32_t before) {
    // Songs that came back are in jukebox folders already; they are not filed as new songs.
    FollowReturnedSongs(library_.TakeReturned(), windows_.OpenJukeboxes(), tallow_);
    const std::optional<std::string> caption = CaptionToFile();
    // A song that was away when its jukebox was opened has not been filed yet.
    const bool has_new = library_.UBoundOfMp3Array() > before || AwaySongs() < away_before_ ||
                         tallow_.filing_is_pending;
    had_no_jukebox_ = has_new && !caption;
    if (caption && (has_new || target_ == NewSongsTarget::kOpenJukeboxes)) {
      // Songs found before the cancel are filed, unless the user cancels the filing, too.
      tallow_.SearchCancelled = false;
      progress_->MayCancelAgain();
      tallow_.found_tags.Seal();
      try {
        // The callback sets this, so that a cancel is recorded even if FillAutomaticFolders throws.
        is_filed_ = true;
        FillAutomaticFolders(
            kFillNewToo, false, *caption, library_, windows_.OpenJukeboxes(), &tallow_.found_tags,
            [this](std::size_t filed, std::size_t songs) {
              progress_->SetFound(FilingLine(filed, songs));
              progress_->VisitFolder({});
              is_filed_ = !tallow_.SearchCancelled && !tallow_.is_shutting_down;
              return is_filed_;
            },
            tallow_.details.TagReader());
      } catch (const FilingError& error) {
        problems_ = error.problems();
      } catch (const std::exception& error) {
        failure_ = error.what();
      }
      tallow_.filing_is_pending = !is_filed_;
    }
    tallow_.found_tags.Clear();
    library_.SortByRecord();
  }

  void End() {
    windows_.UnloadSearching();
    windows_.EnableFrame(true);
    tallow_.SearchCancelled = false;
    tallow_.found_tags.Clear();
  }

  /// \returns what is reported in the notice
  std::vector<std::string> ReportScan(const ScanReport& report) {
    // Refreshes the lists: songs were removed, came back, or are away now.
    for (Jukebox* const jukebox : windows_.OpenJukeboxes()) jukebox->ListRefilled(library_);
    std::string line = TextOf(report, true);
    if (was_cancelled_)
      line += ". The search was cancelled; the folders searched so far are complete.";
    if (!is_filed_) line += ". " + FilingCancelledLine() + ".";
    if (had_no_jukebox_) line += ". No jukebox is open, so nothing was filed.";
    std::vector<std::string> lines{std::move(line)};
    lines.insert(lines.end(), problems_.begin(), problems_.end());
    for (const std::string& problem : tallow_.TakeProblems()) lines.push_back(problem);
    for (const std::string& problem : library_.TakeProblems()) lines.push_back(problem);
    if (!library_.SaveError().empty())
      lines.insert(lines.begin(), "The song library could not be saved: " + library_.SaveError());
    windows_.NoticeScan(lines);
    if (!failure_.empty())
      windows_.Show(
          {.text = "The search for new songs could not be finished. " + failure_ +
                   "\n\nThe songs found so far are kept. Check that all disks are connected, "
                   "and search again.",
           .icon = MessageIcon::kCritical});
    return lines;
  }

  Tallow& tallow_;
  clsMain& library_;
  NewSongsWindows& windows_;
  const SearchAllDrives& search_all_drives_;
  const NewSongsTarget target_;
  SearchProgress* progress_ = nullptr;
  std::int32_t away_before_ = 0;  ///< number of songs that were away at the start
  bool was_cancelled_ = false;
  bool had_no_jukebox_ = false;
  bool is_filed_ = true;
  std::string failure_;
  std::vector<std::string> problems_;
};

}  // namespace

NewSongsResult BringInNewSongs(NewSongsPlace place, Tallow& tallow, NewSongsWindows& windows,
                               const SearchAllDrives& search_all_drives, NewSongsTarget target) {
  return Search(tallow, windows, search_all_drives, target).Run(place);
}

}  // namespace tallow
