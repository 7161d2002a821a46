// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/scan_findings.h"

#include <nlohmann/json.hpp>
#include <utility>

#include "library/song_view.h"
#include "util/errors.h"
#include "util/json_file.h"
#include "util/json_text.h"
#include "util/path_text.h"

namespace tallow {
namespace {

constexpr JsonFileFormat kFormat = {"Tallow left out", 1};

bool IsAtOrBelow(std::string_view folder, std::string_view above) {
  return folder.substr(0, above.size()) == above;
}

}  // namespace

void ScanFindings::Visit(std::string_view folder, std::size_t other_formats) {
  const auto seen = seen_.find(folder);
  // Most folders have no findings, so there is nothing to replace.
  if (is_loaded_ && other_formats == 0 && seen == seen_.end() && !folders_.contains(folder)) return;
  Seen now{.was_visited = true, .is_gone = false, .findings = {other_formats, {}}};
  if (seen == seen_.end())
    seen_.emplace(folder, std::move(now));
  else
    seen->second = std::move(now);
}

void ScanFindings::MarkGone(std::string_view folder) {
  seen_.erase(std::string(folder));
  seen_.emplace(folder, Seen{.was_visited = true, .is_gone = true, .findings = {}});
}

void ScanFindings::LeaveOut(const LeftOutFile& file) {
  seen_[std::string(FolderOfPath(file.path))].findings.left_out.insert_or_assign(
      std::string(NameOfPath(file.path)), file.stands_for_it);
}

void ScanFindings::Load(const std::string& path, std::vector<std::string>& problems) {
  is_loaded_ = true;
  file_.Load(
      path, [this](const std::string& bytes) { Decode(bytes); }, problems);
}

void ScanFindings::Settle(const SongTable& table) {
  if (!is_loaded_) return;
  Merge();
  DropSongs(table);
  std::erase_if(folders_, [](const auto& folder) { return folder.second.IsEmpty(); });
  other_formats_ = 0;
  left_out_ = 0;
  for (const auto& [path, folder] : folders_) {
    other_formats_ += folder.other_formats;
    left_out_ += folder.left_out.size();
  }
  if (!is_dirty_) return;
  is_dirty_ = false;
  try {
    file_.Save(Encode());
  } catch (const FileError&) {
    // Nothing is lost: a search finds the same again.
  }
}

std::vector<std::string> ScanFindings::NotVisited() const {
  std::vector<std::string> folders;
  for (const auto& [path, folder] : folders_)
    if (const auto seen = seen_.find(path); seen == seen_.end() || !seen->second.was_visited)
      folders.push_back(path);
  return folders;
}

void ScanFindings::Merge() {
  // First, because a scan may have visited folders below that were made again later.
  for (const auto& [path, seen] : seen_) {
    if (!seen.is_gone) continue;
    for (auto known = folders_.lower_bound(path);
         known != folders_.end() && IsAtOrBelow(known->first, path);) {
      known = folders_.erase(known);
      is_dirty_ = true;
    }
  }
  for (auto& [path, seen] : seen_) {
    Folder& known = folders_[path];
    // Of the names in both, the newer findings stay.
    if (!seen.was_visited) {
      seen.findings.other_formats = known.other_formats;
      seen.findings.left_out.insert(known.left_out.begin(), known.left_out.end());
    }
    is_dirty_ = is_dirty_ || known != seen.findings;
    known = std::move(seen.findings);
  }
  seen_.clear();
}

void ScanFindings::DropSongs(const SongTable& table) {
  if (folders_.empty()) return;
  auto folder = folders_.end();
  for (std::int32_t row = 1; row <= table.rows(); ++row) {
    const SongView song(table, row);
    // Consecutive songs are usually in the same folder.
    if (row == 1 || !table.SameStoredText(kFileLocation, row - 1, row))
      folder = folders_.find(song.Folder());
    if (folder == folders_.end() || song.IsMissing()) continue;
    const auto file = folder->second.left_out.find(song.Name());
    if (file == folder->second.left_out.end()) continue;
    folder->second.left_out.erase(file);
    is_dirty_ = true;
  }
}

std::string ScanFindings::Encode() const {
  std::string bytes = BeginJsonFile(kFormat) + ",\"folders\":[";
  const char* separator = "\n";
  for (const auto& [path, folder] : folders_) {
    bytes += std::exchange(separator, ",\n");
    bytes += "{\"path\":";
    AppendJsonText(bytes, path);
    bytes += ",\"otherFormats\":" + std::to_string(folder.other_formats) + ",\"files\":[";
    const char* comma = "[";
    for (const auto& [name, song] : folder.left_out) {
      bytes += std::exchange(comma, ",[");
      AppendJsonText(bytes, name);
      bytes += ',';
      AppendJsonText(bytes, song);
      bytes += ']';
    }
    bytes += "]}";
  }
  return bytes + "]}\n";
}

void ScanFindings::Decode(const std::string& bytes) {
  const auto root = ParseJsonFile(bytes, kFormat);
  const auto text = [](const nlohmann::json& value) {
    return BytesOfJsonText(value.get<std::string>());
  };
  Folders folders;
  for (const auto& member : root.at("folders")) {
    Folder& folder = folders[text(member.at("path"))];
    folder.other_formats = member.at("otherFormats").get<std::uint32_t>();
    for (const auto& file : member.at("files"))
      folder.left_out.insert_or_assign(text(file.at(0)), text(file.at(1)));
  }
  folders_ = std::move(folders);
}

}  // namespace tallow
