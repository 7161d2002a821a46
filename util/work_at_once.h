// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <functional>
#include <span>
#include <vector>

namespace tallow {

/// Runs functions at the same time, each on a thread of its own, the last on the calling thread.
/// If the system cannot create threads, they run one after another.
///
/// Returns when all have ended. If some throw, the others still run to their end; then the first of
/// the exceptions is thrown here, in the order of the functions.
void WorkAtOnce(std::span<const std::function<void()>> works);

/// The beginnings and ends of parts of equal size, one for each processor core.
///
/// \param size    of the whole
/// \param min_part a part has at least this size, unless it is the only one
/// \returns the first element is 0, the last is `size`
std::vector<std::size_t> PartsForCores(std::size_t size, std::size_t min_part);

}  // namespace tallow
