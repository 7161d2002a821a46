// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/known_drives.h"

#include <algorithm>
#include <map>
#include <nlohmann/json.hpp>
#include <optional>
#include <utility>

#include "util/file_system.h"
#include "util/json_file.h"
#include "util/json_text.h"
#include "util/path_text.h"

namespace tallow {
namespace {

constexpr JsonFileFormat kFormat = {"Tallow drives", 1};

bool ShowsAutomounter(const MountedVolumes& volumes, const std::string& root) {
  const MountedVolume* const place = VolumeOf(volumes, root);
  return place != nullptr && place->automounter;
}

/// The part of a folder's path below one of its ancestors.
std::string Below(std::string_view folder, std::string_view root) {
  return std::string(folder.substr(std::min(root.size(), folder.size())));
}

/// Whether a root does not exist, is empty, or does not answer.
bool IsAbsent(const std::optional<FolderState>& root) {
  return !root || *root == FolderState::kNotThere || *root == FolderState::kEmpty;
}

bool IsSameDrive(const KnownDrive& drive, const KnownDrive& other) {
  if (!IsSamePathText(drive.root, other.root)) return false;
  return drive.folder == other.folder || drive.folder.volume.empty() || other.folder.volume.empty();
}

}  // namespace

std::vector<std::optional<FolderState>> KnownDrives::AskAtOnce(
    const std::vector<std::string>& folders) {
  std::vector<std::optional<FolderState>> states;
  for (const std::string& folder : folders) states.emplace_back(StateOfFolder(folder));
  return states;
}

void KnownDrives::CheckDrives(const ReadMountedVolumes& read_volumes, const AskFolders& ask) {
  volumes_ = read_volumes();
  std::vector<std::string> asked;
  for (const KnownDrive& drive : drives_)
    if (ShowsAutomounter(volumes_, drive.root)) asked.push_back(drive.root);
  if (!asked.empty()) {
    ask(asked);
    volumes_ = read_volumes();
  }
  // Two drives may have the same root; check each root once.
  std::map<std::string, std::optional<FolderState>> states;
  for (KnownDrive& drive : drives_) {
    drive.automounter = ShowsAutomounter(volumes_, drive.root);
    if (!drive.automounter) states.try_emplace(drive.root);
  }
  for (const std::string& root : given_)
    if (!ShowsAutomounter(volumes_, root)) states.try_emplace(root);
  asked.clear();
  for (const auto& [root, state] : states) asked.push_back(root);
  const std::vector<std::optional<FolderState>> answers = ask(asked);
  for (std::size_t k = 0; k < asked.size(); ++k) states[asked[k]] = answers[k];
  const auto has_entries = [&](const std::string& folder) {
    return ask({folder}).front() == FolderState::kHasEntries;
  };
  for (KnownDrive& drive : drives_) {
    drive.away = drive.automounter || IsAway(drive, states[drive.root]);
    drive.moved_to.clear();
    if (drive.away)
      drive.moved_to = PlaceOf(volumes_, drive.folder, has_entries).value_or(std::string());
  }
  absent_given_.clear();
  for (const std::string& root : given_)
    if (IsAbsent(states[root])) absent_given_.push_back(root);
}

bool KnownDrives::IsAway(const KnownDrive& drive, const std::optional<FolderState>& root) const {
  const MountedVolume* const place = VolumeOf(volumes_, drive.root);
  if (drive.mount_point && (place == nullptr || !IsSamePathText(place->root, drive.root)))
    return true;
  const VolumeFolder now = VolumeFolderOf(volumes_, drive.root);
  if (!drive.folder.volume.empty() && !now.volume.empty() && now != drive.folder) return true;
  // The error of a share whose server is down is arbitrary, so an unreadable share counts as away.
  return IsAbsent(root) || (place != nullptr && place->network && root == FolderState::kUnreadable);
}

bool KnownDrives::IsOnNetwork(std::string_view path) const {
  const MountedVolume* const place = VolumeOf(volumes_, path);
  return place != nullptr ? place->network : !ShareOfPath(path).empty();
}

std::string KnownDrives::RootToGiveUp(std::string_view path) const {
  std::string root(ShareOfPath(path));
  const MountedVolume* const place = VolumeOf(volumes_, path);
  // Do not skip the root file system: the program and its settings are on it, so it does answer.
  if (place != nullptr && place->root != std::string_view(&kSeparator, 1)) root = place->root;
  const auto prefer = [&](const std::string& other) {
    if (other.size() > std::max<std::size_t>(root.size(), 1) && LiesBelow(path, other))
      root = other;
  };
  for (const std::string& given : given_) prefer(given);
  for (const KnownDrive& drive : drives_) prefer(drive.root);
  return root.empty() ? std::string(FolderOfPath(path)) : root;
}

void KnownDrives::MarkAway(std::string_view root) {
  for (KnownDrive& drive : drives_)
    if (LiesBelow(drive.root, root)) drive.away = true;
  for (const std::string& given : given_)
    if (LiesBelow(given, root)) absent_given_.push_back(given);
}

std::string KnownDrives::AwayRootOf(std::string_view path) const {
  for (const KnownDrive& drive : drives_)
    if (drive.away && drive.moved_to.empty() && LiesBelow(path, drive.root)) return drive.root;
  for (const std::string& root : absent_given_)
    if (LiesBelow(path, root)) return root;
  return {};
}

bool KnownDrives::IsBehindAutomounter(std::string_view folder) const {
  return std::any_of(drives_.begin(), drives_.end(), [&](const KnownDrive& drive) {
    return drive.automounter && drive.moved_to.empty() && LiesBelow(folder, drive.root);
  });
}

KnownDrives::FolderVerdict KnownDrives::VerdictOf(std::string_view folder) const {
  FolderVerdict result;
  const auto found = by_folder_.find(PathKey(folder));
  if (found == by_folder_.end()) return result;
  result.verdict = Verdict::kMissing;
  for (const std::size_t place : found->second) {
    const KnownDrive& drive = drives_[place];
    if (!drive.away) continue;
    if (!drive.moved_to.empty()) {
      result.moved_to.push_back(drive.moved_to + Below(folder, drive.root));
      continue;
    }
    result.verdict = Verdict::kAway;
    result.away_root = drive.root;
  }
  for (const std::string& root : absent_given_) {
    if (!LiesBelow(folder, root) || !result.moved_to.empty()) continue;
    result.verdict = Verdict::kAway;
    result.away_root = root;
  }
  return result;
}

KnownDrive KnownDrives::DriveAt(std::string_view folder) const {
  KnownDrive drive;
  const MountedVolume* const place = VolumeOf(volumes_, folder);
  if (place != nullptr) drive.root = place->root;
  for (const std::string& given : given_)
    if (given.size() > drive.root.size() && LiesBelow(folder, given)) drive.root = given;
  // A folder that was once given as a drive remains a drive.
  for (const KnownDrive& known : drives_)
    if (!known.away && known.root.size() > drive.root.size() && LiesBelow(folder, known.root))
      drive.root = known.root;
  // Without mount information, the share is the drive, or else the folder itself.
  if (drive.root.empty()) drive.root = ShareOfPath(folder);
  if (drive.root.empty()) drive.root = folder;
  drive.mount_point = place != nullptr && IsSamePathText(place->root, drive.root);
  drive.folder = VolumeFolderOf(volumes_, drive.root);
  return drive;
}

void KnownDrives::UpdateFolders(const std::vector<std::string>& seen,
                                const std::vector<std::string>& kept, bool complete) {
  std::vector<std::set<std::string>> folders(drives_.size());
  for (const std::string& folder : kept)
    if (const auto found = by_folder_.find(PathKey(folder)); found != by_folder_.end())
      for (const std::size_t k : found->second) folders[k].insert(Below(folder, drives_[k].root));
  std::optional<std::size_t> last;
  for (const std::string& folder : seen) {
    KnownDrive at = DriveAt(folder);
    // Consecutive songs are usually on the same drive.
    if (!last || !IsSameDrive(drives_[*last], at)) {
      const auto same = std::find_if(drives_.begin(), drives_.end(), [&](const KnownDrive& drive) {
        return IsSameDrive(drive, at);
      });
      last = static_cast<std::size_t>(same - drives_.begin());
      const bool is_new = same == drives_.end();
      if (is_new) {
        drives_.push_back(at);
        folders.emplace_back();
      }
      KnownDrive& drive = drives_[*last];
      if (at.folder.volume.empty()) at.folder = drive.folder;
      is_dirty_ = is_dirty_ || is_new || drive.folder != at.folder ||
                  drive.mount_point != at.mount_point || drive.root != at.root;
      drive.folder = at.folder;
      drive.mount_point = at.mount_point;
      drive.root = at.root;
      drive.away = false;
    }
    folders[*last].insert(Below(folder, at.root));
  }
  for (std::size_t k = 0; k < drives_.size(); ++k) {
    std::set<std::string>& known = drives_[k].folders;
    if (!complete) folders[k].insert(known.begin(), known.end());
    if (known == folders[k]) continue;
    known = std::move(folders[k]);
    is_dirty_ = true;
  }
  if (!is_dirty_) return;
  std::erase_if(drives_, [](const KnownDrive& drive) { return drive.folders.empty(); });
  Index();
}

void KnownDrives::ApplyNewRoots() {
  for (KnownDrive& drive : drives_) {
    if (drive.moved_to.empty()) continue;
    drive.root = std::exchange(drive.moved_to, {});
    const MountedVolume* const place = VolumeOf(volumes_, drive.root);
    drive.mount_point = place != nullptr && IsSamePathText(place->root, drive.root);
    drive.away = false;
    is_dirty_ = true;
  }
  Index();
}

void KnownDrives::Forget(std::string_view root) {
  const auto forgotten = std::erase_if(drives_, [&](const KnownDrive& drive) {
    return drive.away && IsSamePathText(drive.root, root);
  });
  if (forgotten == 0) return;
  is_dirty_ = true;
  Index();
}

std::vector<std::string> KnownDrives::Roots() const {
  std::vector<std::string> roots = given_;
  for (const KnownDrive& drive : drives_) roots.push_back(drive.root);
  for (const MountedVolume& volume : volumes_) roots.push_back(volume.root);
  return roots;
}

bool KnownDrives::Knows(std::string_view root) const {
  return std::any_of(drives_.begin(), drives_.end(), [&](const KnownDrive& drive) {
    if (IsSamePathText(drive.root, root)) return true;
    return LiesBelow(root, drive.root) &&
           std::any_of(drive.folders.begin(), drive.folders.end(), [&](const std::string& folder) {
             return LiesBelow(drive.root + folder, root);
           });
  });
}

void KnownDrives::Index() {
  by_folder_.clear();
  for (std::size_t k = 0; k < drives_.size(); ++k)
    for (const std::string& folder : drives_[k].folders)
      by_folder_[PathKey(drives_[k].root + folder)].push_back(k);
}

std::string KnownDrives::Encode() const {
  std::string bytes = BeginJsonFile(kFormat) + ",\"drives\":[";
  const char* separator = "\n";
  for (const KnownDrive& drive : drives_) {
    bytes += std::exchange(separator, ",\n");
    bytes += "{\"root\":";
    AppendJsonText(bytes, drive.root);
    bytes += drive.mount_point ? ",\"mountPoint\":true" : ",\"mountPoint\":false";
    bytes += ",\"volume\":";
    AppendJsonText(bytes, drive.folder.volume);
    bytes += ",\"inside\":";
    AppendJsonText(bytes, drive.folder.inside);
    bytes += ",\"folders\":[";
    const char* comma = "";
    for (const std::string& folder : drive.folders) {
      bytes += std::exchange(comma, ",");
      AppendJsonText(bytes, folder);
    }
    bytes += "]}";
  }
  return bytes + "]}\n";
}

void KnownDrives::Decode(const std::string& bytes) {
  const auto root = ParseJsonFile(bytes, kFormat);
  std::vector<KnownDrive> drives;
  for (const auto& member : root.at("drives")) {
    const auto text = [&](const char* name) {
      return BytesOfJsonText(member.at(name).get<std::string>());
    };
    KnownDrive drive;
    drive.root = text("root");
    drive.mount_point = member.at("mountPoint").get<bool>();
    drive.folder = {text("volume"), text("inside")};
    for (const auto& folder : member.at("folders"))
      drive.folders.insert(BytesOfJsonText(folder.get<std::string>()));
    drives.push_back(std::move(drive));
  }
  drives_ = std::move(drives);
  Index();
  is_dirty_ = false;
}

}  // namespace tallow
