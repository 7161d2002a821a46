// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "details/details_table.h"

namespace tallow {

/// Reads the stored details of many songs on a thread of its own, over a connection of its own, so
/// that neither the disk nor a DetailsStore that is committing makes its caller wait.
///
/// The database is read in parts, because a commit of the store waits for the part that is being
/// read. What was stored since the last commit is not read.
class AllRows {
 public:
  /// Starts to read.
  ///
  /// \param path  of the database
  /// \param paths of the songs to read; empty: all songs, in the order of their paths as bytes
  explicit AllRows(const std::string& path, std::vector<std::string> paths = {});
  AllRows(const AllRows&) = delete;
  AllRows& operator=(const AllRows&) = delete;
  /// Stops within 100 ms.
  ~AllRows();

  /// Receives the stored details of a file; the texts are valid during the call.
  using FoundRow = std::function<void(std::string_view path, const DetailsRow& row)>;

  enum class State { kReading, kComplete, kFailed };

  /// Hands out the rows that were read since the last call.
  ///
  /// \param until waits until then for the rest; in the past: does not wait
  /// \returns kComplete after the last row; kFailed if the database cannot be read, which
  ///          DetailsStore then repairs
  State Take(const FoundRow& found, std::chrono::steady_clock::time_point until);

 private:
  struct Shared;
  std::shared_ptr<Shared> shared_;
};

}  // namespace tallow
