// SPDX-License-Identifier: GPL-3.0-or-later
#include "util/path_text.h"
#include "util/text.h"

namespace tallow {

constinit const char kSeparator = '\\';

std::string PathKey(std::string_view path) { return ToLower(path); }

std::string_view PathKeyView(std::string_view path, std::deque<std::string>& keys) {
  return keys.emplace_back(PathKey(path));
}

bool MayHaveOtherSpelling(std::string_view /*path*/) noexcept { return true; }

bool IsSamePathText(std::string_view path, std::string_view other) {
  return path == other || EqualsIgnoringCase(path, other);
}

bool IsAbsolutePath(std::string_view path) noexcept {
  if (path.starts_with(kSeparator)) return true;
  return path.size() >= 3 && path[1] == ':' && path[2] == kSeparator;
}

}  // namespace tallow
