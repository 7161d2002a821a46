// SPDX-License-Identifier: GPL-3.0-or-later
// Links the entries of a jukebox file to songs of the library.
#include "jukebox/song_links.h"

#include <string>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

#include "util/path_text.h"

namespace tallow {
namespace {

/// Looks up songs by number and file name.
class SongLinks {
 public:
  explicit SongLinks(const clsMain& library) : library_(library) {}

  /// Whether a number denotes a present or remembered song with the given file name.
  bool IsNamed(std::int32_t record, std::string_view name) const {
    const SongView song = library_.Song(record);
    if (!song.IsMissing()) return IsSamePathText(song.Name(), name);
    const MissingSong* const missing = library_.Missing().Find(record);
    if (missing == nullptr || missing->now != 0 || !IsSamePathText(missing->name, name))
      return false;
    // Without a size the missing song cannot be recognized again, so prefer a present song of that
    // name.
    return missing->size != kUnknownSize || OnlyPresentRow(name) == 0;
  }

  /// Returns the number of the song that was in a place, see RelinkSongs; 0 when there is none.
  ///
  /// \param record number of the song in the file, updated if the song has returned
  std::int32_t ByPlace(std::int32_t record, std::string_view name,
                       const JukeboxContent::Places::Place& place) const {
    if (IsAt(record, name, place)) return record;
    const auto found = RowsByPath().find(PathKey(std::string(place.folder) + std::string(name)));
    if (found != RowsByPath().end()) return found->second;
    if (place.size == kUnknownSize) return IsNamed(record, name) ? record : ByName(name);
    if (IsNamed(record, name)) {
      // A size that was lost with the library's companion file is not read here.
      const std::int64_t size = SizeOf(record);
      if (size == place.size || size == kUnknownSize) return record;
    }
    if (const std::int32_t row = OnlyRow(name, place.size)) return row;
    const MissingSong* song = library_.Missing().In(place.folder, name);
    if (song == nullptr) song = library_.Missing().Only(name, place.size);
    return song != nullptr ? song->number : 0;
  }

  /// Returns the number of the only song with a name; 0 when there is none or several.
  std::int32_t ByName(std::string_view name) const {
    if (const std::int32_t row = OnlyPresentRow(name)) return row;
    if (IsNameOfPresent(name)) return 0;
    const MissingSong* const song = library_.Missing().OnlyOfName(name);
    return song != nullptr ? song->number : 0;
  }

 private:
  bool IsAt(std::int32_t record, std::string_view name,
            const JukeboxContent::Places::Place& place) const {
    const SongView song = library_.Song(record);
    return !song.IsMissing() && IsSamePathText(song.Name(), name) &&
           IsSamePathText(song.Folder(), place.folder);
  }

  std::int64_t SizeOf(std::int32_t record) const {
    if (!library_.Song(record).IsMissing()) return library_.Facts(record).size;
    const MissingSong* const missing = library_.Missing().Find(record);
    return missing != nullptr ? missing->size : kUnknownSize;
  }

  /// The rows that are not missing, by PathKey of their paths.
  const std::unordered_map<std::string, std::int32_t>& RowsByPath() const {
    if (!rows_by_path_.empty()) return rows_by_path_;
    for (std::int32_t row = 1; row <= library_.UBoundOfMp3Array(); ++row)
      if (const SongView song = library_.Song(row); !song.IsMissing())
        rows_by_path_.emplace(PathKey(song.Path()), row);
    return rows_by_path_;
  }

  /// The only row with a name and size; 0 when there is none or several.
  std::int32_t OnlyRow(std::string_view name, std::int64_t size) const {
    if (rows_by_name_.empty())
      for (std::int32_t row = 1; row <= library_.UBoundOfMp3Array(); ++row)
        if (const SongView song = library_.Song(row); !song.IsMissing())
          rows_by_name_.emplace(PathKey(song.Name()), row);
    std::int32_t only = 0;
    const auto [begin, end] = rows_by_name_.equal_range(PathKey(name));
    for (auto place = begin; place != end; ++place) {
      if (library_.Facts(place->second).size != size) continue;
      if (only != 0) return 0;
      only = place->second;
    }
    return only;
  }

  /// Returns 0 when there is none or several.
  std::int32_t OnlyPresentRow(std::string_view name) const {
    const auto found = Rows().find(PathKey(name));
    return found != Rows().end() ? found->second : 0;
  }
  bool IsNameOfPresent(std::string_view name) const { return Rows().contains(PathKey(name)); }

  /// Rows of the present songs, keyed by PathKey of their names; 0 when several songs share the
  /// name.
  const std::unordered_map<std::string, std::int32_t>& Rows() const {
    if (!rows_.empty()) return rows_;
    for (std::int32_t row = 1; row <= library_.UBoundOfMp3Array(); ++row) {
      const SongView song = library_.Song(row);
      if (!song.IsPresent()) continue;
      const auto [place, is_new] = rows_.emplace(PathKey(song.Name()), row);
      if (!is_new) place->second = 0;
    }
    return rows_;
  }

  const clsMain& library_;
  // These are built on first use.
  mutable std::unordered_map<std::string, std::int32_t> rows_;
  mutable std::unordered_map<std::string, std::int32_t> rows_by_path_;
  mutable std::unordered_multimap<std::string, std::int32_t> rows_by_name_;
};

/// Asks about songs whose numbers were confused when the jukebox was saved.
/// \returns true to use the numbers, false to use the names
bool AskWhetherToUseNumbers(const JukeboxContent::Names& names, const clsMain& library,
                            const ResolveConfusedSongs& ask) {
  if (!ask || library.Repaired().IsEmpty()) return false;
  ConfusedSongs confused;
  for (std::size_t k = 0; k < names.size(); ++k) {
    const auto [record, name] = names[k];
    const ConfusedNumber* const number = library.Repaired().Find(record);
    if (number == nullptr || number->held != name) continue;
    if (confused.count++ == 0) confused = {record, number->held, number->named, 1};
  }
  return confused.count > 0 && !ask(confused).value_or(true);
}

/// Generates placeholder numbers that the jukebox does not use yet, in descending order.
class PlaceholderGenerator {
 public:
  explicit PlaceholderGenerator(const JukeboxContent& content) : content_(content) {}

  std::int32_t Next() {
    if (last_ > kFirstPlaceholder) FindUsed();
    do {
      --last_;
    } while (used_.contains(last_));
    return last_;
  }

 private:
  void FindUsed() {
    for (std::size_t k = 0; k < content_.names.size(); ++k) Use(content_.names[k].record);
    for (const JukeboxContent::Folder& folder : content_.folders)
      for (const std::int32_t song : folder.songs) Use(song);
  }
  void Use(std::int32_t record) {
    if (IsPlaceholder(record)) used_.insert(record);
  }

  const JukeboxContent& content_;
  std::unordered_set<std::int32_t> used_;
  std::int32_t last_ = kFirstPlaceholder + 1;
};

/// A placeholder for a song of a jukebox file.
struct AddedPlaceholder {
  std::int32_t number;
  std::int32_t in_file;  ///< the number in the file
  std::string name;
};

/// Whether an entry whose name matches no song can keep its number: the number must be a
/// placeholder, or a row of the library without a present song.
bool CanKeepNumber(std::int32_t record, const clsMain& library) {
  if (IsPlaceholder(record)) return true;
  const SongView song = library.Song(record);
  return song.Exists() && song.IsMissing();
}

}  // namespace

void RelinkSongs(JukeboxContent& content, const clsMain& library, const ResolveConfusedSongs& ask) {
  const bool use_numbers = AskWhetherToUseNumbers(content.names, library, ask);
  const SongLinks links(library);
  std::unordered_map<std::int32_t, std::int32_t> new_numbers;
  std::vector<AddedPlaceholder> added;
  PlaceholderGenerator placeholders(content);
  const std::size_t count = content.names.size();
  for (std::size_t k = 0; k < count; ++k) {
    const auto [record, name] = content.names[k];
    const std::int32_t now = library.Missing().NumberNow(record);
    const ConfusedNumber* const confused = library.Repaired().Find(record);
    std::int32_t linked = now;
    if (confused != nullptr && confused->held == name)
      linked = library.Missing().NumberNow(use_numbers ? record : confused->held_now);
    else if (const auto place = content.places.Find(record); library.HasNamesakes() && place)
      linked = links.ByPlace(now, name, *place);
    else if (!links.IsNamed(now, name))
      linked = links.ByName(name);
    if (linked == 0) linked = CanKeepNumber(now, library) ? now : placeholders.Next();
    if (IsPlaceholder(linked) && linked != record)
      added.push_back({linked, record, std::string(name)});
    // If a number has two names, the last one is used.
    new_numbers.erase(record);
    if (linked != record) new_numbers[record] = linked;
  }
  // Entries without a name may refer to returned songs, too.
  for (const MissingSong& song : library.Missing().Songs())
    if (song.now != 0) new_numbers.emplace(song.number, library.Missing().NumberNow(song.number));
  if (new_numbers.empty()) return;
  for (const auto& [record, old, name] : added) {
    content.names.Add(record, name);
    content.places.AddSame(record, old);
  }
  for (JukeboxContent::Folder& folder : content.folders)
    for (std::int32_t& song : folder.songs)
      if (const auto found = new_numbers.find(song); found != new_numbers.end())
        song = found->second;
}

}  // namespace tallow
