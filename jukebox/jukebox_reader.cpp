// SPDX-License-Identifier: GPL-3.0-or-later
#include "jukebox/jukebox_reader.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <limits>
#include <nlohmann/json.hpp>
#include <optional>
#include <set>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "jukebox/folder_tree.h"
#include "library/cls_main.h"
#include "util/errors.h"
#include "util/json_text.h"

namespace tallow {
namespace {

using Json = nlohmann::json;

/// Parses the record number in a member name; no value if the name is anything else.
std::optional<std::int32_t> RecordNumber(std::string_view name) {
  std::int32_t record = 0;
  const auto [end, error] = std::from_chars(name.data(), name.data() + name.size(), record);
  if (error != std::errc() || end != name.data() + name.size()) return std::nullopt;
  return record;
}

/// The problem of a file that is not valid JSON.
/// \param position of the byte where parsing failed, from 1
std::string DamagedAtByte(std::size_t position) {
  return "at byte " + std::to_string(position) + " it is damaged or cut off";
}

/// SAX handler for the JSON parser. Receives one event per value, so no JSON document is built in
/// memory.
class Reader : public nlohmann::json_sax<Json> {
 public:
  bool null() override { return AcceptIfIgnored(); }
  bool boolean(bool value) override {
    if (Current() == Container::kFolder && name_ == "open") {
      CurrentFolder().open = value;
      return true;
    }
    if (Current() == Container::kFolder && name_ == "automatic") {
      CurrentFolder().automatic = value;
      return true;
    }
    return AcceptIfIgnored();
  }
  bool number_integer(Json::number_integer_t value) override { return AcceptNumber(value); }
  bool number_unsigned(Json::number_unsigned_t value) override {
    if (value > static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max()))
      return IsIgnored() || Fail("a number is too large");
    return AcceptNumber(static_cast<std::int64_t>(value));
  }
  bool number_float(Json::number_float_t, const std::string&) override { return AcceptIfIgnored(); }
  bool binary(Json::binary_t&) override { return AcceptIfIgnored(); }

  bool string(std::string& value) override {
    switch (Current()) {
      case Container::kRoot:
        if (name_ != "format") return AcceptIfIgnored();
        if (value != kJukeboxFormat) return Fail("it is not a jukebox file");
        return true;
      case Container::kColumns:
        content.columns.push_back(BytesOfJsonText(std::move(value)));
        return true;
      case Container::kFolder:
        if (name_ != "text") return AcceptIfIgnored();
        CurrentFolder().text = BytesOfJsonText(std::move(value));
        return true;
      case Container::kNames:
        if (const auto record = RecordNumber(name_))
          content.names.Add(*record, BytesOfJsonText(std::move(value)));
        else
          return Fail(Quoted(name_) + " is not a record number");
        return true;
      default:
        return AcceptIfIgnored();
    }
  }

  bool start_object(std::size_t) override {
    if (containers_.empty()) return Enter(Container::kRoot);
    if (Current() == Container::kFolders) {
      content.folders.emplace_back();
      seen_members_ = 0;
      return Enter(Container::kFolder);
    }
    if (Current() == Container::kRoot && name_ == "names") return Enter(Container::kNames);
    if (Current() == Container::kRoot && name_ == "places") return Enter(Container::kPlaces);
    return AcceptIfIgnored() && Enter(Container::kIgnored);
  }
  bool end_object() override {
    if (Current() == Container::kFolder && (seen_members_ & kRequired) != kRequired)
      return Fail("folder " + std::to_string(content.folders.size()) + " is not complete");
    containers_.pop_back();
    return true;
  }
  bool key(std::string& value) override {
    name_ = value;
    if (Current() == Container::kRoot && IsRootMember(name_) && !root_members_.insert(name_).second)
      return Fail(Quoted(name_) + " occurs twice");
    if (Current() == Container::kFolder && IsFolderMember(name_) && !MarkSeen())
      return Fail("folder " + std::to_string(content.folders.size()) + " has " + Quoted(name_) +
                  " twice");
    return true;
  }

  bool start_array(std::size_t) override {
    if (containers_.empty()) return Fail("it is not a jukebox file");
    if (Current() == Container::kRoot && name_ == "columns") return Enter(Container::kColumns);
    if (Current() == Container::kRoot && name_ == "folders") return Enter(Container::kFolders);
    if (Current() == Container::kFolder && name_ == "songs") return Enter(Container::kSongs);
    if (Current() == Container::kPlaces) return EnterPlace();
    return AcceptIfIgnored() && Enter(Container::kIgnored);
  }
  bool end_array() override {
    if (Current() == Container::kPlace && placed_song_)
      return Fail("song " + std::to_string(*placed_song_) + " has a place without a size");
    containers_.pop_back();
    return true;
  }

  bool parse_error(std::size_t position, const std::string&,
                   const nlohmann::detail::exception&) override {
    return Fail(DamagedAtByte(position));
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
  enum class Container {
    kRoot,
    kColumns,
    kFolders,
    kFolder,
    kSongs,
    kNames,
    kPlaces,
    kPlace,
    kIgnored
  };
  /// The members of a folder, one bit each. The first five are required.
  static constexpr std::string_view kFolderMembers[] = {
      "key", "text", "parent", "open", "songs", "image", "selectedImage", "automatic"};
  static constexpr unsigned kRequired = 0b11111;

  static bool IsRootMember(std::string_view name) {
    return name == "format" || name == "version" || name == "columns" || name == "folders" ||
           name == "names" || name == "places";
  }
  static bool IsFolderMember(std::string_view name) {
    return std::find(std::begin(kFolderMembers), std::end(kFolderMembers), name) !=
           std::end(kFolderMembers);
  }
  /// Marks the current member of the current folder as seen.
  /// \returns false when the member was seen before
  bool MarkSeen() {
    const auto* const place =
        std::find(std::begin(kFolderMembers), std::end(kFolderMembers), name_);
    const unsigned bit = 1U << (place - std::begin(kFolderMembers));
    const bool is_new = (seen_members_ & bit) == 0;
    seen_members_ |= bit;
    return is_new;
  }

  Container Current() const noexcept {
    return containers_.empty() ? Container::kIgnored : containers_.back();
  }
  JukeboxContent::Folder& CurrentFolder() { return content.folders.back(); }
  bool Enter(Container container) {
    containers_.push_back(container);
    return true;
  }
  bool EnterPlace() {
    content.places.AddFolder(BytesOfJsonText(name_));
    placed_song_.reset();
    return Enter(Container::kPlace);
  }
  bool Fail(std::string problem) {
    problem_ = std::move(problem);
    return false;
  }
  /// Whether the current value belongs to a member that this version ignores.
  bool IsIgnored() const {
    return !containers_.empty() && (Current() == Container::kIgnored ||
                                    (Current() == Container::kRoot && !IsRootMember(name_)) ||
                                    (Current() == Container::kFolder && !IsFolderMember(name_)));
  }
  /// Handles a value of a type that is invalid here. Accepts the value inside ignored members.
  bool AcceptIfIgnored() {
    if (containers_.empty()) return Fail("it is not a jukebox file");
    return IsIgnored() || Fail(Quoted(name_) + " has an invalid value");
  }

  bool AcceptNumber(std::int64_t value) {
    if (IsIgnored()) return true;
    if (Current() == Container::kColumns || Current() == Container::kNames ||
        Current() == Container::kFolders || Current() == Container::kPlaces)
      return AcceptIfIgnored();
    if (Current() == Container::kRoot) {
      if (name_ != "version") return AcceptIfIgnored();
      if (value < 1) return Fail("format " + std::to_string(value) + " is unknown");
      if (value > kJukeboxVersion)
        return Fail("it was written by a newer Tallow (format " + std::to_string(value) + ")");
      return true;
    }
    if (Current() == Container::kPlace && placed_song_) {
      content.places.Add(*std::exchange(placed_song_, std::nullopt),
                         std::max<std::int64_t>(value, -1));
      return true;
    }
    if (value < std::numeric_limits<std::int32_t>::min() ||
        value > std::numeric_limits<std::int32_t>::max())
      return Fail("the number " + std::to_string(value) + " is too large");
    const auto number = static_cast<std::int32_t>(value);
    if (Current() == Container::kPlace) {
      placed_song_ = number;
      return true;
    }
    if (Current() == Container::kSongs) {
      CurrentFolder().songs.push_back(number);
      return true;
    }
    if (name_ == "image") {
      CurrentFolder().image = number;
    } else if (name_ == "selectedImage") {
      CurrentFolder().selected_image = number;
    } else if (name_ == "key" && number > 0) {
      CurrentFolder().key = static_cast<std::uint32_t>(number);
    } else if (name_ == "parent" && number >= 0) {
      CurrentFolder().parent = static_cast<std::uint32_t>(number);
    } else {
      return AcceptIfIgnored();
    }
    return true;
  }

  std::vector<Container> containers_;  ///< those that are open, the innermost last
  std::string name_;                   ///< name of the last member
  /// Members of the current folder, as bits of kFolderMembers.
  unsigned seen_members_ = 0;
  /// The song in a list of places whose size has not come yet.
  std::optional<std::int32_t> placed_song_;
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
                               " is in a folder that is not defined before it");
      level = above->second + 1;
    }
    if (level > kMaxLevel)
      throw JukeboxFileError("the folder " + Quoted(folder.text) + " is nested too deeply");
    if (!levels.emplace(folder.key, level).second)
      throw JukeboxFileError("the folder " + Quoted(folder.text) +
                             " has the same key as another folder");
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

SongNames AbsentNames(const JukeboxContent& content, const clsMain& library) {
  SongNames absent;
  for (std::size_t k = 0; k < content.names.size(); ++k) {
    const auto [record, name] = content.names[k];
    if (library.Song(record).IsMissing()) absent[record] = name;
  }
  return absent;
}

SongPlaces AbsentPlaces(const JukeboxContent& content, const clsMain& library) {
  SongPlaces absent;
  for (const auto& [record, name] : AbsentNames(content, library))
    if (const auto place = content.places.Find(record))
      absent[record] = {std::string(place->folder), place->size};
  return absent;
}

JukeboxContent DecodeJukebox(std::string_view bytes) {
  // A raw NUL is invalid in JSON (in a string it is escaped as \u0000). The parser would take it
  // for the end of the input.
  if (const std::size_t nul = bytes.find('\0'); nul != std::string_view::npos)
    throw JukeboxFileError(DamagedAtByte(nul + 1));
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
    folder.Automatic(from.automatic);
    folders.emplace(from.key, &folder);
    folder.Items().reserve(from.songs.size());
    for (const std::int32_t song : from.songs)
      folder.Items().emplace_back(song, library.Song(song).Rank());
  }
}

}  // namespace tallow
