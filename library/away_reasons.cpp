// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/away_reasons.h"

#include <cstddef>
#include <map>
#include <utility>

namespace tallow {

std::uint32_t AwayReasons::NumberOf(AwayKind kind, std::string_view place,
                                    std::string_view problem) {
  Reason reason{kind, std::string(place), std::string(problem)};
  // Search backwards: consecutive songs of a folder have the same reason.
  for (auto number = static_cast<std::uint32_t>(reasons_.size()); number > 0; --number)
    if (reasons_[number - 1] == reason) return number;
  reasons_.push_back(std::move(reason));
  return static_cast<std::uint32_t>(reasons_.size());
}

std::string AwayReasons::TextOf(std::uint32_t number, std::string_view name) const {
  const Reason& reason = reasons_[number - 1];
  const std::string song(name);
  switch (reason.kind) {
    case AwayKind::kDrive:
      return song + " is on a drive that is away: " + reason.place;
    case AwayKind::kFolder:
      return song + "'s folder cannot be read: " + reason.problem;
    case AwayKind::kKept:
      break;
  }
  return song + " was not found. Its entries and rank are kept, because " + reason.problem +
         " cannot be read.";
}

std::vector<AwayPlace> AwayReasons::Places(const SongTable& table) const {
  if (reasons_.empty()) return {};
  std::vector<std::int32_t> songs(reasons_.size());
  for (std::int32_t row = 1; row <= table.rows(); ++row)
    if (table.Facts(row).away != 0 && !table.IsSetAside(row)) ++songs[table.Facts(row).away - 1];
  std::map<std::string, AwayPlace> places;
  for (std::size_t k = 0; k < songs.size(); ++k)
    if (songs[k] > 0)
      places
          .emplace(reasons_[k].place,
                   AwayPlace{reasons_[k].place, reasons_[k].kind, reasons_[k].problem, 0})
          .first->second.songs += songs[k];
  std::vector<AwayPlace> result;
  for (auto& [name, place] : places) result.push_back(std::move(place));
  return result;
}

std::vector<std::int32_t> AwayReasons::RowsAt(std::string_view place,
                                              const SongTable& table) const {
  std::vector<std::int32_t> rows;
  for (std::int32_t row = 1; row <= table.rows(); ++row)
    if (table.Facts(row).away != 0 && !table.IsSetAside(row) &&
        reasons_[table.Facts(row).away - 1].place == place)
      rows.push_back(row);
  return rows;
}

}  // namespace tallow
