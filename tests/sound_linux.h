// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdlib>
#include <gtest/gtest.h>
#include <string>

#include "tests/sound.h"

namespace tallow {

/// Makes a real MP3 file with sox and lame.
///
/// \param synth the synth effect of sox, e.g. "3 sine 440"
/// \param lame  further options for the encoder
inline void MakeMp3(const std::string& path, const std::string& synth, int channels = 2,
                    const std::string& lame = "-b 128") {
  const std::string command = "sox -q -n -r 44100 -c " + std::to_string(channels) +
                              " -t wav - synth " + synth + " gain -6 2>/dev/null | lame --quiet " +
                              lame + " - '" + path + "'";
  ASSERT_EQ(std::system(command.c_str()), 0) << command;
}

}  // namespace tallow
