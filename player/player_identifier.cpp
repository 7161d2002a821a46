// SPDX-License-Identifier: GPL-3.0-or-later
#include "player/player_identifier.h"

#include <cinttypes>
#include <cstdio>
#define XXH_INLINE_ALL
#include <xxhash.h>

#include "util/path_text.h"

namespace tallow {

std::string PlayerIdentifier(const std::string& application_folder) {
  const std::string key = PathKey(application_folder);
  const XXH64_hash_t sum = XXH3_64bits(key.data(), key.size());
  char digits[17];
  std::snprintf(digits, sizeof digits, "%016" PRIx64, std::uint64_t{sum});
  return digits;
}

}  // namespace tallow
