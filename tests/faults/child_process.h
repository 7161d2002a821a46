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
  double seconds = 0;  ///< how long it has used a processor
  std::string text;    ///< what it returned, or of an exception what it says

  bool IsDone() const noexcept { return kind == Kind::kDone; }
  /// How it ended, in a few words.
  std::string Words() const;
};

/// Seconds after which a process that does not end hangs; a machine may be busy with much else.
inline constexpr unsigned int kHangSeconds = 30;

/// Does something in a process of its own. The caller must have no other threads.
/// \param act its result may have some 4 MB
ChildEnd RunInChild(const std::function<std::string()>& act);

}  // namespace tallow
