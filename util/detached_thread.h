// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>

namespace tallow {

/// Starts a thread that nobody joins. Its work owns everything that it uses.
///
/// \returns false when the system cannot create a thread; then the work was not done
bool StartDetachedThread(std::function<void()> work);

}  // namespace tallow
