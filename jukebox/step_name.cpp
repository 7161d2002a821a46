// SPDX-License-Identifier: GPL-3.0-or-later
#include "jukebox/step_name.h"

#include <cstdint>

#include "util/number.h"

namespace tallow {

std::string NameOfSongStep(std::string_view verb, std::size_t songs) {
  const std::string name(verb);
  if (songs == 1) return name + " Song";
  return name + " " + GroupedNumber(static_cast<std::int64_t>(songs)) + " Songs";
}

}  // namespace tallow
