// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <thread>

namespace tallow {

// Every thread of the program is started here. The system may be unable to create another thread;
// then the work has to be done without one.

/// Starts a thread.
///
/// \returns a joinable thread; a thread that is not joinable when the system cannot create one:
/// then the work was not done, and the caller must do it
std::thread StartThread(std::function<void()> work);

/// Starts a thread; if the system cannot create one, does the work on the calling thread instead.
///
/// \returns the thread; not joinable when the work is already done
std::thread StartThreadOrRun(const std::function<void()>& work);

/// Joins a thread if it is joinable.
void Join(std::thread& thread);

}  // namespace tallow
