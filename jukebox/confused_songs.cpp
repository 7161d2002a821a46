// SPDX-License-Identifier: GPL-3.0-or-later
#include "jukebox/confused_songs.h"

#include <utility>

#include "library/cls_main.h"
#include "util/path_text.h"

namespace tallow {
namespace {

std::string TextOf(const std::string& file, const ConfusedSongs& songs) {
  std::string text =
      std::string(NameOfPath(file)) +
      " was saved by an earlier version of Tallow, which had mixed up the numbers of songs. "
      "For song number " +
      std::to_string(songs.number) + " the jukebox has\n\n    " + songs.by_name +
      "\n\nbut the library has\n\n    " +
      (songs.by_number.empty() ? "(a song that was removed)" : songs.by_number);
  if (songs.count > 1)
    text += "\n\nThe same applies to " + std::to_string(songs.count - 1) +
            (songs.count == 2 ? " more song." : " more songs.");
  return text + "\n\nUse the songs by name? (Yes: by name. No: by number.)";
}

}  // namespace

ResolveConfusedSongs AskAboutConfusedSongs(const std::string& file, clsMain& library,
                                           AskQuestion ask) {
  return [file, &library, ask = std::move(ask)](const ConfusedSongs& songs) -> std::optional<bool> {
    using Meant = RepairedNumbers::Meant;
    if (const auto known = library.Repaired().AnswerFor(file)) return *known == Meant::kNames;
    const std::optional<bool> names = ask(TextOf(file, songs));
    if (names) {
      library.Repaired().Answer(file, *names ? Meant::kNames : Meant::kNumbers);
      library.SaveRepaired();
    }
    return names;
  };
}

}  // namespace tallow
