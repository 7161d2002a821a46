// SPDX-License-Identifier: GPL-3.0-or-later
// Creates a collection for the benchmarks: copies of one encoded MP3 file, each with a different
// tag, in artist and album folders, ten songs per album.
//
// Usage: tallow_collection MP3 FOLDER COUNT
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <random>
#include <string>

#include "util/file_system.h"

int main(int argc, char** argv) {
  if (argc != 4) return 2;
  const auto audio = tallow::ReadWholeFile(argv[1]);
  const std::string folder = std::string(argv[2]) + "/";
  const int count = std::atoi(argv[3]);
  if (!audio) return 1;
  constexpr int kSongsAnAlbum = 10;
  constexpr int kAlbumsAnArtist = 5;
  std::mt19937 random(1);
  std::string where;
  for (int k = 0; k < count; ++k) {
    const int album = k / kSongsAnAlbum;
    const std::string artist = "Artist " + std::to_string(album / kAlbumsAnArtist * 7919 % 100003);
    if (k % kSongsAnAlbum == 0) {
      where = folder + artist + "/Album " + std::to_string(album) + "/";
      tallow::CreateFolders(where);
    }
    std::string tag = "TAG";
    const auto add = [&](std::string text, std::size_t length) {
      text.resize(length, ' ');
      tag += text;
    };
    const std::string title = "Song " + std::to_string(random() % 1000000);
    add(title, 30);
    add(artist, 30);
    add("Album " + std::to_string(album), 30);
    add(std::to_string(1920 + random() % 90), 4);
    add("", 30);
    tag += static_cast<char>(random() % 148);
    std::ofstream(where + title + " - " + std::to_string(k) + ".mp3", std::ios::binary)
        << *audio << tag;
  }
}
