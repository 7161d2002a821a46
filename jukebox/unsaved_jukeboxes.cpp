// SPDX-License-Identifier: GPL-3.0-or-later
#include "jukebox/unsaved_jukeboxes.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <optional>
#include <stdexcept>
#include <utility>

#include "jukebox/jukebox.h"
#include "util/atomic_file.h"
#include "util/errors.h"
#include "util/file_system.h"
#include "util/json_file.h"
#include "util/json_text.h"

namespace tallow {
namespace {

constexpr JsonFileFormat kFormat = {"Tallow unsaved jukebox", 1};
/// Maximum size of a file: a jukebox file of at most 1 GiB, and a header line with a few paths.
constexpr std::uint64_t kMaxUnsavedBytes = (std::uint64_t{1} << 30U) + (std::uint64_t{1} << 20U);

/// Maximum number of files in the folder.
constexpr int kMaxNumber = 10'000;
constexpr std::string_view kNamePattern = "Jukebox-*.unsaved";

std::string HeaderOf(const Jukebox& jukebox) {
  std::string header = BeginJsonFile(kFormat);
  const std::pair<std::string_view, std::string_view> members[] = {
      {"caption", jukebox.Caption()},
      {"location", jukebox.FileLocation()},
      {"file", jukebox.FilePath()}};
  for (const auto& [name, text] : members) {
    header += ',';
    AppendJsonText(header, name);
    header += ':';
    AppendJsonText(header, text);
  }
  return header + "}\n";
}

/// Parses a file.
/// \throws FileError when the file cannot be read
/// \throws std::exception when the content is invalid
UnsavedJukebox Decode(const std::string& path) {
  const auto content = ReadWholeFile(path, kMaxUnsavedBytes);
  const std::size_t end = content ? content->find('\n') : std::string::npos;
  if (end == std::string::npos) throw std::runtime_error("it is cut off");
  const auto header = ParseJsonFile(content->substr(0, end), kFormat);
  const auto text = [&](const char* name) {
    return BytesOfJsonText(header.at(name).get<std::string>());
  };
  return {path, text("caption"), text("location"), text("file"), content->substr(end + 1)};
}

/// Renames a file to a backup. On failure the file stays.
void MoveAside(const std::string& path) noexcept {
  try {
    MoveToBackup(path);
  } catch (const std::exception&) {
    // The next start of the program finds the file again.
  }
}

}  // namespace

std::string UnreadableChanges(const std::string& path, std::string_view reason) {
  return (path + ": the unsaved changes in this file cannot be read (")
      .append(reason)
      .append("). It was renamed to end in .bak.");
}

std::string UnsavedJukeboxes::FreePath() const {
  const std::string first = folder_ + "Jukebox-1.unsaved";
  const FileStatus look = CheckFile(first);
  // If the folder is unreadable, an existing file cannot be detected and would be overwritten.
  if (look.presence == FilePresence::kUnknown && StateOfFolder(folder_) == FolderState::kUnreadable)
    throw FileError(first, look.problem);
  for (int number = 1; number <= kMaxNumber; ++number) {
    std::string path = folder_ + "Jukebox-" + std::to_string(number) + ".unsaved";
    const auto is_used = [&](const auto& kept) { return kept.second.path == path; };
    const bool is_there = !IsGone(path);
    if (!is_there && std::none_of(kept_.begin(), kept_.end(), is_used)) return path;
  }
  throw FileError(first, look.problem.empty() ? "no number is free for another one" : look.problem);
}

void UnsavedJukeboxes::Keep(const Jukebox& jukebox, const clsMain& library) {
  if (!jukebox.DiffersFromFile()) return Forget(jukebox);
  const std::uint64_t content = ContentHash(jukebox.Nodes());
  const auto found = kept_.find(&jukebox);
  if (found != kept_.end() && found->second.content == content) return;
  Kept kept = found != kept_.end() ? found->second : Kept{FreePath(), 0};
  WriteFileAtomically(kept.path, HeaderOf(jukebox) + jukebox.Encode(library));
  kept.content = content;
  kept_[&jukebox] = std::move(kept);
}

void UnsavedJukeboxes::Forget(const Jukebox& jukebox) noexcept {
  const auto found = kept_.find(&jukebox);
  if (found == kept_.end()) return;
  RemoveFile(found->second.path);
  kept_.erase(found);
}

std::vector<UnsavedJukebox> UnsavedJukeboxes::Find(std::vector<std::string>& problems) const {
  std::vector<std::string> names;
  const FolderListing listing = ListFolder(folder_, {.pattern = kNamePattern, .others = true});
  for (const std::string& other : listing.others)
    problems.push_back(folder_ + other +
                       " is not a file, but has the name of a recovery file. Move it elsewhere.");
  if (!listing.problem.empty())
    problems.push_back(
        folder_ + " cannot be read (" + listing.problem +
        "), so unsaved changes in it are not offered. Tallow tries again at the next start.");
  for (const FileEntry& file : listing.files) names.push_back(file.name);
  std::sort(names.begin(), names.end());
  std::vector<UnsavedJukebox> found;
  for (const std::string& name : names) {
    const std::string path = folder_ + name;
    try {
      found.push_back(Decode(path));
    } catch (const FileError& error) {
      problems.push_back(path + ": the unsaved changes in this file cannot be read (" +
                         error.reason() + "). The next start offers them again.");
    } catch (const std::exception& error) {
      problems.push_back(UnreadableChanges(path, error.what()));
      MoveAside(path);
    }
  }
  return found;
}

bool UnsavedJukeboxes::IsSaved(const UnsavedJukebox& unsaved, const clsMain& library) {
  Jukebox own;
  Jukebox other;
  return !unsaved.file.empty() && own.Load(unsaved.file, library) &&
         other.LoadUnsaved(unsaved.bytes, unsaved.file, library) &&
         ContentHash(own.Nodes()) == ContentHash(other.Nodes());
}

void UnsavedJukeboxes::Decline(const UnsavedJukebox& unsaved) noexcept { MoveAside(unsaved.path); }

bool UnsavedJukeboxes::Recover(const UnsavedJukebox& unsaved, Jukebox& jukebox,
                               const clsMain& library, const ResolveConfusedSongs& ask) {
  if (!jukebox.LoadUnsaved(unsaved.bytes, unsaved.file, library, ask)) return false;
  jukebox.Caption(unsaved.caption);
  jukebox.FileLocation(unsaved.location);
  kept_[&jukebox] = {unsaved.path, ContentHash(jukebox.Nodes())};
  return true;
}

}  // namespace tallow
