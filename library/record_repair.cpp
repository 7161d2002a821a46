// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/record_repair.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <string_view>
#include <utility>

#include "util/json_file.h"
#include "util/json_text.h"
#include "util/number.h"

namespace tallow {
namespace {

constexpr JsonFileFormat kFormat = {"Tallow repaired numbers", 1};

bool IsMissingRow(const SongTable& table, std::int32_t row) {
  return NumericValue(table.Cell(kFileIsThere, row)) == 0;
}

SongTable InPlaces(const SongTable& table, const std::vector<std::size_t>& places) {
  SongTable repaired;
  repaired.Resize(static_cast<std::int32_t>(places.size()));
  for (std::int32_t row = 1; row <= repaired.rows(); ++row) {
    const std::size_t from = places[static_cast<std::size_t>(row - 1)];
    if (from == kNoRecord) {
      BlankSong(repaired, row);
      repaired.SetCell(kSongRank, row, kUnranked);
    } else {
      const auto old_row = static_cast<std::int32_t>(from) + 1;
      for (std::int16_t column = 1; column <= kSongColumns; ++column)
        repaired.SetCell(column, row, table.Cell(column, old_row));
      repaired.Facts(row) = table.Facts(old_row);
    }
    repaired.SetCell(kRecordNumber, row, std::to_string(row));
  }
  return repaired;
}

}  // namespace

std::vector<std::size_t> PlacesByNumber(std::span<const std::int32_t> numbers,
                                        const std::vector<char>& present, std::int32_t max_number) {
  std::int32_t count = 0;
  for (const std::int32_t number : numbers)
    if (number <= max_number) count = std::max(count, number);
  std::vector<std::size_t> places(static_cast<std::size_t>(count), kNoRecord);
  std::vector<std::size_t> others;
  for (std::size_t k = 0; k < numbers.size(); ++k) {
    if (numbers[k] < 1 || numbers[k] > max_number) {
      others.push_back(k);
      continue;
    }
    std::size_t& place = places[static_cast<std::size_t>(numbers[k] - 1)];
    if (place == kNoRecord)
      place = k;
    else if (present[k] && !present[place])
      others.push_back(std::exchange(place, k));
    else
      others.push_back(k);
  }
  places.insert(places.end(), others.begin(), others.end());
  return places;
}

std::optional<std::vector<ConfusedNumber>> RepairNumbers(SongTable& table,
                                                         std::int32_t max_number) {
  std::vector<std::int32_t> rows;  // rows with a song
  std::vector<std::int32_t> numbers;
  std::vector<char> present;
  bool is_right = true;
  for (std::int32_t row = 1; row <= table.rows(); ++row) {
    const std::int32_t number = TryConvertToInt32(table.Cell(kRecordNumber, row)).value_or(0);
    is_right = is_right && number == row;
    if (number <= 0 && table.Cell(kFileName, row).empty()) continue;
    rows.push_back(row);
    numbers.push_back(number);
    present.push_back(!IsMissingRow(table, row));
  }
  if (is_right) return std::nullopt;

  std::vector<std::size_t> places = PlacesByNumber(numbers, present, max_number);
  std::vector<std::int32_t> now(static_cast<std::size_t>(table.rows()) + 1);
  for (std::size_t k = 0; k < places.size(); ++k) {
    if (places[k] == kNoRecord) continue;
    const std::int32_t row = rows[places[k]];
    now[static_cast<std::size_t>(row)] = static_cast<std::int32_t>(k + 1);
    places[k] = static_cast<std::size_t>(row - 1);
  }
  SongTable repaired = InPlaces(table, places);
  std::vector<ConfusedNumber> confused;
  for (std::int32_t row = 1; row <= std::min(table.rows(), repaired.rows()); ++row) {
    const std::string_view held = table.Cell(kFileName, row);
    const std::string_view named = repaired.Cell(kFileName, row);
    if (held == named || IsMissingRow(table, row)) continue;
    confused.push_back({row, IsMissingRow(repaired, row) ? std::string() : std::string(named),
                        std::string(held), now[static_cast<std::size_t>(row)]});
  }
  table = std::move(repaired);
  return confused;
}

void RepairedNumbers::Set(const std::vector<ConfusedNumber>& numbers) {
  numbers_.clear();
  answers_.clear();
  for (const ConfusedNumber& number : numbers) numbers_[number.number] = number;
  is_dirty_ = true;
}

const ConfusedNumber* RepairedNumbers::Find(std::int32_t number) const {
  const auto found = numbers_.find(number);
  return found != numbers_.end() ? &found->second : nullptr;
}

std::optional<RepairedNumbers::Meant> RepairedNumbers::AnswerFor(const std::string& file) const {
  const auto found = answers_.find(file);
  return found != answers_.end() ? std::optional(found->second) : std::nullopt;
}

void RepairedNumbers::Answer(const std::string& file, Meant meant) {
  answers_[file] = meant;
  is_dirty_ = true;
}

void RepairedNumbers::Clear() {
  if (numbers_.empty() && answers_.empty()) return;
  numbers_.clear();
  answers_.clear();
  is_dirty_ = true;
}

std::string RepairedNumbers::Encode() const {
  std::string bytes = BeginJsonFile(kFormat) + ",\n\"numbers\":[";
  const char* separator = "\n";
  for (const auto& [number, confused] : numbers_) {
    bytes += std::exchange(separator, ",\n");
    bytes += "{\"number\":" + std::to_string(number) + ",\"named\":";
    AppendJsonText(bytes, confused.named);
    bytes += ",\"held\":";
    AppendJsonText(bytes, confused.held);
    bytes += ",\"heldNow\":" + std::to_string(confused.held_now) + "}";
  }
  bytes += "],\n\"answers\":{";
  separator = "\n";
  for (const auto& [file, meant] : answers_) {
    bytes += std::exchange(separator, ",\n");
    AppendJsonText(bytes, file);
    bytes += meant == Meant::kNames ? ":\"names\"" : ":\"numbers\"";
  }
  return bytes + "}}\n";
}

void RepairedNumbers::Decode(const std::string& bytes) {
  const auto root = ParseJsonFile(bytes, kFormat);
  std::map<std::int32_t, ConfusedNumber> numbers;
  for (const auto& member : root.at("numbers")) {
    const auto number = member.at("number").get<std::int32_t>();
    numbers[number] = {number, BytesOfJsonText(member.at("named").get<std::string>()),
                       BytesOfJsonText(member.at("held").get<std::string>()),
                       member.at("heldNow").get<std::int32_t>()};
  }
  std::map<std::string, Meant> answers;
  for (const auto& [file, meant] : root.at("answers").items())
    answers[BytesOfJsonText(file)] = meant == "names" ? Meant::kNames : Meant::kNumbers;
  numbers_ = std::move(numbers);
  answers_ = std::move(answers);
  is_dirty_ = false;
}

}  // namespace tallow
