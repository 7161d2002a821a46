// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <functional>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

namespace tallow {

/// Does one case in the world of a worker, and says what it came to.
using DoCase = std::function<nlohmann::json(std::size_t number)>;

/// Does cases in several processes. The caller must have no other threads.
///
/// \param folder  where the workers leave their results; ends in a separator
/// \param begin   makes what a worker does, once in each; takes the number of the worker, from 0
/// \returns what each case came to, in their order
/// \throws std::runtime_error when a worker does not come to its end
std::vector<nlohmann::json> DoCases(const std::string& folder, std::size_t cases, std::size_t jobs,
                                    const std::function<DoCase(std::size_t worker)>& begin);

}  // namespace tallow
