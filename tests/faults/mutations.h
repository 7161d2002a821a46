// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

namespace tallow {

/// Which damaged files are tested.
struct MutationChoice {
  int of_each = 100;    ///< number of damaged files of each kind
  bool big = false;     ///< also tests files of 2 GiB, which are sparse
  std::string of_case;  ///< runs only cases whose names contain this
  int jobs = 2;         ///< maximum number of processes
};

/// Randomly damages each kind of file that the program reads, uses the program, and checks what
/// happens to the file. Prints the losses and a table.
///
/// \param folder for the worlds; ends in a separator
/// \returns whether nothing was lost
bool RunMutations(const std::string& folder, const MutationChoice& choice);

}  // namespace tallow
