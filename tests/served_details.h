// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <chrono>
#include <csignal>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "details/child_reader.h"
#include "util/child_process.h"
#include "util/path_text.h"

namespace tallow {

// The test program is the child of the tests of ChildReader, when it is started with
// kServeDetailsOption. It stands in for TagLib at files of these names, because no file is known at
// which TagLib crashes, hangs or eats memory when it is used as tag_reader.cpp does, and at one for
// a disk that does not answer.
inline constexpr std::string_view kEndingName = "end.mp3";
inline constexpr std::string_view kCrashingName = "crash.mp3";
inline constexpr std::string_view kHangingName = "hang.mp3";
inline constexpr std::string_view kWaitingName = "wait.mp3";
inline constexpr std::string_view kHungryName = "hungry.mp3";
inline constexpr std::string_view kBabblingName = "babble.mp3";

/// The path of the test program, set by main().
inline std::string& OwnProgram() {
  static std::string path;
  return path;
}

/// Allocates twice the memory that a child may use, without touching it.
inline void EatMemory() {
  constexpr std::size_t kBlock = std::size_t{16} << 20U;
  std::vector<std::unique_ptr<char[]>> blocks;
  for (std::uint64_t eaten = 0; eaten < 2 * kMaxChildMemory; eaten += kBlock)
    blocks.emplace_back(new char[kBlock]);
}

/// The child's part.
inline int ServeTests() {
  return ServeSongDetails([](const std::string& path, WhatToRead what) {
    const std::string_view name = NameOfPath(path);
    if (name == kEndingName) std::_Exit(3);
    if (name == kCrashingName) {
      // The handler of a sanitizer would describe the crash, for longer than the parent waits.
      std::signal(SIGSEGV, SIG_DFL);
      std::raise(SIGSEGV);
    }
    if (name == kHungryName) EatMemory();
    while (name == kWaitingName) std::this_thread::sleep_for(std::chrono::seconds(1));
    volatile bool hangs = name == kHangingName;
    while (hangs) {
    }
    while (name == kBabblingName && ParentChannel::Write("a message that does not end")) {
    }
    return AnswerFor(path, what);
  });
}

}  // namespace tallow
