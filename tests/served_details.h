// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdlib>
#include <string>
#include <string_view>

#include "details/child_reader.h"
#include "details/tag_reader.h"
#include "util/path_text.h"

namespace tallow {

// The test program is the child of the tests of ChildReader, when it is started with
// kServeDetailsOption. It stands in for TagLib at files of these names, because no file is known at
// which TagLib crashes.
inline constexpr std::string_view kCrashingName = "crash.mp3";
inline constexpr std::string_view kHangingName = "hang.mp3";

/// The path of the test program, set by main().
inline std::string& OwnProgram() {
  static std::string path;
  return path;
}

/// The child's part.
inline int ServeTests() {
  return ServeSongDetails([](const std::string& path) {
    if (NameOfPath(path) == kCrashingName) std::_Exit(3);
    volatile bool hangs = NameOfPath(path) == kHangingName;
    while (hangs) {
    }
    return ReadSongDetails(path);
  });
}

}  // namespace tallow
