// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string>
#include <string_view>

namespace tallow {

/// What a JSON file of this program names first, so that no other file is taken for it.
struct JsonFileFormat {
  std::string_view name;
  int version;
};

/// The first members of a file, without the closing bracket: {"format":"...","version":1
std::string BeginJsonFile(const JsonFileFormat& format);

/// Parses a file, or the first line of one.
/// \throws std::exception when it is damaged, lacks these members, or has another format or version
nlohmann::json ParseJsonFile(std::string_view bytes, const JsonFileFormat& format);

}  // namespace tallow
