// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/search/music_places.h"

#include <algorithm>
#include <utility>

#include "app/search/drive_list.h"
#include "app/search/music_choice.h"
#include "app/tallow.h"
#include "library/mounted_volumes.h"
#include "util/file_system.h"
#include "util/number.h"
#include "util/path_text.h"
#include "util/read_ahead.h"

namespace tallow {
namespace {

PlaceKind KindOf(int drive_type) {
  switch (drive_type) {
    case kFixedDrive:
      return PlaceKind::kFixedDisk;
    case kRemovableDrive:
      return PlaceKind::kRemovable;
    case kCdRom:
      return PlaceKind::kDisc;
    case kRemoteDrive:
      return PlaceKind::kShare;
    default:
      return PlaceKind::kOther;
  }
}

std::string_view TextOf(PlaceKind kind) {
  switch (kind) {
    case PlaceKind::kFixedDisk:
      return "Fixed disk";
    case PlaceKind::kRemovable:
      return "Removable drive";
    case PlaceKind::kDisc:
      return "CD or DVD";
    case PlaceKind::kShare:
      return "Network share";
    case PlaceKind::kOther:
      return "Other file system";
    case PlaceKind::kAway:
      return "Drive";
    case PlaceKind::kFolder:
      return "Folder";
    case PlaceKind::kGiven:
      return "Given by --drive";
  }
  return {};
}

/// The drives in their order.
std::vector<std::string> RootsOf(const DriveList& drives) {
  std::vector<std::string> roots;
  for (std::string list = drives.GetLogicalDriveList(); !IsEndOfDriveList(list);)
    roots.push_back(NextDriveFromList(list));
  return roots;
}

bool IsSearchedByDefault(PlaceKind kind) {
  return kind == PlaceKind::kFixedDisk || kind == PlaceKind::kFolder;
}

/// The places of drives that were given.
std::vector<MusicPlace> GivenPlaces(const DriveList& drives) {
  std::vector<MusicPlace> places;
  for (std::string& root : RootsOf(drives))
    places.push_back({std::move(root), PlaceKind::kGiven, true});
  return places;
}

/// Whether a walk from above enters all folders down to one below, because none of them is a mount
/// point.
bool IsReached(std::string_view below, std::string_view above, const DriveList& drives) {
  for (std::string_view folder = below; folder.size() > above.size();
       folder = FolderOfPath(folder.substr(0, folder.size() - 1)))
    if (drives.IsMountPoint(std::string(folder))) return false;
  return true;
}

std::string StateOf(const std::vector<MusicPlace>& places, const MusicPlace& place, Tallow& tallow,
                    const DriveList& drives, const std::optional<bool>& is_there) {
  if (!tallow.place_being_searched.empty() &&
      IsSamePathText(tallow.place_being_searched, place.root))
    return "Being searched";
  if (place.kind == PlaceKind::kAway || (place.is_ticked && is_there == false)) return "Away";
  const MusicPlace* const with = SearchedWith(places, place, drives);
  if (!place.is_ticked) return with != nullptr ? "Searched with " + with->root : "Not searched";
  const bool is_unread =
      !tallow.has_given_drives && MusicChoice(tallow.preferences).IsUnread(place.root);
  return is_unread ? "Not searched yet" : "Searched";
}

/// What a disk says of a folder.
struct FolderAnswer {
  bool is_answered = false;
  std::string root;  ///< the absolute path, ending in a separator
  bool is_folder = false;
  bool has_files = false;  ///< not only the state of the system
};

/// Asks on a thread of its own, which is abandoned if the disk does not answer.
FolderAnswer AskAboutFolder(const std::shared_ptr<const DriveList>& drives, const std::string& path,
                            const std::function<bool()>& go_on,
                            std::chrono::milliseconds max_wait) {
  FolderAnswer result;
  ReadAhead(
      1, 1, [&](std::size_t) { return path; },
      [drives](const std::string& asked) {
        FolderAnswer answer{.is_answered = true,
                            .root = EnsureTrailingBackslash(AbsolutePath(asked))};
        answer.is_folder = FolderExists(answer.root);
        answer.has_files = answer.is_folder && drives->MayFollow(answer.root);
        return answer;
      },
      [&](std::size_t, FolderAnswer answer) { result = std::move(answer); },
      [&](std::size_t, std::chrono::milliseconds waited) {
        return waited < max_wait && (!go_on || go_on()) ? WaitDecision::kWait
                                                        : WaitDecision::kGiveUp;
      },
      [](std::size_t) { return FolderAnswer(); });
  return result;
}

}  // namespace

std::vector<MusicPlace> MusicPlaces(const DriveList& drives, const MusicChoice* choice) {
  if (choice == nullptr) return GivenPlaces(drives);
  std::vector<MusicPlace> places;
  const std::vector<std::string> roots = RootsOf(drives);
  for (const std::string& root : roots) {
    const int type = drives.ListedTypeOf(root);
    const PlaceKind kind = KindOf(type);
    const bool is_ticked = choice->IsTicked(root, IsSearchedByDefault(kind));
    const bool is_hidden = type == kNoDrive || type == kRamDisk || drives.HoldsProgram(root);
    if (is_ticked || !is_hidden) places.push_back({root, kind, is_ticked});
  }
  std::stable_partition(places.begin(), places.end(), [](const MusicPlace& place) {
    return place.kind == PlaceKind::kFixedDisk;
  });
  const auto is_listed = [&](const std::string& root) {
    return std::any_of(places.begin(), places.end(),
                       [&](const MusicPlace& place) { return IsSamePathText(place.root, root); });
  };
  for (const std::string& root : choice->TickedDrives())
    if (!is_listed(root)) places.push_back({root, PlaceKind::kAway, true});
  for (const std::string& root : choice->Folders())
    if (!is_listed(root))
      places.push_back({root, PlaceKind::kFolder, choice->IsTicked(root, true)});
  return places;
}

std::string DriveOfPath(const DriveList& drives, std::string_view path) {
  std::string longest;
  for (std::string& root : RootsOf(drives))
    if (root.size() > longest.size() && LiesBelow(path, root)) longest = std::move(root);
  return longest;
}

const MusicPlace* SearchedWith(const std::vector<MusicPlace>& places, const MusicPlace& place,
                               const DriveList& drives) {
  for (const MusicPlace& other : places)
    if (other.is_ticked && other.root.size() < place.root.size() &&
        LiesBelow(place.root, other.root) && IsReached(place.root, other.root, drives))
      return &other;
  return nullptr;
}

std::vector<std::int32_t> SongsInPlaces(const std::vector<MusicPlace>& places,
                                        const clsMain& library) {
  std::vector<std::int32_t> counts(places.size());
  std::string folder;
  std::vector<std::size_t> in;  // the places that contain the folder
  for (std::int32_t row = 1; row <= library.UBoundOfMp3Array(); ++row) {
    const SongView song = library.Song(row);
    if (!song.IsPresent()) continue;
    // Consecutive songs are usually in the same folder.
    if (folder != song.Folder()) {
      folder = song.Folder();
      in.clear();
      std::optional<std::size_t> drive;
      for (std::size_t k = 0; k < places.size(); ++k) {
        const std::string& root = places[k].root;
        if (!LiesBelow(folder, root)) continue;
        if (places[k].kind == PlaceKind::kFolder)
          in.push_back(k);
        else if (!drive || root.size() > places[*drive].root.size())
          drive = k;
      }
      if (drive) in.push_back(*drive);
    }
    for (const std::size_t k : in) ++counts[k];
  }
  return counts;
}

std::vector<PlaceLine> PlaceLines(
    Tallow& tallow, const DriveList& drives,
    const std::function<std::optional<bool>(const std::string&)>& is_there) {
  const MusicChoice choice(tallow.preferences);
  const std::vector<MusicPlace> places =
      MusicPlaces(drives, tallow.has_given_drives ? nullptr : &choice);
  const std::vector<std::int32_t> songs = SongsInPlaces(places, tallow.library);
  std::vector<PlaceLine> lines;
  for (std::size_t k = 0; k < places.size(); ++k)
    lines.push_back({places[k], std::string(TextOf(places[k].kind)), GroupedNumber(songs[k]),
                     StateOf(places, places[k], tallow, drives, is_there(places[k].root))});
  return lines;
}

void TickPlace(Tallow& tallow, const MusicPlace& place, bool ticked) {
  MusicChoice(tallow.preferences).Tick(place.root, ticked, IsSearchedByDefault(place.kind));
  // The next start would search it otherwise, if it could not be read before.
  if (!ticked) tallow.library.ForgetUnread(place.root);
}

std::string AddMusicFolder(Tallow& tallow, const std::shared_ptr<const DriveList>& drives,
                           const std::string& path, const std::function<bool()>& go_on,
                           std::chrono::milliseconds max_wait) {
  const FolderAnswer answer = AskAboutFolder(drives, path, go_on, max_wait);
  if (!answer.is_answered) return path + " is on a drive that does not answer, and was not added.";
  const std::string& root = answer.root;
  if (!answer.is_folder) return path + " is not a folder that Tallow can open.";
  if (!answer.has_files) return root + " shows the state of the system and has no music.";
  MusicChoice choice(tallow.preferences);
  for (const MusicPlace& place : MusicPlaces(*drives, &choice)) {
    if (!IsSamePathText(place.root, root)) continue;
    if (place.is_ticked) return root + " is in the list already.";
    TickPlace(tallow, place, true);
    return root + " is in the list already, and is searched from now on.";
  }
  choice.AddFolder(root);
  return {};
}

void RemoveMusicFolder(Tallow& tallow, const std::string& root) {
  MusicChoice(tallow.preferences).RemoveFolder(root);
  tallow.library.ForgetUnread(root);
}

std::string EmptyLibraryText(Tallow& tallow) {
  const clsMain& library = tallow.library;
  for (std::int32_t row = 1; row <= library.UBoundOfMp3Array(); ++row)
    if (library.IsPresent(row)) return {};
  if (tallow.has_given_drives) return "No songs were found in the folders given by --drive.";
  return MusicChoice(tallow.preferences).IsDefault()
             ? "No songs were found on this computer's fixed disks."
             : "No songs were found in the places that are searched.";
}

}  // namespace tallow
