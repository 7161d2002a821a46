// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/style_findings.h"

#include <algorithm>
#include <functional>
#include <iterator>
#include <map>
#include <unordered_map>
#include <utility>

#include "app/preferences.h"
#include "app/tallow.h"
#include "library/set_aside.h"
#include "util/number.h"

namespace tallow {
namespace {

/// The counts that were declined, in the preferences.
struct DeclinedCount {
  const char* key;
  std::int64_t StyleCounts::*count;
};
constexpr DeclinedCount kDeclined[] = {
    {"styleBar.newerTags", &StyleCounts::newer_tags},
    {"styleBar.leftOut", &StyleCounts::left_out},
    {"styleBar.otherFormats", &StyleCounts::other_formats},
};

std::string Counted(std::int64_t count, const char* one, const char* more) {
  return GroupedNumber(count) + " " + (count == 1 ? one : more);
}

std::string Grouped(std::size_t number) { return GroupedNumber(static_cast<std::int64_t>(number)); }

/// The songs of a part, by their record numbers.
StyleFindings SongList(const std::string& heading, const clsMain& library,
                       std::vector<std::int32_t> records) {
  const std::size_t rows = records.size();
  return {heading + " (" + Grouped(rows) + ")", rows,
          [&library, records = std::move(records)](std::size_t index) -> StyleFindings::Row {
            return {library.Song(records[index]).Path(), {}};
          }};
}

/// Numbers of files by folder, which ends in a separator.
using FileNumbers = std::map<std::string, std::size_t, std::less<>>;

/// The songs of the library that the classic style sets aside.
struct SetAsideSongs {
  std::vector<std::int32_t> namesakes;  ///< record numbers
  FileNumbers other_formats;            ///< songs of other formats than MP3
};

SetAsideSongs FindSetAside(const clsMain& library) {
  SetAsideSongs songs;
  if (!library.HasNamesakes()) return songs;
  for (std::int32_t record = 1; record <= library.UBoundOfMp3Array(); ++record) {
    const SongView song = library.Song(record);
    if (!song.IsSetAside()) continue;
    if (IsOfOtherFormat(song.Name(), library.Switches()))
      ++songs.other_formats[std::string(song.Folder())];
    else
      songs.namesakes.push_back(record);
  }
  return songs;
}

/// The numbers of files of other formats, by folder.
///
/// A scan also sees the files of songs that are set aside. But the last one may have had another
/// style, and seen none.
FileNumbers OtherFormatFolders(const clsMain& library, const SetAsideSongs& set_aside) {
  FileNumbers folders;
  for (const auto& [path, folder] : library.Findings().ByFolder())
    if (folder.other_formats > 0) folders.emplace(path, folder.other_formats);
  for (const auto& [folder, songs] : set_aside.other_formats) {
    std::size_t& files = folders[folder];
    files = std::max(files, songs);
  }
  return folders;
}

std::int64_t Sum(const FileNumbers& folders) {
  std::int64_t files = 0;
  for (const auto& [folder, number] : folders) files += static_cast<std::int64_t>(number);
  return files;
}

StyleFindings LeftOutList(const clsMain& library, const SetAsideSongs& set_aside) {
  std::vector<LeftOutFile> files;
  for (const auto& [path, folder] : library.Findings().ByFolder())
    for (const auto& [name, song] : folder.left_out) files.push_back({path + name, song});
  std::unordered_map<std::string_view, std::int32_t> listed;
  if (!set_aside.namesakes.empty())
    for (std::int32_t record = 1; record <= library.UBoundOfMp3Array(); ++record)
      if (library.IsPresent(record)) listed.emplace(library.Song(record).Name(), record);
  for (const std::int32_t record : set_aside.namesakes)
    if (const auto song = listed.find(library.Song(record).Name()); song != listed.end())
      files.push_back({library.Song(record).Path(), library.Song(song->second).Path()});
  const std::size_t rows = files.size();
  return {"Left out because a song of that file name is there (" + Grouped(rows) + ")", rows,
          [files = std::move(files)](std::size_t index) -> StyleFindings::Row {
            return {files[index].path, "the song: " + files[index].stands_for_it};
          },
          true};
}

StyleFindings OtherFormatList(const clsMain& library, const SetAsideSongs& set_aside) {
  const FileNumbers by_folder = OtherFormatFolders(library, set_aside);
  std::vector<std::pair<std::string, std::size_t>> folders(by_folder.begin(), by_folder.end());
  const std::size_t rows = folders.size();
  const std::int64_t files = Sum(by_folder);
  return {
      "Of other formats (" + Counted(files, "file", "files") + " in " +
          Counted(static_cast<std::int64_t>(rows), "folder", "folders") + ")",
      rows, [folders = std::move(folders)](std::size_t index) -> StyleFindings::Row {
        const auto& [folder, number] = folders[index];
        return {Counted(static_cast<std::int64_t>(number), "file", "files") + " in " + folder, {}};
      }};
}

}  // namespace

StyleCounts CountStyleFindings(const Tallow& tallow) {
  const clsMain& library = tallow.library;
  const SetAsideSongs set_aside = FindSetAside(library);
  const ScanFindings& findings = library.Findings();
  return {.songs = tallow.details.Songs(),
          .newer_tags = tallow.details.SongsWithOnlyNewerTags(),
          .left_out = static_cast<std::int64_t>(findings.LeftOut() + set_aside.namesakes.size()),
          .other_formats = set_aside.other_formats.empty()
                               ? static_cast<std::int64_t>(findings.OtherFormats())
                               : Sum(OtherFormatFolders(library, set_aside))};
}

StyleCounts StyleCounter::Count() {
  if (version_ != tallow_.library.Version()) {
    version_ = tallow_.library.Version();
    counts_ = CountStyleFindings(tallow_);
  }
  counts_.songs = tallow_.details.Songs();
  counts_.newer_tags = tallow_.details.SongsWithOnlyNewerTags();
  return counts_;
}

std::string TextOf(const StyleCounts& counts) {
  if (counts.songs == 0 && counts.left_out == 0 && counts.other_formats > 0)
    return Counted(counts.other_formats,
                   "music file is not an MP3 file, so the classic style does not show it.",
                   "music files are not MP3 files, so the classic style does not show them.");
  std::vector<std::string> parts;
  if (counts.newer_tags > 0)
    parts.push_back(GroupedNumber(counts.newer_tags) + " of " +
                    Counted(counts.songs, "song", "songs") +
                    (counts.newer_tags == 1 ? " carries" : " carry") + " only newer tags");
  // The first part names what is counted.
  if (counts.left_out > 0)
    parts.push_back((parts.empty() ? Counted(counts.left_out, "file was", "files were")
                                   : Counted(counts.left_out, "was", "were")) +
                    " left out because a song of that file name is there");
  if (counts.other_formats > 0)
    parts.push_back(parts.empty() ? Counted(counts.other_formats, "file is of another format",
                                            "files are of other formats")
                                  : Counted(counts.other_formats, "is of another format",
                                            "are of other formats"));
  std::string text;
  for (const std::string& part : parts) text += (text.empty() ? "" : ", ") + part;
  return text.empty() ? text : text + ".";
}

std::vector<StyleFindings> ListStyleFindings(const Tallow& tallow) {
  const clsMain& library = tallow.library;
  const SetAsideSongs set_aside = FindSetAside(library);
  StyleFindings all[] = {
      SongList("Only newer tags, which the classic style does not read", library,
               tallow.details.OnlyNewerTags()),
      LeftOutList(library, set_aside), OtherFormatList(library, set_aside),
      SongList("Could not be read completely", library, tallow.details.Unreadable())};
  std::vector<StyleFindings> lists;
  std::copy_if(std::make_move_iterator(std::begin(all)), std::make_move_iterator(std::end(all)),
               std::back_inserter(lists),
               [](const StyleFindings& findings) { return findings.rows > 0; });
  return lists;
}

std::string UnreadableNotice::Update(std::size_t songs) {
  constexpr std::string_view kKey = "unreadableSongs";
  const auto count = static_cast<std::int64_t>(songs);
  if (was_shown_ || count <= std::max<std::int64_t>(preferences_.Get<std::int64_t>(kKey, 0), 0))
    return {};
  was_shown_ = true;
  preferences_.Set<std::int64_t>(kKey, count);
  return Counted(count, "song", "songs") + " could not be read completely (click for the list)";
}

bool StyleHint::HasGrown(std::int64_t StyleCounts::*count, const char* key) const {
  return counts_.*count > std::max<std::int64_t>(preferences_.Get<std::int64_t>(key, 0), 0);
}

void StyleHint::StoreDeclined() {
  // A count may be lower for a while: songs may be missing until a drive is back.
  for (const DeclinedCount& declined : kDeclined)
    if (HasGrown(declined.count, declined.key))
      preferences_.Set<std::int64_t>(declined.key, counts_.*declined.count);
}

bool StyleHint::Update(const StyleCounts& counts, bool are_final) {
  counts_ = counts;
  are_final_ = are_final;
  if (preferences_.style() != Style::kClassic) state_ = State::kDone;
  if (state_ == State::kDeclined && are_final) {
    StoreDeclined();
    state_ = State::kDone;
  }
  const auto has_grown = [this](const DeclinedCount& declined) {
    return HasGrown(declined.count, declined.key);
  };
  if (state_ == State::kWaiting && std::ranges::any_of(kDeclined, has_grown))
    state_ = State::kShown;
  return state_ == State::kShown && counts_.HasAny();
}

void StyleHint::Decline() {
  StoreDeclined();
  state_ = are_final_ ? State::kDone : State::kDeclined;
}

}  // namespace tallow
