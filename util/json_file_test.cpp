// SPDX-License-Identifier: GPL-3.0-or-later
#include "util/json_file.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <stdexcept>

namespace tallow {
namespace {

constexpr JsonFileFormat kFormat = {"Tallow \"tests\"", 2};

TEST(JsonFile, NamesItsFormatAndVersionFirst) {
  EXPECT_EQ(BeginJsonFile(kFormat), R"({"format":"Tallow \"tests\"","version":2)");
  EXPECT_EQ(ParseJsonFile(BeginJsonFile(kFormat) + ",\"a\":1}", kFormat).at("a"), 1);
}

TEST(JsonFile, OfAnotherFormatOrVersionIsNotRead) {
  for (const JsonFileFormat other : {JsonFileFormat{"Tallow", 2}, JsonFileFormat{kFormat.name, 3}})
    try {
      ParseJsonFile(BeginJsonFile(other) + "}", kFormat);
      ADD_FAILURE() << other.name << ' ' << other.version;
    } catch (const std::runtime_error& error) {
      EXPECT_STREQ(error.what(), "it was written by another program or a newer Tallow");
    }
}

TEST(JsonFile, ThatIsDamagedIsNotRead) {
  for (const char* const bytes :
       {"", "{", "[]", "7", R"({"version":2})", R"({"format":"Tallow \"tests\""})"})
    EXPECT_THROW(ParseJsonFile(bytes, kFormat), std::exception) << bytes;
}

}  // namespace
}  // namespace tallow
