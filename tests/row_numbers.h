// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <gtest/gtest.h>
#include <string>

#include "library/cls_main.h"

namespace tallow {

/// Asserts that row i has the record number i, which holds after every start, search, drop of files
/// and recovery.
inline void ExpectRowsAreNumbers(const clsMain& library) {
  for (std::int32_t row = 1; row <= library.UBoundOfMp3Array(); ++row)
    ASSERT_EQ(library.Mp3Info(kRecordNumber, row), std::to_string(row));
}

}  // namespace tallow
