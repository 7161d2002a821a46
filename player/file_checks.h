// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "library/cls_main.h"
#include "util/comm_dlgs.h"
#include "util/message.h"

namespace tallow {

/// Result of checking a file before it is handed over.
struct FileAnswer {
  bool answered = true;  ///< false when the disk does not answer
  std::optional<FileProblem> problem;
};

/// Checks the files of songs on worker threads and passes the results to a callback, in song order.
/// \param go_on see clsMain::WaitingFor; may be empty
/// \throws Stopped when `go_on` says so
void CheckFiles(
    std::span<const std::int32_t> songs, clsMain& library, const GoOn& go_on,
    const std::function<void(std::int32_t, const std::string&, const FileAnswer&)>& callback);

/// Evaluates the checks of the songs' files and collects the problems.
class FileChecks {
 public:
  /// Whether to hand over a song. Includes songs that cannot be read now, because this may be
  /// temporary.
  bool IsPlayable(const std::string& path, const FileAnswer& answer);

  /// The number of songs whose disk did not answer, and the first of them.
  std::size_t Unanswered() const noexcept { return unanswered_; }
  const std::string& FirstUnanswered() const noexcept { return first_unanswered_; }

  /// Shows the collected problems in one message.
  void ShowProblems(const ShowMessage& show) const;

 private:
  std::size_t unanswered_ = 0;
  std::string first_unanswered_;
  std::size_t count_ = 0;
  std::vector<std::pair<std::string, FileProblem>> problems_;
};

}  // namespace tallow
