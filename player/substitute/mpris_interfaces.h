// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <systemd/sd-bus.h>

namespace tallow {

// The two interfaces of MPRIS 2 as tables of methods and properties. The user data that
// sd-bus passes to the handlers must point to an Mpris.

inline constexpr const char* kMprisRootInterface = "org.mpris.MediaPlayer2";
inline constexpr const char* kMprisPlayerInterface = "org.mpris.MediaPlayer2.Player";

/// Time unit of the bus: µs.
inline constexpr std::int64_t kUsPerMs = 1000;

extern const sd_bus_vtable kMprisRootTable[];
extern const sd_bus_vtable kMprisPlayerTable[];

}  // namespace tallow
