// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/scan_report.h"

namespace tallow {
namespace {

/// Maximum number of places that are named; more do not fit on a line.
constexpr std::size_t kMaxPlaces = 3;

std::string NamesOf(const std::vector<AwayPlace>& places) {
  std::string names;
  for (std::size_t k = 0; k < places.size() && k < kMaxPlaces; ++k)
    names += (k > 0 ? ", " : "") + places[k].place;
  return places.size() > kMaxPlaces ? names + ", . . ." : names;
}

}  // namespace

std::string WaitingLine(std::string_view root) {
  return "Waiting for " + std::string(root) + ", which does not answer";
}

std::string TextOf(const ScanReport& report, bool always_new) {
  std::string text;
  const auto add = [&text](const std::string& part) { text += (text.empty() ? "" : ", ") + part; };
  const auto count = [](std::int32_t number, const char* one, const char* many) {
    return std::to_string(number) + (number == 1 ? one : many);
  };
  if (report.new_songs > 0 || always_new) add(count(report.new_songs, " new song", " new songs"));
  if (report.back > 0) add(count(report.back, " back with its rank", " back with their ranks"));
  if (report.missing > 0) add(std::to_string(report.missing) + " missing");
  std::int32_t away = 0;
  for (const AwayPlace& place : report.away) away += place.songs;
  if (away > 0) add(std::to_string(away) + " away (" + NamesOf(report.away) + ")");
  if (report.unread_folders > 0)
    add(count(report.unread_folders, " folder could not be read", " folders could not be read"));
  if (report.left_out_grew)
    add(std::to_string(report.left_out) + " skipped because a song with that file name exists");
  return text;
}

}  // namespace tallow
