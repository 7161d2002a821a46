// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace tallow {

/// What kind of drive a root is, in the numbering of the Windows call for it.
enum DriveType : int {
  kUnknownDrive = 0,
  kNoDrive = 1,  ///< the root is not there
  kRemovableDrive = 2,
  kFixedDrive = 3,
  kRemoteDrive = 4,
  kCdRom = 5,
  kRamDisk = 6,
};

/// The drives of the machine. Every folder it takes or gives ends in a separator.
class DriveList {
 public:
  virtual ~DriveList() = default;

  /// The roots in the order they are searched in, each followed by a NUL, and one more NUL; the
  /// empty text when the system does not tell.
  virtual std::string GetLogicalDriveList() const = 0;

  /// What kind of drive a root is.
  virtual int TypeOf(const std::string& root) const = 0;

  /// What kind of drive a root is as the system lists it, without a look at the drive, which may not answer.
  virtual int ListedTypeOf(const std::string& root) const = 0;

  /// Whether another file system begins at a folder, so that a walk from above must not enter it.
  virtual bool IsMountPoint(const std::string& folder) const = 0;

  /// Whether what a linked folder leads to may be walked: anything but the kernel's own file
  /// systems. A link says that the user wants what it leads to, so the kind of drive it is on does
  /// not matter.
  virtual bool MayFollow(const std::string& linked_folder) const = 0;
};

/// The drives the system has.
///
/// Windows: its drive letters. Linux: the mount table, in order of mount point; the kernel's pseudo
/// file systems are no drives, and what is mounted twice is one drive.
std::unique_ptr<DriveList> SystemDrives();

/// Some folders, in their order, as the only drives, all of them fixed; what is mounted in them is
/// known from the system's own list.
std::unique_ptr<DriveList> GivenDrives(const std::vector<std::string>& folders);

/// Removes the first root from a drive list and returns it. A list without a NUL stays as it is and
/// gives the empty text.
std::string NextDriveFromList(std::string& list);

/// Whether nothing is left of a drive list but its final NUL (or not even that).
bool IsEndOfDriveList(std::string_view list) noexcept;

/// The words for the kind of a drive: "Hard drive; can not be removed" for a fixed one.
///
/// \param type as DriveList::TypeOf gives it
/// \param root a removable drive whose root begins with a small a or b is a floppy drive
std::string_view DescribeDriveType(int type, std::string_view root) noexcept;

/// Whether a drive of these words is searched: only hard drives are.
bool IsSearched(std::string_view drive_type_text);

}  // namespace tallow
