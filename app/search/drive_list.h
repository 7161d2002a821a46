// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace tallow {

/// The kind of a drive; the numbers are the results of the Windows function GetDriveType.
enum DriveType : int {
  kUnknownDrive = 0,
  kNoDrive = 1,  ///< the root is not there
  kRemovableDrive = 2,
  kFixedDrive = 3,
  kRemoteDrive = 4,
  kCdRom = 5,
  kRamDisk = 6,
};

/// The drives of the machine. Every folder passed or returned ends in a separator.
class DriveList {
 public:
  virtual ~DriveList() = default;

  /// The roots in search order, each followed by a NUL, and one more NUL; the empty text when the
  /// system does not report its drives.
  virtual std::string GetLogicalDriveList() const = 0;

  /// The kind of the drive with this root, see DriveType.
  virtual int TypeOf(const std::string& root) const = 0;

  /// The kind of the drive as the system lists it; does not access the drive, which may not
  /// respond.
  virtual int ListedTypeOf(const std::string& root) const = 0;

  /// Whether another file system is mounted at a folder, so that a walk from above must not enter
  /// it.
  virtual bool IsMountPoint(const std::string& folder) const = 0;

  /// Whether a drive is the image of a program, in the form in which some systems distribute them.
  virtual bool HoldsProgram(const std::string& /*root*/) const { return false; }

  /// Whether the target of a linked folder may be walked: anything but the kernel's pseudo file
  /// systems. A link shows that the user wants its target searched, so the kind of the target's
  /// drive does not matter.
  virtual bool MayFollow(const std::string& linked_folder) const = 0;
};

/// The drives of the system.
///
/// Windows: the drive letters. Linux: the mount table, in order of mount point, without the
/// kernel's pseudo file systems; a file system that is mounted twice is one drive.
std::unique_ptr<DriveList> SystemDrives();

/// The given folders, in their order, as the only drives, all of kind kFixedDrive. What is mounted
/// below them is read from the system's mount table.
std::unique_ptr<DriveList> GivenDrives(const std::vector<std::string>& folders);

/// Removes the first root from a drive list and returns it. A list without a NUL is left unchanged,
/// and the empty text is returned.
std::string NextDriveFromList(std::string& list);

/// Whether a drive list contains no more roots: only its final NUL is left, or not even the NUL.
bool IsEndOfDriveList(std::string_view list) noexcept;

/// The description of a drive's kind: "Hard drive; can not be removed" for a fixed drive.
///
/// \param type result of DriveList::TypeOf
/// \param root a removable drive whose root begins with a lower-case a or b is a floppy drive
std::string_view DescribeDriveType(int type, std::string_view root) noexcept;

/// Whether a drive with this description is searched: only hard drives are.
bool IsSearched(std::string_view drive_type_text);

}  // namespace tallow
