// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "app/data_paths.h"
#include "app/tallow.h"
#include "tests/temp_folder.h"

namespace tallow {

/// The program's shared state over a temporary folder, with the data folders created and the
/// default settings.
class LibraryTest : public testing::Test {
 protected:
  LibraryTest() {
    CreateFolders(SystemFolder(application.path()));
    tallow.settings.CreateNewIniFile(tallow.settings_path, application.path());
  }

  /// Appends a song to the library.
  void AddSong(const std::string& folder, const std::string& name, const std::string& there = "1",
               const std::string& rank = "2") {
    const std::int32_t row = library.UBoundOfMp3Array() + 1;
    library.Mp3Info(1, row, folder);
    library.Mp3Info(2, row, name);
    library.Mp3Info(3, row, there);
    library.Mp3Info(4, row, std::to_string(row));
    library.Mp3Info(5, row, rank);
  }

  /// The cells of one column in all rows.
  std::vector<std::string> Cells(int column) const {
    std::vector<std::string> cells;
    for (std::int32_t row = 1; row <= library.UBoundOfMp3Array(); ++row)
      cells.emplace_back(library.Mp3Info(column, row));
    return cells;
  }

  std::string LibraryPath() const { return library.LibraryPath(); }
  std::string ListPath() const { return tallow.settings.FileContainingTargetDirectories(); }

  TempFolder application;
  TempFolder music;
  Tallow tallow{application.path()};
  clsMain& library = tallow.library;
};

using Texts = std::vector<std::string>;

}  // namespace tallow
