// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/style_changes.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <utility>

#include "app/file_again_command.h"
#include "app/tallow.h"
#include "jukebox/initial_jukebox.h"
#include "jukebox/jukebox.h"
#include "jukebox/special_folders.h"
#include "util/number.h"
#include "util/text.h"

namespace tallow {
namespace {

constexpr const char* kRulesChanged =
    "The rules by which songs are filed have changed. File all songs of the open jukeboxes again "
    "by the new rules?";

constexpr const char* kSearchCancelled =
    "The search for songs was cancelled. File the songs that are known in the open jukeboxes again "
    "by the new rules, nevertheless?";

constexpr const char* kWhatStays =
    " Your own folders stay as they are, and Ctrl+Z in a jukebox takes it back.";

/// Whether filing by a new style changes a folder "Album" that is shown: one that is there, or that
/// the sample jukebox gets.
bool ChangesAlbums(const clsMain& library, std::span<Jukebox* const> jukeboxes) {
  return library.Switches().albums && std::ranges::any_of(jukeboxes, [](const Jukebox* jukebox) {
           return FindAlbumFolder(jukebox->Nodes()) != nullptr ||
                  jukebox->Caption() == kSampleCaption;
         });
}

std::vector<bool> ListedSongs(const clsMain& library) {
  std::vector<bool> listed{false};
  for (std::int32_t row = 1; row <= library.UBoundOfMp3Array(); ++row)
    listed.push_back(library.IsPresent(row) && !library.IsHidden(row));
  return listed;
}

/// "1 song is", "1,234 songs are".
std::string SongsAre(std::int64_t songs) {
  return GroupedNumber(songs) + (songs == 1 ? " song is" : " songs are");
}

/// Adds a part to a line of several, each a clause.
void AddPart(std::string& line, std::string part) {
  if (part.empty()) return;
  if (!line.empty()) part[0] = ToLower(part.substr(0, 1))[0];
  line += (line.empty() ? "" : "; ") + part;
}

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
  if (!done_) was_listed_ = ListedSongs(tallow_.library);
  tallow_.library.UseSwitches(now);
  for (Jukebox* const jukebox : windows_.OpenJukeboxes()) jukebox->ListRefilled(tallow_.library);
  if (!done_) done_ = before;
}

void StyleChanges::FinishStyle() {
  if (!HasWork()) return;
  // What the caller has to show must not be hidden behind the result of a search.
  const std::vector<std::string> problems = tallow_.TakeProblems();
  Act(false);
  for (const std::string& problem : problems) tallow_.AddProblem(problem);
}

void StyleChanges::Finish() {
  if (HasWork()) Act(true);
}

void StyleChanges::Act(bool asks) {
  // Before the search, which reports what it adds itself.
  const std::string listed = ListedText();
  const StyleWork work =
      WorkFor(*std::exchange(done_, std::nullopt), tallow_.preferences.switches());
  NewSongsResult found;
  if (work.search) found = windows_.Search(*work.search);
  if (tallow_.is_shutting_down) return;
  std::vector<std::string> filed;
  if (work.files_differently && MayFile(asks, found.is_complete))
    filed = FileSongsAgain(
                SongsThatArePresent(tallow_.library), tallow_, windows_.OpenJukeboxes(),
                [this](std::string_view text) { return windows_.BeginWork(text); },
                FileAgainScope::kStyle)
                .lines;
  if (!filed.empty() || !listed.empty()) Report(found, listed, filed);
}

/// Asks whether to file all songs again, unless that is clear.
bool StyleChanges::MayFile(bool asks, bool is_complete) {
  const std::span<Jukebox* const> jukeboxes = windows_.OpenJukeboxes();
  if (jukeboxes.empty()) return false;
  if (!asks && is_complete) return true;
  const std::string folders = ChangesAlbums(tallow_.library, jukeboxes)
                                  ? "Artist, Year, Genre, Decades and Album."
                                  : "Artist, Year, Genre and Decades.";
  return windows_.AskDismissable((is_complete ? kRulesChanged : kSearchCancelled) +
                                 ("\n\nThis changes the folders below " + folders) + kWhatStays) ==
         true;
}

/// How many songs are listed again, or no longer, since the last work was done.
std::string StyleChanges::ListedText() const {
  const std::vector<bool> listed = ListedSongs(tallow_.library);
  std::int64_t shown = 0;
  std::int64_t aside = 0;
  for (std::size_t row = 0; row < std::min(listed.size(), was_listed_.size()); ++row) {
    if (listed[row] && !was_listed_[row]) ++shown;
    if (!listed[row] && was_listed_[row]) ++aside;
  }
  std::string text;
  if (shown > 0) AddPart(text, SongsAre(shown) + " shown again");
  if (aside > 0) AddPart(text, SongsAre(aside) + " set aside");
  return text;
}

/// Notices what was done, in one line, and the problems after it.
/// \param filed the lines of FileSongsAgain; may be empty
void StyleChanges::Report(const NewSongsResult& found, const std::string& listed,
                          const std::vector<std::string>& filed) {
  std::vector<std::string> lines = found.lines;
  if (lines.empty()) lines.emplace_back();
  std::string& counts = lines[found.lines.empty() ? 0 : found.counts];
  // What follows the counts of the search, such as that it was cancelled.
  const std::string rest =
      found.lines.empty() ? "" : counts.substr(TextOf(found.report, true).size());
  std::string line = found.lines.empty() ? "" : TextOf(found.report, false);
  AddPart(line, listed);
  if (!filed.empty()) AddPart(line, filed.front());
  if (!rest.empty() && line.ends_with('.')) line.pop_back();
  counts = line + rest;
  if (!filed.empty()) lines.insert(lines.end(), filed.begin() + 1, filed.end());
  for (const std::string& problem : tallow_.TakeProblems()) lines.push_back(problem);
  windows_.NoticeScan(lines);
}

}  // namespace tallow
