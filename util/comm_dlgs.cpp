// SPDX-License-Identifier: GPL-3.0-or-later
#include "util/comm_dlgs.h"

namespace tallow {

bool FileExistsCheck(const std::string& path, const ShowMessage& show) {
  const std::optional<FileProblem> problem = ProblemOfFileDate(path);
  if (!problem) return true;
  if (problem->absent) return false;
  show({.text = "Error Number: " + std::to_string(problem->number) + "\n" + problem->text,
        .title = "Error"});
  return true;
}

}  // namespace tallow
