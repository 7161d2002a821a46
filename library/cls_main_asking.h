// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "library/cls_main.h"

namespace tallow {

/// Sets the progress callback and the callback for drives that do not answer, for the lifetime of
/// this object.
class clsMain::Asking {
 public:
  Asking(clsMain& library, const GoOn& go_on, const WaitForDrive& wait) : library_(library) {
    library_.go_on_ = go_on;
    library_.wait_for_drive_ = wait;
  }
  Asking(const Asking&) = delete;
  Asking& operator=(const Asking&) = delete;
  ~Asking() {
    library_.go_on_ = {};
    library_.wait_for_drive_ = {};
  }

 private:
  clsMain& library_;
};

}  // namespace tallow
