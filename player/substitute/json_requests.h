// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace tallow {

class SongPlayer;

/// Executes a request in JSON, see tallow_player_requests.h.
/// \param answer called with the answer in JSON: at once, or later for the sound devices
/// \returns false for a request that is not valid: no JSON object, an unknown "do", or a member
///          that is missing or of the wrong type; nothing has changed in that case
bool ExecuteJsonRequest(SongPlayer& player, std::string_view request,
                        const std::function<void(std::string)>& answer);

}  // namespace tallow
