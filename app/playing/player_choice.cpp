// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/playing/player_choice.h"

#include <algorithm>

#include "app/search/player_search.h"
#include "app/tallow.h"
#include "util/file_system.h"
#include "util/path_text.h"
#include "util/text.h"

namespace tallow {

PlayerKind KindOfPlayer(std::string_view program) {
  const std::string name = ToLower(NameOfPath(program));
  const bool is_own = name == "tallow-player" || name == "tallow-player.exe";
  return is_own ? PlayerKind::kTallowPlayer : PlayerKind::kWinamp;
}

std::vector<std::string> PlayersToChooseFrom(const Tallow& tallow, const std::string& own,
                                             const std::vector<std::string>& winamps) {
  std::vector<std::string> programs;
  const auto add = [&programs](const std::string& program) {
    const bool is_new = std::ranges::none_of(
        programs, [&program](const std::string& other) { return IsSamePathText(program, other); });
    if (!program.empty() && is_new) programs.push_back(program);
  };
  add(own);
  for (const std::string& winamp : winamps) add(winamp);
  add(tallow.player_path);
  return programs;
}

std::string ChoosePlayer(Tallow& tallow, const std::string& program) {
  if (program.empty()) return "No program was named.";
  if (!IsAbsolutePath(program))
    return program + " is not a full path. A full path begins with a drive or with " + kSeparator +
           ".";
  // The settings file holds one path per line.
  if (HasLineBreak(program)) return "The path has a line break, so it cannot be stored.";
  if (!FileExists(program)) return "There is no program " + program + ".";
  const std::string player = PlayerAt(program);
  if (player.empty()) return program + " is not a program that you may run.";
  tallow.player_path = player;
  tallow.player_search_is_pending = false;
  tallow.settings.LocOfWinAmpExe(player);
  tallow.SaveSettings();
  return {};
}

}  // namespace tallow
