// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

namespace tallow {

/// Drops the rights of root within its scope. Root may read and write every file, which would hide
/// the permission errors that a test checks.
class AsNobody {
 public:
  AsNobody() {
    constexpr uid_t kNobody = 65534;
    const bool lowered = was_ != 0 || seteuid(kNobody) == 0;
    EXPECT_TRUE(lowered);
  }
  AsNobody(const AsNobody&) = delete;
  AsNobody& operator=(const AsNobody&) = delete;
  ~AsNobody() { EXPECT_EQ(seteuid(was_), 0); }

 private:
  const uid_t was_ = geteuid();
};

}  // namespace tallow
