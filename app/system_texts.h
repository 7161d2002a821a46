// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <string_view>

#include "util/atomic_file.h"
#include "util/path_text.h"

namespace tallow {

/// The end of every offer to recreate a file.
inline constexpr std::string_view kContinueQuestion =
    "\n\nContinue? (No exits Tallow and changes nothing.)";

/// The sentence in such an offer that says where the damaged file is kept.
inline std::string BackupSentence(const std::string& path) {
  return " The damaged file is kept as " + std::string(NameOfPath(path)) +
         std::string(kBackupSuffix) + " beside it.";
}

}  // namespace tallow
