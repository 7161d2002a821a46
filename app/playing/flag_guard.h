// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace tallow {

/// Sets a flag for the lifetime of this object, also when an exception ends it.
class FlagGuard {
 public:
  explicit FlagGuard(bool& flag) noexcept : flag_(flag) { flag_ = true; }
  FlagGuard(const FlagGuard&) = delete;
  FlagGuard& operator=(const FlagGuard&) = delete;
  ~FlagGuard() { flag_ = false; }

 private:
  bool& flag_;
};

}  // namespace tallow
