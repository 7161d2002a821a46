// SPDX-License-Identifier: GPL-3.0-or-later
#include <utility>
#include <windows.h>

#include <QAbstractNativeEventFilter>
#include <QCoreApplication>

#include "ui/support/end_signals.h"

namespace tallow {

/// Event filter for the native messages of all windows. Each window receives WM_ENDSESSION; only
/// the first message is handled.
struct EndSignals::Handler : QAbstractNativeEventFilter {
  explicit Handler(std::function<void()> on_end) : end(std::move(on_end)) {
    QCoreApplication::instance()->installNativeEventFilter(this);
  }
  ~Handler() override {
    if (QCoreApplication::instance() != nullptr)
      QCoreApplication::instance()->removeNativeEventFilter(this);
  }

  bool nativeEventFilter(const QByteArray& /*type*/, void* message, qintptr* /*result*/) override {
    const MSG& got = *static_cast<const MSG*>(message);
    // Windows ends the process when this message has been handled, so `end` runs now.
    if (got.message == WM_ENDSESSION && got.wParam != FALSE && end) std::exchange(end, {})();
    return false;
  }

  std::function<void()> end;
};

EndSignals::EndSignals(std::function<void()> end)
    : handler_(std::make_unique<Handler>(std::move(end))) {}

EndSignals::~EndSignals() = default;

}  // namespace tallow
