// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/start/start_up_notices.h"

#include <utility>

#include "app/tallow.h"

namespace tallow {

void StartUpNotices::Add(std::string text) {
  AddProblemsOfSettings();
  notices_.push_back(std::move(text));
}

void StartUpNotices::Add(const std::vector<std::string>& texts) {
  for (const std::string& text : texts) Add(text);
}

void StartUpNotices::AddProblems() {
  AddProblemsOfSettings();
  for (std::string& problem : tallow_.library.TakeProblems())
    notices_.push_back(std::move(problem));
}

std::vector<std::string> StartUpNotices::TakeAll() {
  AddProblemsOfSettings();
  return std::exchange(notices_, {});
}

void StartUpNotices::AddProblemsOfSettings() {
  for (std::string& problem : tallow_.TakeProblems()) notices_.push_back(std::move(problem));
}

}  // namespace tallow
