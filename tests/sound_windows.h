// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdlib>
#include <gtest/gtest.h>
#include <string>
#include <windows.h>

#include "tests/sound.h"
#include "util/wide_text_windows.h"

namespace tallow {

/// Copies a song from the folder TALLOW_TEST_SONGS, which tests/run_under_wine.sh has filled with
/// those that tests/windows_songs.txt lists.
///
/// \param synth, lame as in tests/sound_linux.h
inline void MakeMp3(const std::string& path, const std::string& synth, int channels = 2,
                    const std::string& lame = "-b 128") {
  const char* const folder = std::getenv("TALLOW_TEST_SONGS");
  ASSERT_NE(folder, nullptr);
  std::string name = synth + " " + std::to_string(channels) + " " + lame;
  for (char& c : name)
    if (c == ' ' || c == ':') c = '_';
  const std::string song = std::string(folder) + "\\" + name + ".mp3";
  ASSERT_TRUE(CopyFileW(ToWide(song).c_str(), ToWide(path).c_str(), FALSE))
      << song << " is missing: add it to tests/windows_songs.txt.";
}

}  // namespace tallow
