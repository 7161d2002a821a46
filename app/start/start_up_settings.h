// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <string>

namespace tallow {

class StartUpNotices;
class StartUpWindows;
class Tallow;

/// Loads the preferences and the settings during a start. Creates new settings where they are
/// missing, truncated or damaged. Existing settings are backed up once before they are changed.
class StartUpSettings {
 public:
  /// \param tallow, windows, notices must outlive this object
  StartUpSettings(Tallow& tallow, StartUpWindows& windows, StartUpNotices& notices)
      : tallow_(tallow), windows_(windows), notices_(notices) {}

  /// Loads the preferences, whose problems become notices, and the settings. The library gets the
  /// switches of the preferences if the user has ever chosen a style.
  ///
  /// \returns false when the settings cannot be read and the user does not want new ones
  /// \throws FileError when their folder cannot be read
  bool Load();

  /// Whether this start has created the settings.
  bool AreNew() const noexcept { return are_new_; }

  /// Backs the settings file up, at most once in a start. Call this before changing a setting.
  void BackUp();
  /// Sets the data folders to those of the application folder.
  void ResetDataFolders();
  /// Sets the number of songs in the library file, if it differs.
  void SetSongCount(std::int32_t songs);

 private:
  void LoadPreferences();
  bool Rebuild(const std::string& problem);
  void Make();
  void CompleteTruncated();
  void ReplaceMissingFolders();

  Tallow& tallow_;
  StartUpWindows& windows_;
  StartUpNotices& notices_;
  bool are_new_ = false;
  bool are_backed_up_ = false;  ///< this start has backed up the old settings
  std::string backup_notice_;   ///< sentence on where the backup is, with a leading blank
};

}  // namespace tallow
