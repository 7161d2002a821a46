// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/unread_folders.h"

#include <nlohmann/json.hpp>
#include <utility>

#include "util/json_file.h"
#include "util/json_text.h"

namespace tallow {
namespace {

constexpr JsonFileFormat kFormat = {"Tallow unread folders", 1};

}  // namespace

void UnreadFolders::Add(UnreadFolder folder) {
  const auto found = folders_.find(folder.path);
  if (found != folders_.end()) {
    // Keep `below` set: the subfolders have not been searched meanwhile.
    folder.below = folder.below || found->second.below;
    is_dirty_ = is_dirty_ || found->second.below != folder.below;
    found->second = std::move(folder);
    return;
  }
  if (folders_.size() >= kMax) return;
  std::string path = folder.path;
  folders_.emplace(std::move(path), std::move(folder));
  is_dirty_ = true;
}

bool UnreadFolders::HasBelow(std::string_view path) const {
  const auto found = folders_.find(path);
  return found != folders_.end() && found->second.below;
}

void UnreadFolders::Remove(std::string_view path) {
  const auto found = folders_.find(path);
  if (found == folders_.end()) return;
  folders_.erase(found);
  is_dirty_ = true;
}

std::vector<UnreadFolder> UnreadFolders::Folders() const {
  std::vector<UnreadFolder> folders;
  for (const auto& [path, folder] : folders_) folders.push_back(folder);
  return folders;
}

std::string UnreadFolders::Encode() const {
  std::string bytes = BeginJsonFile(kFormat) + ",\"folders\":[";
  const char* separator = "\n";
  for (const auto& [path, folder] : folders_) {
    bytes += std::exchange(separator, ",\n");
    bytes += "{\"path\":";
    AppendJsonText(bytes, path);
    bytes += folder.below ? ",\"below\":true}" : ",\"below\":false}";
  }
  return bytes + "]}\n";
}

void UnreadFolders::Decode(const std::string& bytes) {
  const auto root = ParseJsonFile(bytes, kFormat);
  std::map<std::string, UnreadFolder, std::less<>> folders;
  for (const auto& member : root.at("folders")) {
    const std::string path = BytesOfJsonText(member.at("path").get<std::string>());
    folders[path] = {path, member.at("below").get<bool>(), {}};
  }
  folders_ = std::move(folders);
  is_dirty_ = false;
}

}  // namespace tallow
