// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/dropped_folders.h"

#include <algorithm>
#include <cstdint>
#include <memory>
#include <optional>
#include <set>
#include <string_view>
#include <tuple>
#include <utility>

#include "app/search/drive_list.h"
#include "app/search/folder_reader.h"
#include "app/search/system_volumes.h"
#include "library/excluded_folders.h"
#include "library/song_formats.h"
#include "util/file_system.h"
#include "util/path_text.h"

namespace tallow {
namespace {

/// One walk through a folder and all that lies below it.
class Walk {
 public:
  Walk(const Switches& switches, const MayEnterFolder& may_enter, const GoOn& go_on,
       std::vector<std::string>& problems, std::chrono::milliseconds max_wait)
      : go_on_(go_on),
        problems_(problems),
        max_wait_(max_wait),
        reader_(
            std::string(SongPattern(switches)), true,
            [may_enter](const std::string& folder) {
              return !IsExcludedFolder(folder) && may_enter(folder);
            },
            [](const std::string&) { return false; }) {}

  /// \returns the folders with songs
  std::vector<std::string> Through(const std::string& folder) {
    // A link to a folder above would bring in what the user has not dropped.
    const std::string path = EnsureTrailingBackslash(AbsolutePath(folder));
    for (std::string_view above = FolderOfPath(std::string_view(path).substr(0, path.size() - 1));
         !above.empty(); above = FolderOfPath(above.substr(0, above.size() - 1)))
      if (const auto identity = IdentityOfFolder(std::string(above))) IsNew(*identity);
    Enter(reader_.Root(folder), false);
    // A linked folder may hold further links, which are appended to the list.
    for (std::size_t k = 0; k < links_.size() && !is_cancelled_; ++k)
      if (const std::string link = links_[k]; !IsExcludedFolder(EnsureTrailingBackslash(link)))
        Enter(reader_.Root(link), true);
    std::sort(folders_.begin(), folders_.end());
    return std::move(folders_);
  }

 private:
  /// Whether a folder was not visited before; remembers it.
  bool IsNew(const FolderIdentity& folder) {
    return visited_.emplace(folder.device, folder.number, folder.number_high).second;
  }

  /// Visits a folder and, depth first, all below it.
  void Enter(std::shared_ptr<TreeFolder> first, bool is_link) {
    std::vector<std::shared_ptr<TreeFolder>> waiting{std::move(first)};
    while (!waiting.empty() && !is_cancelled_) {
      const std::shared_ptr<TreeFolder> folder = std::move(waiting.back());
      waiting.pop_back();
      if (!IsListed(folder)) continue;
      const FolderListing& listing = folder->listing;
      // A file system without folder numbers reports 0 for every folder. It has no circles, but a
      // link to it could lead there again.
      const bool is_known = listing.identity.number == 0 ? is_link : !IsNew(listing.identity);
      if (listing.opened && is_known) continue;
      Take(*folder);
      if (!listing.opened) continue;
      reader_.Enter(*folder);
      waiting.insert(waiting.end(), folder->subfolders.rbegin(), folder->subfolders.rend());
      folder->listing = {};
    }
  }

  /// Adds a folder to the result if it has songs or cannot be read, and collects its links.
  void Take(const TreeFolder& folder) {
    const auto is_song = [](const FileEntry& file) { return MayBeSong(file.name); };
    const auto& files = folder.listing.files;
    if (std::any_of(files.begin(), files.end(), is_song) || !folder.listing.problem.empty())
      folders_.push_back(folder.path);
    for (const SubfolderEntry& entry : folder.listing.subfolders)
      if (entry.linked) links_.push_back(folder.path + entry.name);
  }

  /// Waits for the listing of a folder.
  bool IsListed(const std::shared_ptr<TreeFolder>& folder) {
    if (!go_on_) return reader_.WaitFor(folder);
    is_cancelled_ = !go_on_(folder->path);
    if (is_cancelled_) return false;
    const auto begin = std::chrono::steady_clock::now();
    if (reader_.WaitFor(folder, [&] {
          is_cancelled_ = !go_on_(folder->path);
          return !is_cancelled_ && std::chrono::steady_clock::now() - begin < max_wait_;
        }))
      return true;
    if (!is_cancelled_)
      problems_.push_back(folder->path + " is on a drive that does not answer and was skipped.");
    return false;
  }

  const GoOn& go_on_;
  std::vector<std::string>& problems_;
  const std::chrono::milliseconds max_wait_;
  FolderReader reader_;
  std::set<std::tuple<std::uint64_t, std::uint64_t, std::uint64_t>> visited_;
  std::vector<std::string> links_;
  std::vector<std::string> folders_;
  bool is_cancelled_ = false;
};

}  // namespace

MayEnterFolder EnterAllVolumes() {
  return [drives = std::shared_ptr<const DriveList>(SystemDrives()),
          volumes = std::optional<MountedVolumes>()](const std::string& folder) mutable {
    if (!drives->IsMountPoint(folder)) return true;
    if (!volumes) volumes = SystemVolumes();
    return std::any_of(volumes->begin(), volumes->end(), [&](const MountedVolume& volume) {
      return volume.root == folder && !volume.automounter;
    });
  };
}

std::vector<std::string> FoldersWithSongs(const std::string& folder, const Switches& switches,
                                          const MayEnterFolder& may_enter, const GoOn& go_on,
                                          std::vector<std::string>& problems,
                                          std::chrono::milliseconds max_wait) {
  std::vector<std::string> folders =
      Walk(switches, may_enter, go_on, problems, max_wait).Through(folder);
  if (folders.empty()) folders.push_back(EnsureTrailingBackslash(folder));
  return folders;
}

}  // namespace tallow
