// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <chrono>
#include <cstddef>
#include <functional>

namespace tallow {

/// What to do about an answer of the disk that has not come yet.
enum class WaitDecision {
  kWait,
  kGiveUp,  ///< go on without it; the thread that waits for it is left alone
};

/// Is called again and again while an answer is waited for, see ReadAhead.
///
/// \param i      the number of the question
/// \param waited since the question was put
using WhileWaiting = std::function<WaitDecision(std::size_t i, std::chrono::milliseconds waited)>;

}  // namespace tallow
