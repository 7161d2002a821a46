// SPDX-License-Identifier: GPL-3.0-or-later
#include "jukebox/jukebox_file.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <nlohmann/json.hpp>
#include <optional>
#include <unordered_map>
#include <utility>

#include "jukebox/folder_tree.h"
#include "jukebox/json_text.h"
#include "library/cls_main.h"
#include "util/errors.h"
#include "util/number.h"
#include "util/text.h"

namespace tallow {
namespace {

using Json = nlohmann::json;

constexpr std::string_view kFormat = "Tallow jukebox";

void AppendNumber(std::string& to, std::int64_t number) {
  char digits[24];
  const auto end = std::to_chars(digits, digits + sizeof digits, number).ptr;
  to.append(digits, end);
}

/// Appends record numbers with commas between, and marks them as used. There may be hundreds of thousands,
/// so room for all is made once.
void AppendSongs(std::string& to, const std::vector<SongEntry>& songs, std::vector<bool>& used) {
  constexpr std::size_t kMostDigits = 11;  // "-2147483648"
  const std::size_t before = to.size();
  to.resize(before + songs.size() * (kMostDigits + 1));
  char* end = to.data() + before;
  for (const SongEntry& entry : songs) {
    end = std::to_chars(end, end + kMostDigits, entry.SubItem()).ptr;
    *end++ = ',';
    const auto record = static_cast<std::size_t>(entry.SubItem());
    if (entry.SubItem() >= 0 && record < used.size()) used[record] = true;
  }
  // All but the last comma.
  const auto length = static_cast<std::size_t>(end - to.data());
  to.resize(songs.empty() ? length : length - 1);
}

void AppendFolders(std::string& to, const Folder& folder, std::uint32_t parent, std::uint32_t& key,
                   std::vector<bool>& used) {
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
  to += folder.Open() ? ",\"open\":true,\"songs\":[" : ",\"open\":false,\"songs\":[";
  AppendSongs(to, folder.Items(), used);
  to += "]}";
  for (std::int32_t k = 0; k < folder.Children(); ++k)
    AppendFolders(to, folder.ChildAt(k), own, key, used);
}

/// Takes the parser's events. It is told of every value with its name, so that no document has to be
/// built.
class Reader : public nlohmann::json_sax<Json> {
 public:
  bool null() override { return Unexpected(); }
  bool boolean(bool value) override {
    if (Here() == Place::kFolder && name_ == "open") {
      Last().open = value;
      seen_ |= kOpen;
      return true;
    }
    return Unexpected();
  }
  bool number_integer(Json::number_integer_t value) override { return Number(value); }
  bool number_unsigned(Json::number_unsigned_t value) override {
    if (value > static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max()))
      return Fail("a number is too large");
    return Number(static_cast<std::int64_t>(value));
  }
  bool number_float(Json::number_float_t, const std::string&) override { return Unexpected(); }
  bool binary(Json::binary_t&) override { return Unexpected(); }

  bool string(std::string& value) override {
    switch (Here()) {
      case Place::kRoot:
        if (name_ != "format") return Unexpected();
        if (value != kFormat) return Fail("it is no jukebox");
        has_format_ = true;
        return true;
      case Place::kColumns:
        content.columns.push_back(BytesOfJsonText(std::move(value)));
        return true;
      case Place::kFolder:
        if (name_ != "text") return Unexpected();
        Last().text = BytesOfJsonText(std::move(value));
        seen_ |= kText;
        return true;
      case Place::kNames:
        if (const auto record = TryConvertToInt32(name_))
          content.names.Add(*record, BytesOfJsonText(std::move(value)));
        else
          return Fail(Quoted(name_) + " is no record number");
        return true;
      default:
        return Unexpected();
    }
  }

  bool start_object(std::size_t) override {
    if (places_.empty()) return Enter(Place::kRoot);
    if (Here() == Place::kFolders) {
      content.folders.emplace_back();
      seen_ = 0;
      return Enter(Place::kFolder);
    }
    return Enter(Here() == Place::kRoot && name_ == "names" ? Place::kNames : Place::kPassedOver);
  }
  bool end_object() override {
    if (Here() == Place::kFolder && seen_ != kAll)
      return Fail("folder " + std::to_string(content.folders.size()) + " is not complete");
    places_.pop_back();
    return true;
  }
  bool key(std::string& value) override {
    name_ = value;
    return true;
  }

  bool start_array(std::size_t) override {
    if (places_.empty()) return Fail("it is no jukebox");
    if (Here() == Place::kRoot && name_ == "columns") return Enter(Place::kColumns);
    if (Here() == Place::kRoot && name_ == "folders") return Enter(Place::kFolders);
    if (Here() == Place::kFolder && name_ == "songs") {
      seen_ |= kSongs;
      return Enter(Place::kSongs);
    }
    return Enter(Place::kPassedOver);
  }
  bool end_array() override {
    places_.pop_back();
    return true;
  }

  bool parse_error(std::size_t position, const std::string&,
                   const nlohmann::detail::exception&) override {
    return Fail("at byte " + std::to_string(position) + " it is damaged or cut off");
  }

  /// What is wrong with the whole; empty when nothing is.
  std::string Problem() const {
    if (!problem_.empty()) return problem_;
    if (!has_format_ || !has_version_) return "it is no jukebox";
    return {};
  }

  JukeboxContent content;

 private:
  /// Whose members or elements are being read.
  enum class Place { kRoot, kColumns, kFolders, kFolder, kSongs, kNames, kPassedOver };
  /// The members that a folder has to have.
  enum Member : unsigned { kKey = 1, kText = 2, kParent = 4, kOpen = 8, kSongs = 16, kAll = 31 };

  Place Here() const noexcept { return places_.empty() ? Place::kPassedOver : places_.back(); }
  JukeboxContent::Folder& Last() { return content.folders.back(); }
  bool Enter(Place place) {
    places_.push_back(place);
    return true;
  }
  bool Fail(std::string problem) {
    problem_ = std::move(problem);
    return false;
  }
  /// A value of a kind that has no meaning here: fine in what is passed over.
  bool Unexpected() {
    if (places_.empty()) return Fail("it is no jukebox");
    const bool unknown =
        Here() == Place::kPassedOver ||
        (Here() == Place::kRoot && name_ != "format" && name_ != "version" && name_ != "columns" &&
         name_ != "folders" && name_ != "names") ||
        (Here() == Place::kFolder && name_ != "key" && name_ != "text" && name_ != "image" &&
         name_ != "selectedImage" && name_ != "parent" && name_ != "open" && name_ != "songs");
    return unknown || Fail(Quoted(name_) + " has a value that it cannot have");
  }

  bool Number(std::int64_t value) {
    if (Here() == Place::kPassedOver || Here() == Place::kColumns || Here() == Place::kNames ||
        Here() == Place::kFolders)
      return Unexpected();
    if (Here() == Place::kRoot) {
      if (name_ != "version") return Unexpected();
      has_version_ = true;
      if (value < 1 || value > kJukeboxVersion)
        return Fail("it was written by a newer Tallow (format " + std::to_string(value) + ")");
      return true;
    }
    if (value < std::numeric_limits<std::int32_t>::min() ||
        value > std::numeric_limits<std::int32_t>::max())
      return Fail("the number " + std::to_string(value) + " is too large");
    const auto number = static_cast<std::int32_t>(value);
    if (Here() == Place::kSongs) {
      Last().songs.push_back(number);
      return true;
    }
    if (name_ == "image") {
      Last().image = number;
    } else if (name_ == "selectedImage") {
      Last().selected_image = number;
    } else if (name_ == "key" && number > 0) {
      Last().key = static_cast<std::uint32_t>(number);
      seen_ |= kKey;
    } else if (name_ == "parent" && number >= 0) {
      Last().parent = static_cast<std::uint32_t>(number);
      seen_ |= kParent;
    } else {
      return Unexpected();
    }
    return true;
  }

  std::vector<Place> places_;
  std::string name_;
  unsigned seen_ = 0;  ///< members of the folder that is being read
  bool has_format_ = false;
  bool has_version_ = false;
  std::string problem_;
};

/// Every folder has to have a key of its own and to come behind the one above it.
void RequireTree(const JukeboxContent& content) {
  std::unordered_map<std::uint32_t, std::int32_t> levels;
  levels.reserve(content.folders.size());
  for (const JukeboxContent::Folder& folder : content.folders) {
    std::int32_t level = 0;
    if (folder.parent != 0) {
      const auto above = levels.find(folder.parent);
      if (above == levels.end())
        throw JukeboxFileError("the folder " + Quoted(folder.text) +
                               " lies in one that is not there before it");
      level = above->second + 1;
    }
    if (level > kMostLevel)
      throw JukeboxFileError("the folder " + Quoted(folder.text) + " lies too deep");
    if (!levels.emplace(folder.key, level).second)
      throw JukeboxFileError("the folder " + Quoted(folder.text) + " has the key of another one");
  }
}

}  // namespace

std::string EncodeJukebox(const FolderTree& tree, const std::vector<std::string>& columns,
                          const clsMain& library) {
  std::string bytes = "{\"format\":\"" + std::string(kFormat) + "\",\"version\":";
  AppendNumber(bytes, kJukeboxVersion);
  bytes += ",\n\"columns\":[";
  for (std::size_t k = 0; k < columns.size(); ++k) {
    if (k > 0) bytes += ',';
    AppendJsonText(bytes, columns[k]);
  }
  bytes += "],\n\"folders\":[";
  std::uint32_t key = 0;
  std::vector<bool> used(static_cast<std::size_t>(library.UBoundOfMp3Array()) + 1);
  for (std::int32_t k = 0; k < tree.Children(); ++k)
    AppendFolders(bytes, tree.ChildAt(k), 0, key, used);
  bytes += "],\n\"names\":{";
  bool first = true;
  for (std::size_t row = 1; row < used.size(); ++row) {
    if (!used[row]) continue;
    bytes += std::exchange(first, false) ? "\n\"" : ",\n\"";
    AppendNumber(bytes, static_cast<std::int64_t>(row));
    bytes += "\":";
    AppendJsonText(bytes, library.Mp3Info(kFileName, static_cast<std::int32_t>(row)));
  }
  bytes += "}}\n";
  return bytes;
}

JukeboxContent DecodeJukebox(std::string_view bytes) {
  Reader reader;
  Json::sax_parse(bytes, &reader);
  const std::string problem = reader.Problem();
  if (!problem.empty()) throw JukeboxFileError(problem);
  RequireTree(reader.content);
  return std::move(reader.content);
}

void RelinkSongs(JukeboxContent& content, const clsMain& library) {
  const auto is_present = [&](std::int32_t row) {
    return row >= 1 && row <= library.UBoundOfMp3Array() &&
           NumericValue(library.Mp3Info(kFileIsThere, row)) != 0;
  };
  std::unordered_map<std::int32_t, std::string_view> others;  // songs that are not the ones meant
  for (std::size_t k = 0; k < content.names.size(); ++k) {
    const auto [record, name] = content.names[k];
    // Of two names of one number the last one counts.
    others.erase(record);
    if (is_present(record) && library.Mp3Info(kFileName, record) != name) others[record] = name;
  }
  if (others.empty()) return;

  std::unordered_map<std::string_view, std::int32_t> rows;  // 0 for a name of several songs
  for (std::int32_t row = 1; row <= library.UBoundOfMp3Array(); ++row)
    if (is_present(row)) {
      const auto [place, is_new] = rows.emplace(library.Mp3Info(kFileName, row), row);
      if (!is_new) place->second = 0;
    }
  std::unordered_map<std::int32_t, std::int32_t> moved;
  for (const auto& [record, name] : others) {
    const auto found = rows.find(name);
    moved[record] = found != rows.end() && found->second != 0 ? found->second : record;
  }
  for (JukeboxContent::Folder& folder : content.folders)
    for (std::int32_t& song : folder.songs)
      if (const auto found = moved.find(song); found != moved.end()) song = found->second;
}

void FillTree(const JukeboxContent& content, const clsMain& library, FolderTree& tree) {
  std::unordered_map<std::uint32_t, Folder*> folders;
  folders.reserve(content.folders.size());
  for (const JukeboxContent::Folder& from : content.folders) {
    Folder* const parent = from.parent == 0 ? nullptr : folders.at(from.parent);
    Folder& folder = tree.AddChild(parent, from.text, from.image, from.selected_image);
    folder.Open(from.open);
    folders.emplace(from.key, &folder);
    folder.Items().reserve(from.songs.size());
    for (const std::int32_t song : from.songs) {
      const bool has_row = song >= 1 && song <= library.UBoundOfMp3Array();
      const std::int32_t rank = has_row ? NumericValue(library.Mp3Info(kSongRank, song)) : 0;
      folder.Items().emplace_back(song, rank);
    }
  }
}

}  // namespace tallow
