// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/tallow.h"

#include <utility>

#include "app/data_paths.h"
#include "app/search/system_volumes.h"
#include "details/details_store.h"

namespace tallow {

Tallow::Tallow(std::string application_folder_)
    : application_folder(std::move(application_folder_)),
      settings_path(SettingsPath(application_folder)),
      library(library_settings_),
      details(SystemFolder(application_folder) + std::string(kDetailsFileName)),
      play_counts(GroupingFolder(application_folder)),
      unsaved(SystemFolder(application_folder)),
      open_jukeboxes(SystemFolder(application_folder)) {
  details.Use(library);
  library.UseDrives(SystemVolumes, {}, SystemWalkLimits());
}

void Tallow::SaveSettings() {
  const std::string problem = settings.Save(settings_path);
  if (std::exchange(settings_problem_, problem) == problem || problem.empty()) return;
  AddProblem("The settings could not be saved. " + problem +
             ". Free some disk space, or make the file writable.");
}

std::vector<std::string> Tallow::TakeProblems() {
  std::vector<std::string> problems = std::exchange(problems_, {});
  for (std::string& problem : preferences.TakeProblems()) problems.push_back(std::move(problem));
  return problems;
}

std::string Tallow::SettingsOfLibrary::LocOfGroupingDir() const {
  return tallow_.settings.LocOfGroupingDir();
}

std::string Tallow::SettingsOfLibrary::SystemFolder() const {
  return tallow::SystemFolder(tallow_.application_folder);
}

std::string Tallow::SettingsOfLibrary::FileContainingTargetDirectories() const {
  return tallow_.settings.FileContainingTargetDirectories();
}

std::int32_t Tallow::SettingsOfLibrary::NumerOfRecordsInTheMain() const {
  return tallow_.settings.NumerOfRecordsInTheMain();
}

void Tallow::SettingsOfLibrary::NumerOfRecordsInTheMain(std::int32_t rows) {
  tallow_.settings.NumerOfRecordsInTheMain(rows);
}

void Tallow::SettingsOfLibrary::SaveSettings() { tallow_.SaveSettings(); }

}  // namespace tallow
