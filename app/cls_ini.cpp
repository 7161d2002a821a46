// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/cls_ini.h"

#include <utility>

#include "app/data_paths.h"
#include "library/library_file.h"
#include "util/atomic_file.h"
#include "util/errors.h"
#include "util/file_system.h"
#include "util/number.h"
#include "util/path_text.h"
#include "util/text.h"
#include "util/text_lines.h"

namespace tallow {
namespace {

std::string_view BooleanText(bool value) noexcept { return value ? "True" : "False"; }

/// The lines of a text that have a line end.
std::string_view CompleteLinesOf(std::string_view text) {
  return text.substr(0, text.find_last_of("\r\n") + 1);
}

/// A number in the format of the settings file: the sign's place, the digits, a blank.
std::string NumberText(std::int32_t number) {
  return (number < 0 ? "" : " ") + std::to_string(number) + " ";
}

}  // namespace

SettingsError::SettingsError(std::string_view file, std::size_t line, std::string_view problem)
    : std::runtime_error(std::string(NameOfPath(file)) + ", line " + std::to_string(line) + ": " +
                         std::string(problem)) {}

clsINI::clsINI(std::function<void()> update_the_menu_control_array)
    : update_menu_(std::move(update_the_menu_control_array)) {}

void clsINI::SetMenuUpdate(std::function<void()> update_the_menu_control_array) {
  update_menu_ = std::move(update_the_menu_control_array);
}

void clsINI::Clear() { *this = clsINI(std::move(update_menu_)); }

void clsINI::UpdateMenu() const {
  if (update_menu_) update_menu_();
}

void clsINI::LocOfThirdToLastSaveJukeBox(std::string_view path) {
  third_to_last_ = path;
  UpdateMenu();
}

void clsINI::LocSecToLastSavedJukeBox(std::string_view path) {
  second_to_last_ = path;
  UpdateMenu();
}

void clsINI::LocOfLastSavedJukeBox(std::string_view path) {
  if (path == last_) return;
  // Copies the path: it may refer to one of the entries that move below.
  std::string new_last(path);
  LocOfThirdToLastSaveJukeBox(second_to_last_);
  LocSecToLastSavedJukeBox(last_);
  last_ = std::move(new_last);
  UpdateMenu();
}

std::string clsINI::Save(const std::string& path) const {
  std::string text;
  const auto line = [&text](std::string_view value) { text.append(value).append(kLineEnd); };
  line(FileContainingTargetDirectories());
  line(LocOfGroupingDir());
  line(NumberText(NumerOfRecordsInTheMain()));
  line(LocOfWinAmpExe());
  line(LocOfLastSavedJukeBox());
  line(LocSecToLastSavedJukeBox());
  line(LocOfThirdToLastSaveJukeBox());
  line(BooleanText(IsThereAPicture()));
  line(BooleanText(IsItTiled()));
  line(PictureLocation());
  try {
    // Skips the write if nothing changed: most calls come from library saves that change no
    // setting.
    if (ReadWholeFile(path, kMaxBytes) != text) WriteFileAtomically(path, text);
  } catch (const FileError& error) {
    return error.what();
  }
  return {};
}

bool clsINI::CreateNewIniFile(const std::string& path, const std::string& application_folder) {
  FileContainingTargetDirectories(FolderListPath(application_folder));
  LocOfGroupingDir(GroupingFolder(application_folder));
  const LibraryInspection library =
      InspectLibrary(LocOfGroupingDir() + std::string(kLibraryFileName));
  const std::int32_t records = library.exists ? ConvertToInt32(library.last_number) : 0;
  SetDefaults(application_folder);
  NumerOfRecordsInTheMain(records);
  return Save(path).empty();
}

void clsINI::SetDefaults(const std::string& application_folder) {
  FileContainingTargetDirectories(FolderListPath(application_folder));
  LocOfGroupingDir(GroupingFolder(application_folder));
  NumerOfRecordsInTheMain(0);
  LocOfWinAmpExe({});
  LocOfLastSavedJukeBox({});
  LocSecToLastSavedJukeBox({});
  LocOfThirdToLastSaveJukeBox({});
  IsThereAPicture(false);
  IsItTiled(false);
  PictureLocation({});
}

void clsINI::CompleteSettings(const std::string& path, const std::string& application_folder) {
  const auto content = ReadWholeFile(path, kMaxBytes);
  SetDefaults(application_folder);
  if (!content) return;
  ParseLines(path, CompleteLinesOf(*content));
}

bool clsINI::GetandLoadIniInfo(const std::string& path) {
  const auto content = ReadWholeFile(path, kMaxBytes);
  if (!content) throw FileError(path, "the file does not exist");
  lines_read_ = SplitLines(CompleteLinesOf(*content)).size();
  ParseLines(path, *content);
  return true;
}

void clsINI::ParseLines(const std::string& path, std::string_view content) {
  std::size_t line = 0;
  for (const std::string_view text : SplitLines(content)) {
    ++line;
    try {
      ParseLine(line, Trim(text));
    } catch (const TypeMismatchError& error) {
      throw SettingsError(path, line, error.what());
    } catch (const OverflowError& error) {
      throw SettingsError(path, line, error.what());
    }
  }
}

void clsINI::ParseLine(std::size_t line, std::string_view text) {
  switch (line) {
    case 1:
      return FileContainingTargetDirectories(text);
    case 2:
      return LocOfGroupingDir(text);
    case 3:
      return NumerOfRecordsInTheMain(ConvertToInt32(text));
    case 4:
      return LocOfWinAmpExe(text);
    case 5:
      return LocOfLastSavedJukeBox(text);
    case 6:
      return LocSecToLastSavedJukeBox(text);
    case 7:
      return LocOfThirdToLastSaveJukeBox(text);
    case 8:
      return IsThereAPicture(ConvertToInt16(text) != 0);
    case 9:
      return IsItTiled(ConvertToInt16(text) != 0);
    case 10:
      return PictureLocation(text);
    default:
      return;
  }
}

}  // namespace tallow
