// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/search/winamp_places.h"

namespace tallow {

std::vector<std::string> WinampsInUsualPlaces() { return {}; }

}  // namespace tallow
