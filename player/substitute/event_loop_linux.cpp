// SPDX-License-Identifier: GPL-3.0-or-later
#include "player/substitute/event_loop_linux.h"

#include <csignal>
#include <cstdint>
#include <ctime>
#include <stdexcept>
#include <sys/eventfd.h>
#include <sys/signalfd.h>
#include <unistd.h>
#include <utility>

#include "util/open_file_linux.h"

namespace tallow {
namespace {

constexpr const char* kWhat = "the event loop";

constexpr int kEndSignals[] = {SIGTERM, SIGINT, SIGHUP};

class Timer final : public LoopCallback {
 public:
  Timer(sd_event* loop, std::chrono::microseconds time, EventLoop::Callback callback)
      : callback_(std::move(callback)) {
    sd_event_source* source = nullptr;
    Require(sd_event_add_time_relative(
                loop, &source, CLOCK_MONOTONIC, static_cast<std::uint64_t>(time.count()), 0,
                [](sd_event_source*, std::uint64_t, void* self) {
                  // The callback may destroy this object.
                  const auto due = std::move(static_cast<Timer*>(self)->callback_);
                  due();
                  return 0;
                },
                this),
            kWhat);
    source_.reset(source);
  }

 private:
  EventLoop::Callback callback_;
  EventSource source_;
};

class EventFdWakeUp final : public WakeUp {
 public:
  EventFdWakeUp(sd_event* loop, EventLoop::Callback callback)
      : event_(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)), callback_(std::move(callback)) {
    if (!event_) throw std::runtime_error(std::string(kWhat) + ": no descriptor is free");
    sd_event_source* source = nullptr;
    Require(sd_event_add_io(
                loop, &source, event_.descriptor(), EPOLLIN,
                [](sd_event_source*, int descriptor, std::uint32_t, void* self) {
                  std::uint64_t count = 0;
                  if (read(descriptor, &count, sizeof count) > 0)
                    static_cast<EventFdWakeUp*>(self)->callback_();
                  return 0;
                },
                this),
            kWhat);
    source_.reset(source);
  }

  void Request() noexcept override {
    const std::uint64_t one = 1;
    // write fails only when the counter is full. The event loop wakes up in that case, too.
    [[maybe_unused]] const ssize_t ignored = write(event_.descriptor(), &one, sizeof one);
  }

 private:
  OpenFile event_;  ///< readable when the callback was requested
  EventLoop::Callback callback_;
  EventSource source_;
};

}  // namespace

LinuxEventLoop::LinuxEventLoop() {
  sd_event* loop = nullptr;
  Require(sd_event_new(&loop), kWhat);
  loop_.reset(loop);
}

std::unique_ptr<LoopCallback> LinuxEventLoop::AddTimer(std::chrono::microseconds time,
                                                       Callback callback) {
  return std::make_unique<Timer>(loop_.get(), time, std::move(callback));
}

std::unique_ptr<WakeUp> LinuxEventLoop::AddWakeUp(Callback callback) {
  return std::make_unique<EventFdWakeUp>(loop_.get(), std::move(callback));
}

void LinuxEventLoop::CallAtEnd(Callback callback) {
  at_end_ = std::move(callback);
  // Block the signals; otherwise a thread that is started later might receive them.
  sigset_t blocked;
  sigemptyset(&blocked);
  for (const int signal : kEndSignals) sigaddset(&blocked, signal);
  sigprocmask(SIG_BLOCK, &blocked, nullptr);
  for (const int signal : kEndSignals)
    Require(sd_event_add_signal(
                loop_.get(), nullptr, signal,
                [](sd_event_source*, const signalfd_siginfo*, void* self) {
                  static_cast<LinuxEventLoop*>(self)->at_end_();
                  return 0;
                },
                this),
            kWhat);
}

void LinuxEventLoop::RunOnce(std::chrono::microseconds max_wait) {
  Require(sd_event_run(loop_.get(), static_cast<std::uint64_t>(max_wait.count())), kWhat);
}

int LinuxEventLoop::Run() {
  const int result = sd_event_loop(loop_.get());
  Require(result, kWhat);
  return result;
}

void LinuxEventLoop::Exit(int code) { sd_event_exit(loop_.get(), code); }

std::unique_ptr<EventLoop> NewEventLoop() { return std::make_unique<LinuxEventLoop>(); }

}  // namespace tallow
