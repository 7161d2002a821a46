// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <chrono>
#include <cstdint>

namespace tallow {

/// Finds out when a song counts as played: when half of it or four minutes were heard. Jumping to a
/// later position counts nothing.
class HeardTime {
 public:
  using Time = std::chrono::steady_clock::time_point;

  static constexpr std::chrono::milliseconds kEnough = std::chrono::minutes(4);

  /// An entry of the player's list. Another list may number its entries alike.
  struct Entry {
    std::uint64_t list = 0;   ///< see HandedOverSongs::Generation
    std::uint64_t entry = 0;  ///< 0 for none

    friend bool operator==(const Entry&, const Entry&) = default;
  };

  /// What the player does now. To be called a few times a second.
  ///
  /// \param entry    that plays or is paused
  /// \param position in ms; negative when unknown
  /// \param length   in ms; 0 or less when unknown, four minutes then have to be heard
  /// \returns whether the song of the entry counts as played from now on: once for each time that
  ///          it plays, also when it is repeated
  bool Update(const Entry& entry, std::int64_t position, std::int64_t length, Time now);

 private:
  void Begin(const Entry& entry);

  Entry entry_;
  std::int64_t position_ = -1;  ///< at the last call
  std::int64_t length_ = 0;     ///< at the last call
  Time last_;                   ///< of the last call
  std::chrono::milliseconds heard_{0};
  bool is_counted_ = false;
};

}  // namespace tallow
