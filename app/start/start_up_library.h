// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

namespace tallow {

class DriveList;
class StartUpNotices;
class StartUpSettings;
class StartUpWait;
class StartUpWindows;
class Tallow;
struct LibraryCheck;

/// Checks the library file during a start, then loads the library, or builds it from a search of
/// all drives. The user chooses what to do about a file that is damaged, missing or changed.
class StartUpLibrary {
 public:
  /// All parameters must outlive this object.
  StartUpLibrary(Tallow& tallow, const DriveList& drives, StartUpWindows& windows,
                 StartUpSettings& settings, StartUpNotices& notices, StartUpWait& wait);

  /// Loads the library and brings it up to date, or builds it.
  ///
  /// \returns false when the user does not want to continue
  /// \throws FileError when the library file cannot be read
  bool LoadOrBuild();

  /// Whether the user cancelled the search of all drives.
  bool WasCancelled() const noexcept { return was_cancelled_; }

 private:
  bool CheckFileOnDisk();
  bool Choose(const LibraryCheck& check);
  bool OfferRebuild(const std::string& problem, bool file_exists);
  void Load();
  void SearchUnreadFolders();
  void SearchForSongs();
  void Rebuild();
  void SearchDrives();

  Tallow& tallow_;
  const DriveList& drives_;
  StartUpWindows& windows_;
  StartUpSettings& settings_;
  StartUpNotices& notices_;
  StartUpWait& wait_;
  bool is_rebuild_ = false;   ///< the user chose to salvage the library file and to search again
  bool is_renamed_ = false;   ///< the damaged library file has been renamed already
  bool trusts_file_ = false;  ///< the user chose to use the library file as it is
  bool was_cancelled_ = false;
};

}  // namespace tallow
