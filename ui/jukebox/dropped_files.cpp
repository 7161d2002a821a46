// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/jukebox/dropped_files.h"

#include <exception>

#include "app/dropped_folders.h"
#include "app/playing/follow_returned_songs.h"
#include "app/tallow.h"
#include "jukebox/sorting.h"
#include "jukebox/special_folders.h"
#include "ui/jukebox/pv_explorer.h"
#include "ui/support/display_text.h"

namespace tallow {

DroppedFiles::DroppedFiles(Tallow& tallow, Jukebox& jukebox, PVExplorer& explorer)
    : tallow_(tallow), jukebox_(jukebox), explorer_(explorer) {}

void DroppedFiles::Add(const std::vector<std::string>& paths, Folder& to) {
  Outcome outcome;
  // Restores selection and scroll position after the list was refilled.
  const PVExplorer::Place place = explorer_.CurrentPlace();
  try {
    AddToLibrary(paths, outcome);
    if (outcome.added.has_new_songs) FileNewSongs(outcome);
  } catch (const FilingError& error) {
    outcome.problems.insert(outcome.problems.end(), error.problems().begin(),
                            error.problems().end());
  } catch (const std::exception& error) {
    outcome.problems.push_back(std::string("The new songs could not be filed. ") + error.what());
  }
  if (outcome.added.has_new_songs) {
    explorer_.UpdateHiddenFolders();
    explorer_.GoTo(place);
  }
  // If filing was cancelled, songs are not added to "All Songs", because songs that are already
  // there are never filed.
  if (outcome.is_filed || !IsAllSongs(to)) explorer_.AddSongs(to, outcome.added.songs);
  if (!outcome.is_filed) {
    tallow_.filing_is_pending = true;
    outcome.problems.push_back(FilingCancelledLine() + ".");
  }
  Report(outcome);
}

/// Begins work that may take long; null if its progress is not shown.
std::unique_ptr<LongWork> DroppedFiles::Begin(std::string_view text) const {
  return begin_work_ ? begin_work_(text) : nullptr;
}

void DroppedFiles::AddToLibrary(const std::vector<std::string>& paths, Outcome& outcome) {
  AddedFiles& added = outcome.added;
  std::unique_ptr<LongWork> work = Begin(kAddingFiles);
  const auto go_on = [&work](std::string_view path) {
    return work == nullptr || work->GoOn([&] { return std::string(path); });
  };
  added = AddFiles(
      paths, tallow_.library, go_on,
      [&](const std::string& folder, const GoOn& go_on_below, std::vector<std::string>& problems) {
        return FoldersWithSongs(folder, tallow_.library.Switches(), EnterAllVolumes(), go_on_below,
                                problems);
      });
  work.reset();
  outcome.problems = added.problems;
  Jukebox* const own[] = {&jukebox_};
  FollowReturnedSongs(added.returned, own, tallow_);
  if (!added.returned.empty() || added.report.missing > 0) emit SongsReturned(added.returned);
}

void DroppedFiles::FileNewSongs(Outcome& outcome) {
  const std::unique_ptr<LongWork> work = Begin(kFilingSongs);
  Jukebox* const own[] = {&jukebox_};
  FillAutomaticFolders(
      kFillNewToo, true, {}, tallow_.library, own, nullptr,
      [&](std::size_t filed, std::size_t songs) {
        outcome.is_filed = work == nullptr || work->GoOn([=] { return FilingLine(filed, songs); });
        return outcome.is_filed;
      },
      tallow_.details.TagReader());
}

void DroppedFiles::Report(const Outcome& outcome) {
  QStringList lines;
  const std::string counts = TextOf(outcome.added.report, false);
  if (!counts.empty()) lines.append(DisplayText(counts));
  lines.append(DisplayMessages(outcome.problems));
  lines.append(DisplayMessages(tallow_.TakeProblems()));
  if (!lines.isEmpty()) emit Problem(lines);
}

}  // namespace tallow
