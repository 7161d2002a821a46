// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

namespace tallow {

/// Which cases of the fault matrix are run.
struct MatrixChoice {
  int every = 1;          ///< every so-manieth case
  std::string scenario;   ///< only this one; empty: all
  std::string of_case;    ///< only cases whose names contain this
  int jobs = 2;           ///< processes at a time
  bool markdown = false;  ///< the tables are printed for docs/reliability.md
};

/// Fails every call of every scenario once, in every way, and looks after each what the next start finds.
/// Prints what was lost, and a table.
///
/// \param folder where the worlds are made; ends in a separator
/// \returns whether nothing was lost
bool RunFaultMatrix(const std::string& folder, const MatrixChoice& choice);

}  // namespace tallow
