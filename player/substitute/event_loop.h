// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <chrono>
#include <functional>
#include <memory>

namespace tallow {

/// A callback that an event loop knows. The loop forgets it when this object is destroyed, which
/// must happen before the loop is destroyed.
class LoopCallback {
 public:
  virtual ~LoopCallback() = default;
};

/// A callback that other threads can request. It must not destroy this object.
class WakeUp : public LoopCallback {
 public:
  /// Makes the loop call the callback soon: once, however often it is requested before. May be
  /// called in any thread.
  virtual void Request() noexcept = 0;
};

/// The event loop of the player: calls callbacks, one after another, in the thread that runs it.
/// Differs by platform: on Linux it is libsystemd's, on Windows the message loop of the thread.
///
/// The functions that add a callback throw std::runtime_error when the system has no room for it.
class EventLoop {
 public:
  using Callback = std::function<void()>;

  virtual ~EventLoop() = default;

  /// Adds a callback that is called once, after a time.
  virtual std::unique_ptr<LoopCallback> AddTimer(std::chrono::microseconds time,
                                                 Callback callback) = 0;

  virtual std::unique_ptr<WakeUp> AddWakeUp(Callback callback) = 0;

  /// Calls back when the system wants the program to end: on Linux at SIGTERM, SIGINT and SIGHUP,
  /// on Windows at the message WM_QUIT. Call this before other threads are started.
  virtual void CallAtEnd(Callback callback) = 0;

  /// Waits for events and calls their callbacks.
  /// \param max_wait returns after this time even without an event
  virtual void RunOnce(std::chrono::microseconds max_wait) = 0;

  /// Calls callbacks until Exit has been called.
  /// \returns the code of Exit
  virtual int Run() = 0;

  virtual void Exit(int code) = 0;
};

/// Creates the event loop of this platform for the current thread.
std::unique_ptr<EventLoop> NewEventLoop();

}  // namespace tallow
