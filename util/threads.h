// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <thread>

namespace tallow {

// Every thread of the program is started here. The system may have no more of them to give; then the work
// has to be done without one.

/// Starts a thread.
///
/// \returns a thread that can be joined, or one that cannot when the system gives no more: then the work has
///          not been done, and is still the caller's
std::thread StartThread(std::function<void()> work);

/// Starts a thread, or where the system gives no more does the work here before it returns.
///
/// \returns the thread; one that cannot be joined when the work is done
std::thread StartThreadOrRun(const std::function<void()>& work);

/// Waits for the end of a thread, if it is one.
void Join(std::thread& thread);

}  // namespace tallow
