// SPDX-License-Identifier: GPL-3.0-or-later
#include "util/path_text.h"

namespace tallow {

constinit const char kSeparator = '/';

std::string PathKey(std::string_view path) { return std::string(path); }

std::string_view PathKeyView(std::string_view path, std::deque<std::string>& /*keys*/) {
  return path;
}

bool MayHaveOtherSpelling(std::string_view /*path*/) noexcept { return false; }

bool IsSamePathText(std::string_view path, std::string_view other) { return path == other; }

bool IsAbsolutePath(std::string_view path) noexcept { return path.starts_with(kSeparator); }

}  // namespace tallow
