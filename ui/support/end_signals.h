// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <memory>

namespace tallow {

/// Handles the system's requests to quit in the event loop: on Linux SIGTERM (end of the session),
/// SIGINT (Ctrl+C) and SIGHUP (closed terminal); on Windows the message that the session ends.
class EndSignals {
 public:
  /// \param end called once, for the first request; only one EndSignals may exist at a time
  explicit EndSignals(std::function<void()> end);
  EndSignals(const EndSignals&) = delete;
  EndSignals& operator=(const EndSignals&) = delete;
  ~EndSignals();

 private:
  struct Handler;
  std::unique_ptr<Handler> handler_;
};

}  // namespace tallow
