// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/runtime_file.h"

#include <gtest/gtest.h>

#ifdef _WIN32
#include "util/file_system.h"
#include "util/path_text.h"
#endif

namespace tallow {
namespace {

TEST(RuntimeFile, IsNamedWithItsPackage) {
  const RuntimeFile file = RequiredRuntimeFile("/plugins");
  EXPECT_FALSE(file.package.empty());
#ifdef _WIN32
  EXPECT_EQ(NameOfPath(file.path), "comctl32.dll");
  EXPECT_TRUE(FileExists(file.path)) << file.path;
#else
  EXPECT_EQ(file.path, "/plugins/imageformats/libqjpeg.so");
#endif
}

}  // namespace
}  // namespace tallow
