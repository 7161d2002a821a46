// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

namespace tallow {

/// Which damaged files are tried.
struct MutationChoice {
  int of_each = 100;    ///< how many of each kind of file
  bool big = false;     ///< also files of 2 GiB, which are sparse
  std::string of_case;  ///< only cases whose names contain this
  int jobs = 2;         ///< processes at a time
};

/// Damages each kind of file that the program reads at random, uses the program, and looks what became of
/// it. Prints what was lost, and a table.
///
/// \param folder where the worlds are made; ends in a separator
/// \returns whether nothing was lost
bool RunMutations(const std::string& folder, const MutationChoice& choice);

}  // namespace tallow
