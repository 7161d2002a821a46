// SPDX-License-Identifier: GPL-3.0-or-later
#include <cstdlib>
#include <memory>
#include <pwd.h>
#include <unistd.h>

#include "util/path_text.h"
#include "util/user_folders.h"

namespace tallow {

std::string UserDataFolder() {
  // The XDG base directory rules require ignoring a relative path.
  const char* const data = std::getenv("XDG_DATA_HOME");
  if (data != nullptr && data[0] == '/') return EnsureTrailingBackslash(data);
  const std::string home = HomeFolder();
  return home.empty() ? std::string() : home + ".local/share/";
}

std::string HomeFolder() {
  const char* home = std::getenv("HOME");
  if (home == nullptr || home[0] != '/') {
    const passwd* const user = getpwuid(getuid());
    home = user == nullptr ? nullptr : user->pw_dir;
  }
  return home == nullptr ? std::string() : EnsureTrailingBackslash(home);
}

std::string ExecutablePath() {
  const std::unique_ptr<char, decltype(&std::free)> path(realpath("/proc/self/exe", nullptr),
                                                         &std::free);
  return path ? std::string(path.get()) : std::string();
}

}  // namespace tallow
