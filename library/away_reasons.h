// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "library/scan_report.h"
#include "library/song_table.h"

namespace tallow {

/// Why songs are away. A reason is stored once, and SongFacts::away of its songs is its number,
/// from 1. Reasons are kept until the program ends.
class AwayReasons {
 public:
  /// Returns the number of a reason; adds the reason when it is new.
  ///
  /// \param place   the drive's root, or the folder
  /// \param problem see AwayPlace
  std::uint32_t NumberOf(AwayKind kind, std::string_view place, std::string_view problem = {});

  /// Whether no song has been away since the start.
  bool IsEmpty() const noexcept { return reasons_.empty(); }

  /// Whether a reason is a drive that is away; false for the number 0.
  bool IsDrive(std::uint32_t number) const {
    return number != 0 && reasons_[number - 1].kind == AwayKind::kDrive;
  }

  /// The message for a song that is away.
  ///
  /// \param number of the reason, not 0
  /// \param name   of the song's file
  std::string TextOf(std::uint32_t number, std::string_view name) const;

  /// The drives and folders whose songs are away, with the number of songs, sorted by place.
  std::vector<AwayPlace> Places(const SongTable& table) const;

  /// The rows of the songs that are away with a place, in ascending order.
  std::vector<std::int32_t> RowsAt(std::string_view place, const SongTable& table) const;

 private:
  struct Reason {
    AwayKind kind;
    std::string place;
    std::string problem;
    bool operator==(const Reason&) const = default;
  };
  std::vector<Reason> reasons_;
};

}  // namespace tallow
