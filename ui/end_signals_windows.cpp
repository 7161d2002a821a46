// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/end_signals.h"

namespace tallow {

struct EndSignals::Taken {};

EndSignals::EndSignals(std::function<void()> /*end*/) {}
EndSignals::~EndSignals() = default;

}  // namespace tallow
