// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "library/drive_timeouts.h"

namespace tallow {

class clsMain;
class DriveList;
class MusicChoice;
class Tallow;

/// What a place with music is.
enum class PlaceKind {
  kFixedDisk,
  kRemovable,
  kDisc,    ///< a CD or DVD
  kShare,   ///< on a network
  kOther,   ///< a file system of another kind, such as one of FUSE
  kAway,    ///< a drive that was ticked and is not among the drives now
  kFolder,  ///< a folder that the user has added
  kGiven    ///< a folder or drive that was given on the command line
};

/// A place that may be searched for songs.
struct MusicPlace {
  std::string root;  ///< ends in a separator
  PlaceKind kind = PlaceKind::kFolder;
  bool is_ticked = false;
};

/// The places: fixed disks, then other drives and shares that are there, then ticked drives that
/// are away, then the folders that the user has added. RAM disks and the images of programs are
/// left out unless they are ticked. Does not access any drive.
///
/// \param choice null when the drives were given: they are then the only places, and all are ticked
std::vector<MusicPlace> MusicPlaces(const DriveList& drives, const MusicChoice* choice);

/// The root of the drive that contains a path: the one with the longest root; empty for none.
std::string DriveOfPath(const DriveList& drives, std::string_view path);

/// The place with which a search also searches another place, because that lies inside: a ticked
/// one whose walk reaches it without entering another drive. Null for none.
const MusicPlace* SearchedWith(const std::vector<MusicPlace>& places, const MusicPlace& place,
                               const DriveList& drives);

/// The number of songs in each place, those on drives that are away too. A song counts for its
/// drive and for every added folder that contains it.
std::vector<std::int32_t> SongsInPlaces(const std::vector<MusicPlace>& places,
                                        const clsMain& library);

/// A line of the list of places, as it is shown.
struct PlaceLine {
  MusicPlace place;
  std::string kind;   ///< "Fixed disk"
  std::string songs;  ///< "1,234"
  std::string state;  ///< "Searched"
};

/// The places of the program as they are shown.
///
/// \param is_there whether a place can be reached; no value while that is not known
std::vector<PlaceLine> PlaceLines(
    Tallow& tallow, const DriveList& drives,
    const std::function<std::optional<bool>(const std::string& root)>& is_there);

/// Lets searches include a place, or leave it out. The songs that were found there stay.
void TickPlace(Tallow& tallow, const MusicPlace& place, bool ticked);

/// Adds a folder to the places. A drive is ticked instead. The disk is asked on another thread.
///
/// \param go_on    called while the disk does not answer; false gives it up. May be empty
/// \param max_wait how long the disk may take to answer
/// \returns what to tell the user: why it cannot be added, or that it was there already. Empty when
/// it was added
std::string AddMusicFolder(Tallow& tallow, const std::shared_ptr<const DriveList>& drives,
                           const std::string& path, const std::function<bool()>& go_on = {},
                           std::chrono::milliseconds max_wait = kMaxWait);

/// Removes a folder that the user has added. The songs that were found there stay.
void RemoveMusicFolder(Tallow& tallow, const std::string& root);

/// What the empty list of a jukebox says while the library has no songs. Empty when it has some.
std::string EmptyLibraryText(Tallow& tallow);

}  // namespace tallow
