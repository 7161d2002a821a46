// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/known_drives.h"

#include <algorithm>
#include <chrono>
#include <future>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <stdexcept>
#include <system_error>
#include <thread>
#include <utility>

#include "util/file_system.h"
#include "util/json_text.h"
#include "util/path_text.h"

namespace tallow {
namespace {

constexpr std::string_view kFormat = "Tallow drives";
constexpr int kVersion = 1;

/// How long an automounter may take to mount what it stands for.
constexpr std::chrono::seconds kMountTime{5};

/// Opens a folder on a thread of its own, which is left alone when the system does not answer in time.
void OpenInTime(const std::string& folder) {
  auto opened = std::make_shared<std::promise<void>>();
  const std::future<void> done = opened->get_future();
  try {
    std::thread([folder, opened] {
      StateOfFolder(folder);
      opened->set_value();
    }).detach();
  } catch (const std::system_error&) {
    return;
  }
  done.wait_for(kMountTime);
}

bool ShowsAutomounter(const MountedVolumes& volumes, const std::string& root) {
  const MountedVolume* const place = VolumeOf(volumes, root);
  return place != nullptr && place->automounter;
}

/// What of a folder's path lies below a root that it begins with.
std::string Below(std::string_view folder, std::string_view root) {
  return std::string(folder.substr(std::min(root.size(), folder.size())));
}

/// Whether a root is not there, or holds nothing.
bool IsAbsent(const std::string& root) {
  const FolderState state = StateOfFolder(root);
  return state == FolderState::kNotThere || state == FolderState::kEmpty;
}

bool IsSameDrive(const KnownDrive& drive, const KnownDrive& other) {
  if (!IsSamePathText(drive.root, other.root)) return false;
  return drive.folder == other.folder || drive.folder.volume.empty() || other.folder.volume.empty();
}

}  // namespace

void KnownDrives::LookAtDrives(const LookAtVolumes& look) {
  volumes_ = look();
  bool opened = false;
  for (const KnownDrive& drive : drives_) {
    if (!ShowsAutomounter(volumes_, drive.root)) continue;
    OpenInTime(drive.root);
    opened = true;
  }
  if (opened) volumes_ = look();
  for (KnownDrive& drive : drives_) {
    drive.automounter = ShowsAutomounter(volumes_, drive.root);
    drive.away = IsAway(drive);
    drive.moved_to.clear();
    if (drive.away) drive.moved_to = PlaceOf(volumes_, drive.folder).value_or(std::string());
  }
  absent_given_.clear();
  for (const std::string& root : given_)
    if (IsAbsent(root)) absent_given_.push_back(root);
}

bool KnownDrives::IsAway(const KnownDrive& drive) const {
  if (drive.automounter) return true;
  const MountedVolume* const place = VolumeOf(volumes_, drive.root);
  if (drive.mount_point && (place == nullptr || !IsSamePathText(place->root, drive.root)))
    return true;
  const VolumeFolder now = VolumeFolderOf(volumes_, drive.root);
  if (!drive.folder.volume.empty() && !now.volume.empty() && now != drive.folder) return true;
  return IsAbsent(drive.root);
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
  // What was given as a drive once stays one.
  for (const KnownDrive& known : drives_)
    if (!known.away && known.root.size() > drive.root.size() && LiesBelow(folder, known.root))
      drive.root = known.root;
  // Where the system tells of no drive, a share is one, or else the folder itself.
  if (drive.root.empty()) drive.root = ShareOfPath(folder);
  if (drive.root.empty()) drive.root = folder;
  drive.mount_point = place != nullptr && IsSamePathText(place->root, drive.root);
  drive.folder = VolumeFolderOf(volumes_, drive.root);
  return drive;
}

void KnownDrives::SongsSeen(const std::vector<std::string>& seen,
                            const std::vector<std::string>& kept, bool complete) {
  std::vector<std::set<std::string>> folders(drives_.size());
  for (const std::string& folder : kept)
    if (const auto found = by_folder_.find(PathKey(folder)); found != by_folder_.end())
      for (const std::size_t k : found->second) folders[k].insert(Below(folder, drives_[k].root));
  std::optional<std::size_t> last;
  for (const std::string& folder : seen) {
    KnownDrive at = DriveAt(folder);
    // Nearly all songs are on one drive.
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

void KnownDrives::TakeNewRoots() {
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
  std::string bytes = "{\"format\":";
  AppendJsonText(bytes, kFormat);
  bytes += ",\"version\":" + std::to_string(kVersion) + ",\"drives\":[";
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
  const auto root = nlohmann::json::parse(bytes);
  if (root.at("format") != kFormat || root.at("version") != kVersion)
    throw std::runtime_error("it is of another program or a newer Tallow");
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
