// SPDX-License-Identifier: GPL-3.0-or-later
#include <cstdio>
#include <cstring>

#include "app/version.h"

// The player that Tallow drives on Linux. So far it can be found and asked for its version.
int main(int argc, char** argv) {
  if (argc == 2 && std::strcmp(argv[1], "--version") == 0) {
    std::printf("tallow-player %d.%d\n", tallow::kMajorVersion, tallow::kMinorVersion);
    return 0;
  }
  std::fputs("Usage: tallow-player --version\n", stderr);
  return 2;
}
