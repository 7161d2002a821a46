// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace tallow {

/// A child process that answers requests on its standard input, for work that may crash or hang.
/// Used by one thread at a time.
class ChildProcess {
 public:
  /// Starts a program with its standard input and output connected to this object. No window opens.
  ///
  /// \param arguments without the program name
  /// \returns null when the program cannot be started
  static std::unique_ptr<ChildProcess> Start(const std::string& program,
                                             std::span<const std::string> arguments);

  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;
  /// Kills the child if it runs.
  virtual ~ChildProcess() = default;

  /// Sends bytes to the child's standard input. May wait while the child does not read them, if
  /// they are more than a few kilobytes.
  ///
  /// \returns false when the child has ended
  virtual bool Write(std::string_view bytes) = 0;

  /// Waits for output of the child.
  ///
  /// \returns the bytes that have arrived; empty after the timeout; no value when the child has
  /// ended and all of its output was read
  virtual std::optional<std::string> Read(std::chrono::milliseconds timeout) = 0;

  /// How long the child has used a processor since it was started; 0 when that is not known.
  virtual std::chrono::milliseconds ProcessorTime() const = 0;

 protected:
  ChildProcess() = default;
};

/// The other end, in the child: its standard input and output as bytes.
class ParentChannel {
 public:
  /// Waits for exactly this number of bytes. \returns false when the parent has closed its end
  static bool Read(std::span<char> bytes);
  /// \returns false when the parent has closed its end
  static bool Write(std::string_view bytes);
};

/// The memory that a child may use, in bytes, on Linux beyond what it uses when it calls
/// LimitMemoryOfThisProcess.
inline constexpr std::uint64_t kMaxChildMemory = std::uint64_t{512} << 20U;

/// Makes allocations fail that exceed kMaxChildMemory. Does nothing on Windows, where the parent
/// has limited the child.
void LimitMemoryOfThisProcess();

/// Ends this process if it does not call this function again in time (0: never); for a child whose
/// parent may have been killed. Does nothing on Windows, where the system ends children with their
/// parent.
void EndThisProcessAfter(std::chrono::seconds time);

}  // namespace tallow
