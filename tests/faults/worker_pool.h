// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <functional>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

namespace tallow {

/// Runs one case in the world of a worker, and returns its result.
using DoCase = std::function<nlohmann::json(std::size_t number)>;

/// Runs cases in several processes. The caller must have no other threads.
///
/// \param folder  for the result files of the workers; ends in a separator
/// \param begin   called once in each worker with its number, from 0; makes the function that runs
///        its cases
/// \returns the results of the cases, in their order
/// \throws std::runtime_error when a worker fails
std::vector<nlohmann::json> DoCases(const std::string& folder, std::size_t cases, std::size_t jobs,
                                    const std::function<DoCase(std::size_t worker)>& begin);

}  // namespace tallow
