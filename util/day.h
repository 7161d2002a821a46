// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <chrono>
#include <cstdint>

namespace tallow {

/// The current day, in days since 1970-01-01 (UTC).
inline std::int32_t Today() {
  const auto since = std::chrono::system_clock::now().time_since_epoch();
  return static_cast<std::int32_t>(std::chrono::duration_cast<std::chrono::days>(since).count());
}

}  // namespace tallow
