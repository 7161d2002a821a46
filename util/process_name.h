// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <string>

namespace tallow {

/// Identifies a process, so that another process can find out later whether it still runs.
struct ProcessName {
  std::string host;  ///< the computer's name
  /// The system's identification of the computer; empty where it has none.
  std::string machine;
  /// The scope of the process id: on Linux one boot of the system and one process namespace (a
  /// container has its own), on Windows "windows". A process id of another boot means nothing; the
  /// state of a process in another namespace cannot be determined.
  std::string run;
  std::string process_set;    ///< the process namespace, see run
  std::uint64_t process = 0;  ///< the process id, which is reused after the process has ended
  /// Start time in system-specific units; distinguishes two processes with the same id.
  std::uint64_t started = 0;

  friend bool operator==(const ProcessName&, const ProcessName&) = default;
};

enum class ProcessState {
  kRuns,
  kGone,
  kUnknown,  ///< the process is on another computer, or its state cannot be read
};

/// The identification of the calling process.
ProcessName ThisProcess();

/// Whether a process still runs.
ProcessState StateOf(const ProcessName& process);

}  // namespace tallow
