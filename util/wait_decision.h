// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <chrono>
#include <cstddef>
#include <functional>

namespace tallow {

/// What to do while the disk has not answered yet.
enum class WaitDecision {
  kWait,
  kGiveUp,  ///< continue without the answer; the worker thread is abandoned
};

/// Callback, called repeatedly while an answer is outstanding, see ReadAhead.
///
/// \param i      the number of the question
/// \param waited time since the question was started
using WhileWaiting = std::function<WaitDecision(std::size_t i, std::chrono::milliseconds waited)>;

}  // namespace tallow
