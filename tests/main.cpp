// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include "tests/served_details.h"
#include "util/file_system.h"

int main(int argc, char** argv) {
  if (argc == 2 && argv[1] == tallow::kServeDetailsOption) return tallow::ServeTests();
  tallow::OwnProgram() = tallow::AbsolutePath(argv[0]);
  testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}
