// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>
#include <string>
#include <windows.h>

namespace tallow {

/// The process of Tallow's own player while it starts.
class PlayerProcess {
 public:
  /// Starts the player.
  /// \param arguments as on a command line
  /// \returns false when the program cannot be run
  bool Start(const std::string& program, const std::string& arguments);

  /// Whether the process that was started last has ended.
  bool HasEnded() const noexcept;
  /// Whether the process that was started last runs, and StopListening was not called since.
  bool IsStarting() const noexcept { return errors_ && process_ && !HasEnded(); }

  /// Reads what the process has written to standard error. Call this while it starts: it blocks
  /// when it has written some KB that nobody has read.
  void Read();

  /// The last line that the process has written to standard error; empty for none. What it writes
  /// after StopListening is lost.
  std::string LastLine();

  /// Call this when the player has started: it then never waits for a reader.
  void StopListening() noexcept { errors_.reset(); }

 private:
  struct CloseSystemHandle {
    void operator()(HANDLE handle) const noexcept { CloseHandle(handle); }
  };
  using SystemHandle = std::unique_ptr<void, CloseSystemHandle>;

  SystemHandle process_;
  SystemHandle errors_;  ///< the pipe that is the standard error of the process
  std::string written_;  ///< the last bytes that were read
};

}  // namespace tallow
