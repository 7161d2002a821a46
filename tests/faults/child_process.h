// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <string>

namespace tallow {

/// How a child process ended.
struct ChildEnd {
  enum class Kind { kDone, kException, kSignal, kHang };
  Kind kind = Kind::kDone;
  int signal = 0;
  double seconds = 0;  ///< processor time
  std::string text;    ///< result of the function, or the message of the exception

  bool IsDone() const noexcept { return kind == Kind::kDone; }
  /// A short description of the end.
  std::string Words() const;
};

/// A process that does not end within this many seconds hangs; long, because the machine may be
/// busy.
inline constexpr unsigned int kHangSeconds = 30;

/// Runs a function in a child process. The caller must have no other threads.
/// \param act returns at most 4 MB
ChildEnd RunInChild(const std::function<std::string()>& act);

}  // namespace tallow
