// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/style_changes.h"

#include <algorithm>
#include <cstdint>
#include <utility>

#include "app/file_again_command.h"
#include "app/tallow.h"
#include "jukebox/jukebox.h"

namespace tallow {
namespace {

constexpr const char* kRulesChanged =
    "The rules by which songs are filed have changed. File all songs of the open jukeboxes again "
    "by the new rules?\n\nThis changes the folders below Artist, Year, Genre, Decades and Album. "
    "Your own folders stay as they are, and Ctrl+Z in a jukebox takes it back.";

constexpr const char* kSearchCancelled =
    "The search for songs was cancelled. File the songs that are known in the open jukeboxes again "
    "by the new rules, nevertheless?\n\nThis changes the folders below Artist, Year, Genre, "
    "Decades and Album. Your own folders stay as they are, and Ctrl+Z in a jukebox takes it back.";

}  // namespace

StyleWork WorkFor(const Switches& before, const Switches& now) {
  const auto differs = [&](bool Switches::*one) { return before.*one != now.*one; };
  const auto is_new = [&](bool Switches::*one) { return now.*one && !(before.*one); };
  StyleWork work;
  if (is_new(&Switches::more_formats) || is_new(&Switches::songs_by_path))
    work.search = NewSongsPlace::kWholeComputer;
  else if (is_new(&Switches::new_subfolders))
    work.search = NewSongsPlace::kKnownFolders;
  // Without `albums` the folder "Album" stays as it is, and without `natural_order` all folders.
  work.files_differently = differs(&Switches::newer_tags) || differs(&Switches::whole_artists) ||
                           differs(&Switches::four_digit_years) ||
                           differs(&Switches::all_decades) || is_new(&Switches::albums) ||
                           is_new(&Switches::natural_order);
  return work;
}

void StyleChanges::Follow(const Switches& before) {
  const Switches now = tallow_.preferences.switches();
  if (now == before) return;
  tallow_.library.UseSwitches(now);
  for (Jukebox* const jukebox : windows_.OpenJukeboxes()) jukebox->ListRefilled(tallow_.library);
  if (!done_) done_ = before;
  if (StyleOf(now) == Style::kCustom) return;
  // What the caller has to show must not be hidden behind the result of a search.
  const std::vector<std::string> problems = tallow_.TakeProblems();
  Act(false);
  for (const std::string& problem : problems) tallow_.AddProblem(problem);
}

void StyleChanges::Finish() {
  if (HasWork()) Act(true);
}

void StyleChanges::Act(bool asks) {
  const StyleWork work =
      WorkFor(*std::exchange(done_, std::nullopt), tallow_.preferences.switches());
  NewSongsResult found;
  if (work.search) found = windows_.Search(*work.search);
  if (!work.files_differently || tallow_.is_shutting_down || windows_.OpenJukeboxes().empty())
    return;
  if ((asks || !found.is_complete) &&
      windows_.AskDismissable(found.is_complete ? kRulesChanged : kSearchCancelled) != true)
    return;
  FileAgain(std::move(found.lines));
}

/// \param lines what the search has reported
void StyleChanges::FileAgain(std::vector<std::string> lines) {
  FiledAgain filed = FileSongsAgain(
      SongsThatArePresent(tallow_.library), tallow_, windows_.OpenJukeboxes(),
      [this](std::string_view text) { return windows_.BeginWork(text); }, FileAgainScope::kStyle);
  lines.insert(lines.end(), filed.lines.begin(), filed.lines.end());
  for (const std::string& problem : tallow_.TakeProblems()) lines.push_back(problem);
  windows_.NoticeScan(lines);
}

}  // namespace tallow
