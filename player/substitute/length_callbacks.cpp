// SPDX-License-Identifier: GPL-3.0-or-later
#include "player/substitute/length_callbacks.h"

#include <chrono>
#include <utility>

namespace tallow {
namespace {

/// How long a callback waits for the length.
constexpr std::chrono::seconds kTimeout{2};

}  // namespace

void LengthCallbacks::CallWhenKnown(Callback callback) {
  if (!deferred_) return callback(length_());
  waiting_.push_back(std::move(callback));
  if (!timeout_) timeout_ = loop_.AddTimer(kTimeout, [this] { CallAll(); });
}

void LengthCallbacks::CallAll() {
  deferred_ = false;
  timeout_.reset();
  const std::vector<Callback> callbacks = std::exchange(waiting_, {});
  for (const Callback& callback : callbacks) callback(length_());
}

}  // namespace tallow
