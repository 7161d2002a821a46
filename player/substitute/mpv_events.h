// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <mpv/client.h>
#include <vector>

#include "player/substitute/playback_engine.h"

namespace tallow {

/// The reply number of the last property that SoundEngine::RequestProperties requests.
inline constexpr std::uint64_t kLastPropertyReply = ~std::uint64_t{0};

/// The reply number of the list of sound devices.
inline constexpr std::uint64_t kDevicesReply = kLastPropertyReply - 1;

/// Returns the sound devices that a reply contains; none when it reports an error.
std::vector<SoundDevice> DevicesOfReply(const mpv_event& reply);

/// Converts an event of libmpv to a call of a listener. Ignores events that concern no track.
void DispatchMpvEvent(const mpv_event& event, PlaybackListener& listener);

}  // namespace tallow
