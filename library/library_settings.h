// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <string>

namespace tallow {

/// The settings that the library uses.
class LibrarySettings {
 public:
  virtual ~LibrarySettings() = default;
  /// The program's data folder, ending in a separator. The library file is stored there.
  virtual std::string LocOfGroupingDir() const = 0;
  /// The folder of the program's own files, ending in a separator.
  virtual std::string SystemFolder() const = 0;
  /// The path of the list of folders that contain songs.
  virtual std::string FileContainingTargetDirectories() const = 0;
  /// The number of rows in the library file at the last save.
  virtual std::int32_t NumerOfRecordsInTheMain() const = 0;
  virtual void NumerOfRecordsInTheMain(std::int32_t rows) = 0;
  /// Writes the settings file. Failures are not reported.
  virtual void SaveSettings() = 0;
};

}  // namespace tallow
