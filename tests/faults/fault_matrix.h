// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

namespace tallow {

/// Which cases of the fault matrix are run.
struct MatrixChoice {
  int every = 1;          ///< runs only every n-th case
  std::string scenario;   ///< runs only this scenario; empty: all
  std::string of_case;    ///< runs only cases whose names contain this
  int jobs = 2;           ///< maximum number of processes
  bool markdown = false;  ///< prints the tables in the form of docs/reliability.md
};

/// Fails every call of every scenario once in every way, and checks after each failure what the
/// next start finds. Prints the losses and a table.
///
/// \param folder for the worlds; ends in a separator
/// \returns whether nothing was lost
bool RunFaultMatrix(const std::string& folder, const MatrixChoice& choice);

}  // namespace tallow
