// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstring>
#include <memory>
#include <stdexcept>
#include <string>
#include <systemd/sd-event.h>

namespace tallow {

struct DropEventSource {
  void operator()(sd_event_source* source) const noexcept { sd_event_source_disable_unref(source); }
};

/// An event source of the event loop; removed from the loop when destroyed.
using EventSource = std::unique_ptr<sd_event_source, DropEventSource>;

struct DropEventLoop {
  void operator()(sd_event* loop) const noexcept { sd_event_unref(loop); }
};

using SdEventLoop = std::unique_ptr<sd_event, DropEventLoop>;

/// Throws std::runtime_error if a call of the event or bus library failed.
/// \param result return value of the call; if negative, the negated error number
inline void Require(int result, const char* what) {
  if (result < 0) throw std::runtime_error(std::string(what) + ": " + std::strerror(-result));
}

}  // namespace tallow
