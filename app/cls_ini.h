// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <stdexcept>
#include <string>
#include <string_view>

namespace tallow {

/// A line of the settings file has an invalid value.
class SettingsError : public std::runtime_error {
 public:
  /// \param file    path of the settings file
  /// \param line    from 1
  /// \param problem what is wrong with the value, e.g. "'abc' is not a number"
  SettingsError(std::string_view file, std::size_t line, std::string_view problem);
};

// The settings file "TallowOrganizer.ini" is ten lines of text, each ended by CR LF. A line's
// number determines its meaning, and nothing is quoted:
//
// |  1 | FileContainingTargetDirectories |
// |  2 | LocOfGroupingDir |
// |  3 | NumerOfRecordsInTheMain, one blank before the digits (the sign's place), one after |
// |  4 | LocOfWinAmpExe |
// |  5 | LocOfLastSavedJukeBox |
// |  6 | LocSecToLastSavedJukeBox |
// |  7 | LocOfThirdToLastSaveJukeBox |
// |  8 | IsThereAPicture, "True" or "False" |
// |  9 | IsItTiled, "True" or "False" |
// | 10 | PictureLocation |
//
// For example, with no jukebox saved and no picture:
//
//   /home/ann/Tallow/Grouping/System/LocOfMainTargetFiles.lmz
//   /home/ann/Tallow/Grouping/
//    1234
//   /usr/bin/tallow-player
//   (three empty lines)
//   False
//   False
//   (an empty line)

/// The program's settings. No setter writes the file: the caller changes settings and then calls
/// Save.
class clsINI {
 public:
  /// Number of lines in the file.
  static constexpr std::size_t kLines = 10;
  /// A larger file is not accepted as a settings file. Ten paths of maximum length are less than 1
  /// MB.
  static constexpr std::uint64_t kMaxBytes = std::uint64_t{16} << 20U;

  /// \param update_the_menu_control_array callback that rebuilds the recent-file entries of the
  ///        main window's menu; called when one of the three jukebox settings is set; may be empty
  explicit clsINI(std::function<void()> update_the_menu_control_array = {});

  /// Resets every setting to its value before a file is read: empty, 0 or false.
  void Clear();

  /// Sets the callback that rebuilds the recent-file menu from now on.
  void SetMenuUpdate(std::function<void()> update_the_menu_control_array);

  /// Full path of the background picture of the jukebox list.
  const std::string& PictureLocation() const noexcept { return picture_location_; }
  void PictureLocation(std::string_view path) { picture_location_ = path; }

  /// Whether the background picture is tiled; if not, it is centred.
  bool IsItTiled() const noexcept { return is_it_tiled_; }
  void IsItTiled(bool tiled) noexcept { is_it_tiled_ = tiled; }

  bool IsThereAPicture() const noexcept { return is_there_a_picture_; }
  void IsThereAPicture(bool shown) noexcept { is_there_a_picture_ = shown; }

  /// The third to last saved jukebox file. Setting it rebuilds the recent-file menu.
  const std::string& LocOfThirdToLastSaveJukeBox() const noexcept { return third_to_last_; }
  void LocOfThirdToLastSaveJukeBox(std::string_view path);

  /// The second to last saved jukebox file. Setting it rebuilds the recent-file menu.
  const std::string& LocSecToLastSavedJukeBox() const noexcept { return second_to_last_; }
  void LocSecToLastSavedJukeBox(std::string_view path);

  /// The jukebox file saved last; it is opened at start-up.
  ///
  /// Setting another value moves the current value to second and the second to third, and rebuilds
  /// the menu each time. Setting the current value again does nothing. Duplicates are not removed:
  /// saving A, B and A again gives A, B, A.
  const std::string& LocOfLastSavedJukeBox() const noexcept { return last_; }
  void LocOfLastSavedJukeBox(std::string_view path);

  /// Full path of the player's executable; empty when unknown.
  const std::string& LocOfWinAmpExe() const noexcept { return player_; }
  void LocOfWinAmpExe(std::string_view path) { player_ = path; }

  /// Number of rows of the library file.
  std::int32_t NumerOfRecordsInTheMain() const noexcept { return records_; }
  void NumerOfRecordsInTheMain(std::int32_t records) noexcept { records_ = records; }

  /// Full path of the list of folders that hold songs.
  const std::string& FileContainingTargetDirectories() const noexcept { return folder_list_; }
  void FileContainingTargetDirectories(std::string_view path) { folder_list_ = path; }

  /// The program's data folder, ending in a separator.
  const std::string& LocOfGroupingDir() const noexcept { return grouping_folder_; }
  void LocOfGroupingDir(std::string_view path) { grouping_folder_ = path; }

  /// Writes the settings file, replacing it atomically.
  ///
  /// \returns why the file could not be written, as "PATH: REASON"; the old file is unchanged then.
  ///          Empty on success
  std::string Save(const std::string& path) const;

  /// Sets every setting to its default and saves. The number of records comes from the last song of
  /// the library file, if the file exists.
  ///
  /// \param application_folder the program's folder, ending in a separator
  /// \returns whether the settings could be saved
  /// \throws TypeMismatchError when a library file exists but holds no song, or its last song has
  ///         no number; nothing is saved then
  /// \throws FileError when the library file cannot be read
  bool CreateNewIniFile(const std::string& path, const std::string& application_folder);

  /// Whether the last file that was read had all ten lines, each with its line end.
  bool IsComplete() const noexcept { return lines_read_ >= kLines; }

  /// Reads the settings from a truncated file: uses the lines that have a line end; every other
  /// setting gets its default.
  ///
  /// \throws FileError, SettingsError as GetandLoadIniInfo
  void CompleteSettings(const std::string& path, const std::string& application_folder);

  /// Reads a settings file. Missing lines leave their settings unchanged; lines after the tenth are
  /// ignored.
  ///
  /// \returns true
  /// \throws FileError when the file cannot be read, or has more than kMaxBytes
  /// \throws SettingsError when a value is not the number or boolean it must be; the lines before
  ///         it have been applied
  bool GetandLoadIniInfo(const std::string& path);

 private:
  void SetDefaults(const std::string& application_folder);
  void ParseLines(const std::string& path, std::string_view content);
  void UpdateMenu() const;
  void ParseLine(std::size_t line, std::string_view text);

  std::function<void()> update_menu_;
  std::string picture_location_;
  bool is_it_tiled_ = false;
  bool is_there_a_picture_ = false;
  std::string third_to_last_;
  std::string second_to_last_;
  std::string last_;
  std::string player_;
  std::int32_t records_ = 0;
  std::string folder_list_;
  std::string grouping_folder_;
  std::size_t lines_read_ = 0;  ///< number of lines that had a line end
};

}  // namespace tallow
