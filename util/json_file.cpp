// SPDX-License-Identifier: GPL-3.0-or-later
#include "util/json_file.h"

#include <nlohmann/json.hpp>
#include <stdexcept>

#include "util/json_text.h"

namespace tallow {

std::string BeginJsonFile(const JsonFileFormat& format) {
  std::string bytes = "{\"format\":";
  AppendJsonText(bytes, format.name);
  return bytes + ",\"version\":" + std::to_string(format.version);
}

nlohmann::json ParseJsonFile(std::string_view bytes, const JsonFileFormat& format) {
  nlohmann::json root = nlohmann::json::parse(bytes);
  if (root.at("format") != format.name || root.at("version") != format.version)
    throw std::runtime_error("it was written by another program or a newer Tallow");
  return root;
}

}  // namespace tallow
