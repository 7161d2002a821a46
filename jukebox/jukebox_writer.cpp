// SPDX-License-Identifier: GPL-3.0-or-later
#include "jukebox/jukebox_writer.h"

#include <charconv>
#include <cstddef>
#include <cstdint>
#include <set>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "jukebox/folder_tree.h"
#include "library/cls_main.h"
#include "util/json_text.h"

namespace tallow {
namespace {

void AppendNumber(std::string& to, std::int64_t number) {
  char digits[24];
  const auto end = std::to_chars(digits, digits + sizeof digits, number).ptr;
  to.append(digits, end);
}

/// The record numbers that a jukebox uses.
struct UsedRecords {
  /// Indexed by record number, up to the last row of the library.
  std::vector<bool> rows;
  std::set<std::int32_t> unknown_rows;  ///< numbers outside the library
};

/// Appends record numbers, separated by commas, and marks them as used. There may be hundreds of
/// thousands, so the memory for all is allocated at once.
void AppendSongs(std::string& to, const std::vector<SongEntry>& songs, UsedRecords& used) {
  constexpr std::size_t kMaxDigits = 11;  // "-2147483648"
  const std::size_t before = to.size();
  to.resize(before + songs.size() * (kMaxDigits + 1));
  char* end = to.data() + before;
  for (const SongEntry& entry : songs) {
    end = std::to_chars(end, end + kMaxDigits, entry.SubItem()).ptr;
    *end++ = ',';
    const auto record = static_cast<std::size_t>(entry.SubItem());
    if (entry.SubItem() >= 1 && record < used.rows.size())
      used.rows[record] = true;
    else
      used.unknown_rows.insert(entry.SubItem());
  }
  // Drop the last comma.
  const auto length = static_cast<std::size_t>(end - to.data());
  to.resize(songs.empty() ? length : length - 1);
}

void AppendFolders(std::string& to, const Folder& folder, std::uint32_t parent, std::uint32_t& key,
                   UsedRecords& used) {
  const std::uint32_t own = ++key;
  to += own == 1 ? "\n{\"key\":" : ",\n{\"key\":";
  AppendNumber(to, own);
  to += ",\"text\":";
  AppendJsonText(to, folder.Text());
  to += ",\"image\":";
  AppendNumber(to, folder.Image());
  to += ",\"selectedImage\":";
  AppendNumber(to, folder.SelectedImage());
  to += ",\"parent\":";
  AppendNumber(to, parent);
  to += folder.Open() ? ",\"open\":true" : ",\"open\":false";
  to += folder.Automatic() ? ",\"automatic\":true,\"songs\":[" : ",\"songs\":[";
  AppendSongs(to, folder.Items(), used);
  to += "]}";
  for (std::int32_t k = 0; k < folder.Children(); ++k)
    AppendFolders(to, folder.ChildAt(k), own, key, used);
}

/// The member "places".
class PlacesText {
 public:
  void Add(std::int32_t record, std::string_view folder, std::int64_t size) {
    std::string& songs = SongsOf(folder);
    if (!songs.empty()) songs += ',';
    AppendNumber(songs, record);
    songs += ',';
    AppendNumber(songs, size);
  }

  /// Appends nothing when there are no songs.
  void AppendTo(std::string& bytes) const {
    if (order_.empty()) return;
    bytes += ",\n\"places\":";
    char before = '{';
    for (const auto& [folder, songs] : order_) {
      bytes += std::exchange(before, ',');
      bytes += '\n';
      AppendJsonText(bytes, *folder);
      bytes += ":[" + songs + ']';
    }
    bytes += '}';
  }

 private:
  /// The text of a folder's songs. Most songs are in the folder of the song before.
  std::string& SongsOf(std::string_view folder) {
    if (order_.empty() || *order_[last_].first != folder) {
      const auto [found, is_new] = folders_.try_emplace(std::string(folder), order_.size());
      if (is_new) order_.emplace_back(&found->first, std::string());
      last_ = found->second;
    }
    return order_[last_].second;
  }

  std::unordered_map<std::string, std::size_t> folders_;  ///< indexes in order_
  /// The folders in the order of their first songs, and the numbers and sizes of their songs.
  std::vector<std::pair<const std::string*, std::string>> order_;
  std::size_t last_ = 0;  ///< index in order_ of the folder of the last song
};

}  // namespace

std::string EncodeJukebox(const FolderTree& tree, const std::vector<std::string>& columns,
                          const clsMain& library, const SongNames& absent,
                          const SongPlaces& absent_places) {
  std::string bytes = "{\"format\":\"" + std::string(kJukeboxFormat) + "\",\"version\":";
  AppendNumber(bytes, kJukeboxVersion);
  bytes += ",\n\"columns\":[";
  for (std::size_t k = 0; k < columns.size(); ++k) {
    if (k > 0) bytes += ',';
    AppendJsonText(bytes, columns[k]);
  }
  bytes += "],\n\"folders\":[";
  std::uint32_t key = 0;
  UsedRecords used;
  used.rows.resize(static_cast<std::size_t>(library.UBoundOfMp3Array()) + 1);
  for (std::int32_t k = 0; k < tree.Children(); ++k)
    AppendFolders(bytes, tree.ChildAt(k), 0, key, used);
  bytes += "],\n\"names\":{";
  bool first = true;
  const auto add = [&](std::int32_t record, std::string_view name) {
    bytes += std::exchange(first, false) ? "\n\"" : ",\n\"";
    AppendNumber(bytes, record);
    bytes += "\":";
    AppendJsonText(bytes, name);
  };
  PlacesText places;
  const auto add_place = [&](std::int32_t record, std::string_view folder, std::int64_t size) {
    if (library.HasNamesakes()) places.Add(record, folder, size);
  };
  const auto add_absent = [&](std::int32_t record) {
    const auto name = absent.find(record);
    if (name == absent.end()) return;
    add(record, name->second);
    if (const auto place = absent_places.find(record); place != absent_places.end())
      places.Add(record, place->second.folder, place->second.size);
  };
  for (std::size_t row = 1; row < used.rows.size(); ++row) {
    if (!used.rows[row]) continue;
    const auto record = static_cast<std::int32_t>(row);
    const MissingSong* const missing = library.Missing().Find(record);
    if (const SongView song = library.Song(record); !song.IsMissing()) {
      add(record, song.Name());
      add_place(record, song.Folder(), library.Facts(record).size);
    } else if (missing != nullptr) {
      add(record, missing->name);
      add_place(record, missing->folder, missing->size);
    } else {
      add_absent(record);
    }
  }
  for (const std::int32_t record : used.unknown_rows) add_absent(record);
  bytes += '}';
  places.AppendTo(bytes);
  bytes += "}\n";
  return bytes;
}

}  // namespace tallow
