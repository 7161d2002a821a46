// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <string>

namespace tallow {

/// A process, so that another one can tell later whether it still runs.
struct ProcessName {
  std::string host;  ///< the computer's name
  std::string
      machine;  ///< the system's own identification of the computer; empty where it has none
  /// What the numbers of processes belong to: on Linux one run of the system and one set of processes of it (a
  /// container has its own), on Windows "windows". Numbers of another run mean nothing, of another set nothing
  /// that can be found out.
  std::string run;
  std::string process_set;    ///< see run
  std::uint64_t process = 0;  ///< the number, which is given again once the process has ended
  std::uint64_t started =
      0;  ///< when, in units of the system; tells two processes of one number apart

  friend bool operator==(const ProcessName&, const ProcessName&) = default;
};

enum class ProcessState {
  kRuns,
  kGone,
  kUnknown,  ///< it is of another computer, or nobody tells
};

/// This process.
ProcessName ThisProcess();

/// Whether a process runs.
ProcessState StateOf(const ProcessName& process);

}  // namespace tallow
