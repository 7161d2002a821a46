// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "library/cls_main.h"

namespace tallow {

/// Within its scope looks at the disk say that they go on, and ask what to do about a drive that does not answer.
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
