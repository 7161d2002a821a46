// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "library/cls_main.h"

namespace tallow {

/// Sets the callbacks of DiskQueries for the lifetime of this object.
class clsMain::Asking {
 public:
  Asking(clsMain& library, const GoOn& go_on, const WaitForDrive& wait) : library_(library) {
    library_.disk_.SetCallbacks(go_on, wait);
  }
  Asking(const Asking&) = delete;
  Asking& operator=(const Asking&) = delete;
  ~Asking() { library_.disk_.SetCallbacks({}, {}); }

 private:
  clsMain& library_;
};

}  // namespace tallow
