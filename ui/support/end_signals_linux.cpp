// SPDX-License-Identifier: GPL-3.0-or-later
#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>
#include <utility>

#include <QSocketNotifier>

#include "ui/support/end_signals.h"
#include "util/open_file_linux.h"

namespace tallow {
namespace {

constexpr std::array<int, 3> kSignals{SIGTERM, SIGINT, SIGHUP};

/// The end of the pipe that the signal handler writes to; -1 while no EndSignals exists. Global,
/// because a signal handler is passed only the signal number.
std::atomic<int> note_end{-1};

void NoteSignal(int /*signal*/) {
  const int before = errno;
  const char byte = 0;
  // If the pipe is full, the write fails; the bytes in the pipe already wake up the event loop.
  [[maybe_unused]] const ssize_t ignored = write(note_end, &byte, 1);
  errno = before;
}

std::array<int, 2> NewPipe() {
  std::array<int, 2> ends{-1, -1};
  if (pipe2(ends.data(), O_CLOEXEC | O_NONBLOCK) != 0) return {-1, -1};
  return ends;
}

}  // namespace

struct EndSignals::Handler {
  explicit Handler(std::function<void()> end_) : Handler(NewPipe(), std::move(end_)) {}

  Handler(std::array<int, 2> ends, std::function<void()> end_)
      : reading(ends[0]),
        writing(ends[1]),
        notifier(ends[0], QSocketNotifier::Read),
        end(std::move(end_)) {
    if (!reading) return;
    QObject::connect(&notifier, &QSocketNotifier::activated, [this] {
      notifier.setEnabled(false);
      end();
    });
    note_end = ends[1];
    struct sigaction action {};
    action.sa_handler = NoteSignal;
    action.sa_flags = SA_RESTART;
    for (std::size_t k = 0; k < kSignals.size(); ++k) sigaction(kSignals[k], &action, &before[k]);
  }

  ~Handler() {
    if (!reading) return;
    for (std::size_t k = 0; k < kSignals.size(); ++k) sigaction(kSignals[k], &before[k], nullptr);
    note_end = -1;
  }

  OpenFile reading;
  OpenFile writing;
  QSocketNotifier notifier;
  std::function<void()> end;
  std::array<struct sigaction, kSignals.size()> before{};
};

EndSignals::EndSignals(std::function<void()> end)
    : handler_(std::make_unique<Handler>(std::move(end))) {}

EndSignals::~EndSignals() = default;

}  // namespace tallow
