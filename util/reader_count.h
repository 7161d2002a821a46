// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <chrono>
#include <cstddef>

namespace tallow {

/// Decides how many threads read from a disk at the same time.
///
/// A cold or distant disk answers many requests in the time of one, and a warm cache answers none
/// faster than the cores can ask. The count therefore begins at what suits the cores. It is doubled
/// up to kMost while calls take longer than a limit and the readers have enough to do. A growth
/// that does not raise the throughput by a tenth is taken back, and not tried again for some time.
/// When calls are quick again, the count falls back in steps to the initial one.
///
/// The calls are judged in windows of several calls for each reader, and of more than one turn of
/// it: a turn is what a reader adds at once. The object has no threads, no lock and no clock of its
/// own.
class ReaderCount {
 public:
  using Clock = std::chrono::steady_clock;

  /// Maximum number of readers; with more, the throughput of the disks measured hardly rises.
  static constexpr unsigned kMost = 32;
  /// A call that takes longer waits for a disk or a network. A call on cached data takes a few
  /// microseconds; one that reads from a fast disk takes about 60 on average, and there 16 to 32
  /// readers are three times as fast as two.
  static constexpr std::chrono::microseconds kSlowCall{30};
  /// The same for calls that each read and parse a whole file, which takes the processor up to
  /// 0.1 ms.
  static constexpr std::chrono::microseconds kSlowFile{200};

  /// What is known about the calls.
  enum class Pace {
    kUnknown,  ///< too few calls were added
    kQuick,
    kSlow,  ///< the calls of the last window took longer than `slow_call` on average
  };

  /// \param initial   the number of readers to begin with, which is also the fewest
  /// \param slow_call the mean duration up to which calls are quick
  explicit ReaderCount(unsigned initial, std::chrono::microseconds slow_call = kSlowCall) noexcept
      : initial_(initial), slow_call_(slow_call), wanted_(initial) {}

  /// The number of readers to use now.
  unsigned Wanted() const noexcept { return wanted_; }
  Pace CurrentPace() const noexcept { return pace_; }
  bool IsSlow() const noexcept { return pace_ == Pace::kSlow; }

  /// Adds calls that one reader has made one after another.
  ///
  /// \param begin when the first of them began
  /// \param end   when the last of them ended; ends are added in about their order
  void Add(Clock::time_point begin, Clock::time_point end, std::size_t calls = 1) noexcept;

  /// Limits the number of readers, because the system cannot create another thread.
  void LimitTo(unsigned most) noexcept;

 private:
  /// Calls and turns per reader in a window, and the least number of calls in a window.
  static constexpr std::size_t kCallsPerReader = 4;
  static constexpr std::size_t kTurnsPerReader = 2;
  static constexpr std::size_t kLeastCalls = 16;
  /// Windows until a growth that did not help is tried again; doubled each time.
  static constexpr unsigned kFirstPause = 8;
  static constexpr unsigned kLongestPause = 256;

  using Seconds = std::chrono::duration<double>;

  void BeginWindow(Clock::time_point now) noexcept;
  void JudgeWindow(Clock::time_point now) noexcept;
  bool KeepsGrowth(double rate, double use) noexcept;
  void Grow(double rate) noexcept;

  const unsigned initial_;
  const std::chrono::microseconds slow_call_;
  unsigned wanted_;
  unsigned most_ = kMost;
  Pace pace_ = Pace::kUnknown;

  // The current window.
  bool has_begun_ = false;
  Clock::time_point begin_;
  std::size_t calls_ = 0;
  std::size_t turns_ = 0;
  Clock::duration busy_{0};  ///< sum of the calls' durations
  std::size_t skipped_ = 0;  ///< turns still to ignore, because they began before the last change

  // The last growth.
  bool is_on_trial_ = false;
  unsigned before_ = 0;     ///< the number of readers before it
  double rate_before_ = 0;  ///< the calls per second before it
  unsigned pause_ = 0;      ///< windows until the next growth
  unsigned next_pause_ = kFirstPause;
};

}  // namespace tallow
