// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/cls_main.h"

#include <exception>

#include "library/library_file.h"
#include "library/set_aside.h"
#include "util/errors.h"
#include "util/like.h"
#include "util/path_text.h"
#include "util/text_lines.h"

namespace tallow {

void clsMain::UseSwitches(const tallow::Switches& switches) {
  switches_ = switches;
  sets_aside_ = true;
  // The next start may not know the style: its file may be lost, or this style is for one run only.
  if (switches.more_formats || switches.songs_by_path) state_.Missing().ExpectNamesakes();
  UpdateSetAside();
}

void clsMain::UpdateSetAside() {
  if (HasNamesakes()) SetAside(table_, switches_);
}

bool clsMain::Save() {
  bool written = true;
  try {
    if (!storage_.IsOnDisk(table_)) {
      state_.SaveBeforeLibrary(table_.rows(), problems_);
      storage_.Write(table_);
    }
    save_error_.clear();
  } catch (const FileError& error) {
    save_error_ = error.what();
    written = false;
  }
  MainIsDirty(false);
  if (written) settings_.NumerOfRecordsInTheMain(table_.rows());
  settings_.SaveSettings();
  return written;
}

bool clsMain::LoadMain() {
  try {
    if (!storage_.Load(settings_.NumerOfRecordsInTheMain(), table_, problems_)) return false;
    LoadMemory();
  } catch (const std::exception&) {
    return false;
  }
  UpdateSetAside();
  MainIsDirty(false);
  return true;
}

void clsMain::WriteOutMp3DirectoryLocations() {
  Save();
  SortRows(true, true, kFileLocation);
  std::string lines;
  std::string_view previous;
  for (std::int32_t row = 1; row <= table_.rows(); ++row) {
    if (row > 1 && table_.SameStoredText(kFileLocation, row - 1, row)) continue;
    const std::string_view folder = table_.Cell(kFileLocation, row);
    if (!SameName(previous, folder) && !HasLineBreak(folder)) lines.append(folder).append(kLineEnd);
    previous = folder;
  }
  folder_list_.Write(lines);
  try {
    SortByRecord();
  } catch (const TypeMismatchError&) {
    // A row has no valid record number: the rows stay in the order reached so far, without an
    // error.
  } catch (const OverflowError&) {
    // As above.
  }
}

std::int32_t clsMain::Salvage(bool is_set_aside) {
  const std::int32_t found = storage_.Salvage(is_set_aside, table_);
  LoadMemory();
  return found;
}

bool clsMain::RepairRecordNumbers() {
  const auto confused = tallow::RepairNumbers(table_, MaxRecords(storage_.LoadedBytes()));
  if (!confused) return false;
  state_.Repaired().Set(*confused);
  storage_.RequireBackup();
  Save();
  return true;
}

}  // namespace tallow
