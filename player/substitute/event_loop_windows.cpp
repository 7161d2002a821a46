// SPDX-License-Identifier: GPL-3.0-or-later
#include <algorithm>
#include <atomic>
#include <iterator>
#include <optional>
#include <set>
#include <stdexcept>
#include <utility>
#include <vector>
#include <windows.h>

#include "player/substitute/event_loop.h"

namespace tallow {
namespace {

using Clock = std::chrono::steady_clock;

class Timer final : public LoopCallback {
 public:
  Timer(std::vector<Timer*>& timers, Clock::time_point due, EventLoop::Callback callback)
      : timers_(timers), due_(due), callback_(std::move(callback)) {
    timers_.push_back(this);
  }
  Timer(const Timer&) = delete;
  Timer& operator=(const Timer&) = delete;
  ~Timer() override { std::erase(timers_, this); }

  Clock::time_point Due() const noexcept { return due_; }
  /// Calls the callback, which may destroy this object.
  void Call() {
    std::erase(timers_, this);
    const auto due = std::move(callback_);
    due();
  }

 private:
  std::vector<Timer*>& timers_;  ///< those that have not called back yet
  Clock::time_point due_;
  EventLoop::Callback callback_;
};

class EventWakeUp final : public WakeUp {
 public:
  EventWakeUp(std::set<EventWakeUp*>& wake_ups, HANDLE event, EventLoop::Callback callback)
      : wake_ups_(wake_ups), event_(event), callback_(std::move(callback)) {
    wake_ups_.insert(this);
  }
  EventWakeUp(const EventWakeUp&) = delete;
  EventWakeUp& operator=(const EventWakeUp&) = delete;
  ~EventWakeUp() override { wake_ups_.erase(this); }

  void Request() noexcept override {
    requested_ = true;
    SetEvent(event_);
  }

  void CallIfRequested() {
    if (requested_.exchange(false)) callback_();
  }

 private:
  std::set<EventWakeUp*>& wake_ups_;
  HANDLE event_;  ///< of the loop
  std::atomic<bool> requested_ = false;
  EventLoop::Callback callback_;
};

class WindowsEventLoop final : public EventLoop {
 public:
  WindowsEventLoop() : event_(CreateEventW(nullptr, FALSE, FALSE, nullptr)) {
    if (event_ == nullptr) throw std::runtime_error("the event loop: no event is free");
  }
  WindowsEventLoop(const WindowsEventLoop&) = delete;
  WindowsEventLoop& operator=(const WindowsEventLoop&) = delete;
  ~WindowsEventLoop() override { CloseHandle(event_); }

  std::unique_ptr<LoopCallback> AddTimer(std::chrono::microseconds time,
                                         Callback callback) override {
    return std::make_unique<Timer>(timers_, Clock::now() + time, std::move(callback));
  }

  std::unique_ptr<WakeUp> AddWakeUp(Callback callback) override {
    return std::make_unique<EventWakeUp>(wake_ups_, event_, std::move(callback));
  }

  void CallAtEnd(Callback callback) override { at_end_ = std::move(callback); }

  void RunOnce(std::chrono::microseconds max_wait) override {
    // MWMO_INPUTAVAILABLE: also returns for messages that an earlier call has seen.
    MsgWaitForMultipleObjectsEx(1, &event_, MillisecondsUntilDue(max_wait), QS_ALLINPUT,
                                MWMO_INPUTAVAILABLE);
    DispatchMessages();
    CallWakeUps();
    CallDueTimers();
  }

  int Run() override {
    while (!exit_code_) RunOnce(std::chrono::hours(1));
    return *exit_code_;
  }

  void Exit(int code) override { exit_code_ = code; }

 private:
  /// Rounds up, so that the timer is due after this time.
  DWORD MillisecondsUntilDue(std::chrono::microseconds max_wait) const {
    Clock::duration wait = max_wait;
    const Clock::time_point now = Clock::now();
    for (const Timer* const timer : timers_) wait = std::min(wait, timer->Due() - now);
    const auto rounded = std::chrono::ceil<std::chrono::milliseconds>(wait);
    return static_cast<DWORD>(std::max<std::int64_t>(rounded.count(), 0));
  }

  /// Also dispatches messages that other programs have sent.
  void DispatchMessages() {
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != FALSE) {
      if (message.message == WM_QUIT) {
        if (at_end_) at_end_();
        return;
      }
      DispatchMessageW(&message);
    }
  }

  /// A callback may run the loop, and destroy others.
  void CallWakeUps() {
    for (EventWakeUp* const wake_up : std::vector(wake_ups_.begin(), wake_ups_.end()))
      if (wake_ups_.contains(wake_up)) wake_up->CallIfRequested();
  }

  /// In the order of their times. A callback may add and destroy timers.
  void CallDueTimers() {
    const Clock::time_point now = Clock::now();
    std::vector<Timer*> due;
    std::copy_if(timers_.begin(), timers_.end(), std::back_inserter(due),
                 [&](const Timer* timer) { return timer->Due() <= now; });
    std::stable_sort(due.begin(), due.end(), [](const Timer* timer, const Timer* other) {
      return timer->Due() < other->Due();
    });
    for (Timer* const timer : due) {
      const bool exists = std::find(timers_.begin(), timers_.end(), timer) != timers_.end();
      if (exists && timer->Due() <= now) timer->Call();
    }
  }

  HANDLE event_;  ///< set when a callback was requested; resets itself when a wait returns
  std::vector<Timer*> timers_;  ///< in the order in which they were added
  std::set<EventWakeUp*> wake_ups_;
  Callback at_end_;
  std::optional<int> exit_code_;
};

}  // namespace

std::unique_ptr<EventLoop> NewEventLoop() { return std::make_unique<WindowsEventLoop>(); }

}  // namespace tallow
