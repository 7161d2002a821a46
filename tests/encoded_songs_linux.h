// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdlib>
#include <gtest/gtest.h>
#include <string>

#include "tests/temp_folder.h"

namespace tallow {

/// Runs a command, which has to succeed.
inline void Shell(const std::string& command) {
  ASSERT_EQ(std::system(("LC_ALL=C.UTF-8 " + command + " > /dev/null 2>&1").c_str()), 0) << command;
}

/// A sound of one second, without tags, in each format for which there is an encoder.
class EncodedSongs {
 public:
  EncodedSongs() {
    const std::string wav = Path("wav");
    Shell("ffmpeg -f lavfi -i sine=frequency=440:duration=1 -ac 2 -ar 44100 -bitexact " + wav);
    Shell("lame --quiet -b 64 -t " + wav + " " + Path("mp3"));
    Shell("flac -s " + wav + " -o " + Path("flac"));
    Shell("flac -s --ogg " + wav + " -o " + Path("oga"));
    Shell("oggenc -Q " + wav + " -o " + Path("ogg"));
    Shell("opusenc --quiet " + wav + " " + Path("opus"));
    Shell("wavpack -q -y " + wav + " -o " + Path("wv"));
    Convert("spx", "-c:a libspeex -ar 16000 -ac 1");
    Convert("m4a", "-c:a aac");
    Convert("wma", "-c:a wmav2");
    Convert("aiff", "");
    Convert("aac", "-c:a aac -f adts");
  }

  /// The path of the song in a format.
  /// \param extension "mp3", "flac", "oga", "ogg", "opus", "wv", "spx", "m4a", "wma", "wav", "aiff"
  ///        or "aac"
  std::string Path(const std::string& extension) const { return folder_ / ("a." + extension); }

 private:
  void Convert(const std::string& extension, const std::string& options) {
    Shell("ffmpeg -i " + Path("wav") + " " + options + " -map_metadata -1 -fflags +bitexact " +
          Path(extension));
  }

  TempFolder folder_;
};

}  // namespace tallow
