// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <chrono>
#include <cstddef>

namespace tallow {

/// Decides whether the progress of work is worth showing: when it takes more than kLong from now
/// on, at its speed until now.
class RemainingTime {
 public:
  using Time = std::chrono::steady_clock::time_point;

  static constexpr std::chrono::milliseconds kLong{2000};
  /// Before this time has passed, the speed is not known.
  static constexpr std::chrono::milliseconds kMeasure{500};

  explicit RemainingTime(Time begin) : begin_(begin) {}

  /// \param done, total numbers of equal parts of the work
  bool IsLong(std::size_t done, std::size_t total, Time now) const noexcept;

 private:
  Time begin_;
};

}  // namespace tallow
