// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <stdexcept>
#include <string>
#include <string_view>

namespace tallow {

/// A line of the settings file cannot be what it has to be.
class SettingsError : public std::runtime_error {
 public:
  /// \param file    the settings file's path
  /// \param line    from 1
  /// \param problem what is wrong with the value, e.g. "'abc' is not a number"
  SettingsError(std::string_view file, std::size_t line, std::string_view problem);
};

// The settings file "TallowOrganizer.ini" is ten lines of text, each ended by CR LF. The meaning of a
// line is its number, and nothing is quoted:
//
// |  1 | FileContainingTargetDirectories |
// |  2 | LocOfGroupingDir |
// |  3 | NumerOfRecordsInTheMain, one blank before the digits (a sign's place) and one behind |
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

/// The program's settings. Nothing is written by itself: whoever changes a setting calls Save.
class clsINI {
 public:
  /// Lines of the file.
  static constexpr std::size_t kLines = 10;
  /// A larger file is none. Ten paths of the longest kind have less than 1 MB.
  static constexpr std::uint64_t kMaxBytes = std::uint64_t{16} << 20U;

  /// \param update_the_menu_control_array rebuilds the recent-file entries of the main window's
  ///         menu; called whenever one of the three jukebox settings is set; may be empty
  explicit clsINI(std::function<void()> update_the_menu_control_array = {});

  /// Takes every setting back to what it is before a file is read: empty, 0 and false.
  void Clear();

  /// Sets what is to rebuild the recent-file menu from now on.
  void SetMenuUpdate(std::function<void()> update_the_menu_control_array);

  /// Full path of the background picture of the jukebox list.
  const std::string& PictureLocation() const noexcept { return picture_location_; }
  void PictureLocation(std::string_view path) { picture_location_ = path; }

  /// Whether the background picture is tiled; else centred.
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
  /// Setting it to another value moves the last one to second and the second one to third, and
  /// rebuilds the menu each time; setting it to the value it has does nothing. Saving A, B and A
  /// again gives A, B, A: nothing is taken out further down.
  const std::string& LocOfLastSavedJukeBox() const noexcept { return last_; }
  void LocOfLastSavedJukeBox(std::string_view path);

  /// Full path of the player's executable; empty when it is not known.
  const std::string& LocOfWinAmpExe() const noexcept { return player_; }
  void LocOfWinAmpExe(std::string_view path) { player_ = path; }

  /// Rows of the library file.
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
  /// \returns what kept it from being written, the old file standing then: "PATH: REASON"; empty when
  ///          nothing did
  std::string Save(const std::string& path) const;

  /// Sets every setting to its default and saves. The number of records comes from the last song of
  /// the library file, if there is one.
  ///
  /// \param application_folder the program's folder, ending in a separator
  /// \returns whether they could be saved
  /// \throws TypeMismatchError when there is a library file whose last song has no number, or that
  ///         holds no song; nothing is saved then
  /// \throws FileError when the library file cannot be read
  bool CreateNewIniFile(const std::string& path, const std::string& application_folder);

  /// Whether the file that was read last had all ten lines, each with its end.
  bool IsWhole() const noexcept { return lines_read_ >= kLines; }

  /// Makes settings of a file that was cut: the lines that have their end count, every other setting
  /// gets its default.
  ///
  /// \throws FileError, SettingsError as GetandLoadIniInfo
  void CompleteSettings(const std::string& path, const std::string& application_folder);

  /// Reads a settings file. Lines that are not there leave their settings alone; lines past the
  /// tenth are ignored.
  ///
  /// \returns true
  /// \throws FileError when the file cannot be read, or has more than kMaxBytes
  /// \throws SettingsError when a number or a boolean is none; the lines before it have been taken
  bool GetandLoadIniInfo(const std::string& path);

 private:
  void SetDefaults(const std::string& application_folder);
  void TakeLines(const std::string& path, std::string_view content);
  void UpdateMenu() const;
  void TakeLine(std::size_t line, std::string_view text);

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
  std::size_t lines_read_ = 0;  ///< that had their end
};

}  // namespace tallow
