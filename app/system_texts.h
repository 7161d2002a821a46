// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <string_view>

#include "util/atomic_file.h"
#include "util/path_text.h"

namespace tallow {

/// How every offer to make a file anew ends.
inline constexpr std::string_view kGoOn = "\n\nGo on? (No leaves Tallow and changes nothing.)";

/// What an offer to make a file anew says about the damaged one.
inline std::string KeptAs(const std::string& path) {
  return " The damaged file is kept as " + std::string(NameOfPath(path)) +
         std::string(kBackupSuffix) + " beside it.";
}

}  // namespace tallow
