// SPDX-License-Identifier: GPL-3.0-or-later
#include "jukebox/jukebox_file.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <nlohmann/json.hpp>
#include <optional>
#include <set>
#include <unordered_map>
#include <utility>

#include "jukebox/folder_tree.h"
#include "library/cls_main.h"
#include "util/errors.h"
#include "util/json_text.h"
#include "util/path_text.h"
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

/// Parses the record number in a member name; no value if the name is anything else.
std::optional<std::int32_t> RecordNumber(std::string_view name) {
  std::int32_t record = 0;
  const auto [end, error] = std::from_chars(name.data(), name.data() + name.size(), record);
  if (error != std::errc() || end != name.data() + name.size()) return std::nullopt;
  return record;
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
  to += folder.Open() ? ",\"open\":true,\"songs\":[" : ",\"open\":false,\"songs\":[";
  AppendSongs(to, folder.Items(), used);
  to += "]}";
  for (std::int32_t k = 0; k < folder.Children(); ++k)
    AppendFolders(to, folder.ChildAt(k), own, key, used);
}

/// SAX handler for the JSON parser. Receives one event per value, so no JSON document is built in
/// memory.
class Reader : public nlohmann::json_sax<Json> {
 public:
  bool null() override { return Unexpected(); }
  bool boolean(bool value) override {
    if (Here() == Place::kFolder && name_ == "open") {
      Last().open = value;
      return true;
    }
    return Unexpected();
  }
  bool number_integer(Json::number_integer_t value) override { return Number(value); }
  bool number_unsigned(Json::number_unsigned_t value) override {
    if (value > static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max()))
      return IsPassedOver() || Fail("a number is too large");
    return Number(static_cast<std::int64_t>(value));
  }
  bool number_float(Json::number_float_t, const std::string&) override { return Unexpected(); }
  bool binary(Json::binary_t&) override { return Unexpected(); }

  bool string(std::string& value) override {
    switch (Here()) {
      case Place::kRoot:
        if (name_ != "format") return Unexpected();
        if (value != kFormat) return Fail("it is not a jukebox file");
        return true;
      case Place::kColumns:
        content.columns.push_back(BytesOfJsonText(std::move(value)));
        return true;
      case Place::kFolder:
        if (name_ != "text") return Unexpected();
        Last().text = BytesOfJsonText(std::move(value));
        return true;
      case Place::kNames:
        if (const auto record = RecordNumber(name_))
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
    if (Here() == Place::kRoot && name_ == "names") return Enter(Place::kNames);
    return Unexpected() && Enter(Place::kIgnored);
  }
  bool end_object() override {
    if (Here() == Place::kFolder && (seen_ & kAll) != kAll)
      return Fail("folder " + std::to_string(content.folders.size()) + " is not complete");
    places_.pop_back();
    return true;
  }
  bool key(std::string& value) override {
    name_ = value;
    if (Here() == Place::kRoot && IsOfRoot(name_) && !root_members_.insert(name_).second)
      return Fail(Quoted(name_) + " is there twice");
    if (Here() == Place::kFolder && IsOfFolder(name_) && !NoteMember())
      return Fail("folder " + std::to_string(content.folders.size()) + " has " + Quoted(name_) +
                  " twice");
    return true;
  }

  bool start_array(std::size_t) override {
    if (places_.empty()) return Fail("it is not a jukebox file");
    if (Here() == Place::kRoot && name_ == "columns") return Enter(Place::kColumns);
    if (Here() == Place::kRoot && name_ == "folders") return Enter(Place::kFolders);
    if (Here() == Place::kFolder && name_ == "songs") return Enter(Place::kSongs);
    return Unexpected() && Enter(Place::kIgnored);
  }
  bool end_array() override {
    places_.pop_back();
    return true;
  }

  bool parse_error(std::size_t position, const std::string&,
                   const nlohmann::detail::exception&) override {
    return Fail("at byte " + std::to_string(position) + " it is damaged or cut off");
  }

  /// The first problem of the file; empty when it is valid.
  std::string Problem() const {
    if (!problem_.empty()) return problem_;
    for (const char* const member : {"format", "version", "folders"})
      if (!root_members_.contains(member)) return "it is not a jukebox file";
    return {};
  }

  JukeboxContent content;

 private:
  /// The object or array that is being parsed.
  enum class Place { kRoot, kColumns, kFolders, kFolder, kSongs, kNames, kIgnored };
  /// The members of a folder, one bit each. The first five are required.
  static constexpr std::string_view kFolderMembers[] = {"key",   "text",  "parent",       "open",
                                                        "songs", "image", "selectedImage"};
  static constexpr unsigned kAll = 0b11111;

  static bool IsOfRoot(std::string_view name) {
    return name == "format" || name == "version" || name == "columns" || name == "folders" ||
           name == "names";
  }
  static bool IsOfFolder(std::string_view name) {
    return std::find(std::begin(kFolderMembers), std::end(kFolderMembers), name) !=
           std::end(kFolderMembers);
  }
  /// Marks the current member of the current folder as seen.
  /// \returns false when the member was seen before
  bool NoteMember() {
    const auto* const place =
        std::find(std::begin(kFolderMembers), std::end(kFolderMembers), name_);
    const unsigned bit = 1U << (place - std::begin(kFolderMembers));
    const bool is_new = (seen_ & bit) == 0;
    seen_ |= bit;
    return is_new;
  }

  Place Here() const noexcept { return places_.empty() ? Place::kIgnored : places_.back(); }
  JukeboxContent::Folder& Last() { return content.folders.back(); }
  bool Enter(Place place) {
    places_.push_back(place);
    return true;
  }
  bool Fail(std::string problem) {
    problem_ = std::move(problem);
    return false;
  }
  /// Whether the current value belongs to a member that this version ignores.
  bool IsPassedOver() const {
    return !places_.empty() &&
           (Here() == Place::kIgnored || (Here() == Place::kRoot && !IsOfRoot(name_)) ||
            (Here() == Place::kFolder && !IsOfFolder(name_)));
  }
  /// Handles a value of a type that is invalid here. Accepts the value inside ignored members.
  bool Unexpected() {
    if (places_.empty()) return Fail("it is not a jukebox file");
    return IsPassedOver() || Fail(Quoted(name_) + " has a value that it cannot have");
  }

  bool Number(std::int64_t value) {
    if (IsPassedOver()) return true;
    if (Here() == Place::kColumns || Here() == Place::kNames || Here() == Place::kFolders)
      return Unexpected();
    if (Here() == Place::kRoot) {
      if (name_ != "version") return Unexpected();
      if (value < 1) return Fail("there is no format " + std::to_string(value));
      if (value > kJukeboxVersion)
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
    } else if (name_ == "parent" && number >= 0) {
      Last().parent = static_cast<std::uint32_t>(number);
    } else {
      return Unexpected();
    }
    return true;
  }

  std::vector<Place> places_;
  std::string name_;
  /// Members of the current folder, as bits of kFolderMembers.
  unsigned seen_ = 0;
  std::set<std::string> root_members_;  ///< members of the root object seen so far
  std::string problem_;
};

/// Checks that every folder has a unique key and comes after its parent.
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
    if (level > kMaxLevel)
      throw JukeboxFileError("the folder " + Quoted(folder.text) + " lies too deep");
    if (!levels.emplace(folder.key, level).second)
      throw JukeboxFileError("the folder " + Quoted(folder.text) + " has the key of another one");
  }
}

/// Checks that no record number has two names.
void RequireDifferentNumbers(const JukeboxContent::Names& names) {
  std::vector<std::int32_t> numbers(names.size());
  for (std::size_t k = 0; k < numbers.size(); ++k) numbers[k] = names[k].record;
  // Usually the numbers are already in order, because the writer sorts them.
  if (!std::is_sorted(numbers.begin(), numbers.end())) std::sort(numbers.begin(), numbers.end());
  const auto twice = std::adjacent_find(numbers.begin(), numbers.end());
  if (twice != numbers.end())
    throw JukeboxFileError("song " + std::to_string(*twice) + " has two names");
}

}  // namespace

std::string EncodeJukebox(const FolderTree& tree, const std::vector<std::string>& columns,
                          const clsMain& library, const SongNames& absent) {
  std::string bytes = "{\"format\":\"" + std::string(kFormat) + "\",\"version\":";
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
  for (std::size_t row = 1; row < used.rows.size(); ++row) {
    if (!used.rows[row]) continue;
    const auto record = static_cast<std::int32_t>(row);
    const auto known = absent.find(record);
    const MissingSong* const missing = library.Missing().Find(record);
    if (library.IsPresent(record))
      add(record, library.Song(record).Name());
    else if (missing != nullptr)
      add(record, missing->name);
    else if (known != absent.end())
      add(record, known->second);
  }
  for (const std::int32_t record : used.unknown_rows)
    if (const auto known = absent.find(record); known != absent.end()) add(record, known->second);
  bytes += "}}\n";
  return bytes;
}

SongNames AbsentNames(const JukeboxContent& content, const clsMain& library) {
  SongNames absent;
  for (std::size_t k = 0; k < content.names.size(); ++k) {
    const auto [record, name] = content.names[k];
    if (!library.IsPresent(record)) absent[record] = name;
  }
  return absent;
}

JukeboxContent DecodeJukebox(std::string_view bytes) {
  // A raw NUL is invalid in JSON (in a string it is escaped as \u0000). The parser would take it
  // for the end of the input.
  if (const std::size_t nul = bytes.find('\0'); nul != std::string_view::npos)
    throw JukeboxFileError("at byte " + std::to_string(nul + 1) + " it is damaged or cut off");
  Reader reader;
  Json::sax_parse(bytes, &reader);
  const std::string problem = reader.Problem();
  if (!problem.empty()) throw JukeboxFileError(problem);
  RequireTree(reader.content);
  RequireDifferentNumbers(reader.content.names);
  return std::move(reader.content);
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
    for (const std::int32_t song : from.songs)
      folder.Items().emplace_back(song, library.Song(song).Rank());
  }
}

}  // namespace tallow
