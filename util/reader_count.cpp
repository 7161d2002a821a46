// SPDX-License-Identifier: GPL-3.0-or-later
#include "util/reader_count.h"

#include <algorithm>

namespace tallow {
namespace {

/// The throughput has to rise by this factor for a growth to be kept.
constexpr double kLeastGain = 1.1;

/// Readers that are busy for a smaller share of the time do not have enough to do, so more of them
/// would not help.
constexpr double kBusyEnough = 0.75;

/// A growth is not judged while the readers are busy for a smaller share of the time.
constexpr double kTooIdleToJudge = 0.5;

}  // namespace

void ReaderCount::Add(Clock::time_point begin, Clock::time_point end, std::size_t calls) noexcept {
  if (!has_begun_) BeginWindow(begin);
  if (skipped_ > 0) {
    if (--skipped_ == 0) BeginWindow(end);
    return;
  }
  calls_ += calls;
  ++turns_;
  busy_ += end - begin;
  if (calls_ >= std::max(kLeastCalls, kCallsPerReader * wanted_) &&
      turns_ >= kTurnsPerReader * wanted_)
    JudgeWindow(end);
}

void ReaderCount::LimitTo(unsigned most) noexcept {
  most_ = most;
  wanted_ = std::min(wanted_, most_);
  is_on_trial_ = false;
}

void ReaderCount::BeginWindow(Clock::time_point now) noexcept {
  has_begun_ = true;
  begin_ = now;
  calls_ = 0;
  turns_ = 0;
  busy_ = {};
}

void ReaderCount::JudgeWindow(Clock::time_point now) noexcept {
  const Seconds elapsed = std::max(Seconds(now - begin_), Seconds(1e-9));
  const Clock::duration mean = busy_ / static_cast<std::ptrdiff_t>(calls_);
  const double rate = static_cast<double>(calls_) / elapsed.count();
  const double use = Seconds(busy_) / elapsed / std::max(wanted_, 1U);
  BeginWindow(now);
  if (pause_ > 0) --pause_;
  pace_ = mean > slow_call_ ? Pace::kSlow : Pace::kQuick;
  if (mean <= slow_call_ / 2 && wanted_ > initial_) {
    is_on_trial_ = false;
    wanted_ = std::max(initial_, wanted_ / 2);
  } else if (KeepsGrowth(rate, use) && IsSlow() && use >= kBusyEnough && pause_ == 0 &&
             wanted_ < most_) {
    Grow(rate);
  }
}

/// \returns false when the last growth was taken back, or cannot be judged yet
bool ReaderCount::KeepsGrowth(double rate, double use) noexcept {
  if (!is_on_trial_) return true;
  if (rate >= rate_before_ * kLeastGain) {
    is_on_trial_ = false;
    next_pause_ = kFirstPause;
    return true;
  }
  if (use < kTooIdleToJudge) return false;
  is_on_trial_ = false;
  skipped_ = wanted_;
  wanted_ = before_;
  pause_ = next_pause_;
  next_pause_ = std::min(2 * next_pause_, kLongestPause);
  return false;
}

void ReaderCount::Grow(double rate) noexcept {
  is_on_trial_ = true;
  before_ = wanted_;
  rate_before_ = rate;
  skipped_ = wanted_;
  wanted_ = std::min(2 * wanted_, most_);
}

}  // namespace tallow
