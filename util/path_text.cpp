// SPDX-License-Identifier: GPL-3.0-or-later
#include "util/path_text.h"

#include <vector>

#include "util/text.h"

namespace tallow {

std::string EnsureTrailingBackslash(std::string_view path) {
  std::string result(path);
  if (result.empty() || result.back() != kSeparator) result += kSeparator;
  return result;
}

std::string FileTitleWithoutExtension(std::string_view path) {
  constexpr std::size_t kExtensionCharacters = 4;
  const std::string_view name = NameOfPath(Trim(path));
  std::vector<std::size_t> starts;
  for (std::size_t i = 0; i < name.size(); NextCharacter(name, i)) starts.push_back(i);
  if (starts.size() <= kExtensionCharacters) return {};
  return std::string(name.substr(0, starts[starts.size() - kExtensionCharacters]));
}

std::string_view FolderOfPath(std::string_view path) noexcept {
  const std::size_t last = path.rfind(kSeparator);
  return last == std::string_view::npos ? std::string_view() : path.substr(0, last + 1);
}

std::string_view ShareOfPath(std::string_view path) noexcept {
  constexpr std::string_view kBeginning = "\\\\";
  if (!path.starts_with(kBeginning)) return {};
  const std::size_t server_end = path.find('\\', kBeginning.size());
  if (server_end == std::string_view::npos) return {};
  const std::size_t share_end = path.find('\\', server_end + 1);
  return share_end == std::string_view::npos ? std::string_view() : path.substr(0, share_end + 1);
}

std::string_view NameOfPath(std::string_view path) noexcept {
  return path.substr(FolderOfPath(path).size());
}

bool HasLineBreak(std::string_view text) noexcept {
  return text.find_first_of("\r\n") != std::string_view::npos;
}

}  // namespace tallow
