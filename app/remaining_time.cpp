// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/remaining_time.h"

#include <algorithm>

namespace tallow {

bool RemainingTime::IsLong(std::size_t done, std::size_t total, Time now) const noexcept {
  const std::chrono::duration<double> elapsed = now - begin_;
  if (done >= total || elapsed < kMeasure) return false;
  const auto parts = static_cast<double>(std::max<std::size_t>(done, 1));
  return elapsed * (static_cast<double>(total - done) / parts) > kLong;
}

}  // namespace tallow
