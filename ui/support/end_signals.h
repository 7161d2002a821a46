// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <memory>

namespace tallow {

/// Takes the system's requests to end (SIGTERM, SIGINT and SIGHUP: the end of a session, Ctrl+C, a closed
/// terminal) as part of the event loop; on Windows the message that the user is being logged off.
class EndSignals {
 public:
  /// \param end called with the first of them; only one object at a time
  explicit EndSignals(std::function<void()> end);
  EndSignals(const EndSignals&) = delete;
  EndSignals& operator=(const EndSignals&) = delete;
  ~EndSignals();

 private:
  struct Taken;
  std::unique_ptr<Taken> taken_;
};

}  // namespace tallow
