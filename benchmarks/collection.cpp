// SPDX-License-Identifier: GPL-3.0-or-later
// Creates a collection for the benchmarks: copies of one encoded MP3 file, each with a different
// ID3v1 tag, in artist and album folders, ten songs per album.
//
// Usage: tallow_collection MP3 FOLDER COUNT [COVER]
//   COVER  puts the same texts into an ID3v2.4 tag as well, with a cover of this many bytes
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <random>
#include <string>

#include "util/file_system.h"

namespace {

/// What the tags of a song say.
struct Song {
  std::string title;
  std::string artist;
  std::string album;
  std::string year;
  unsigned track = 1;
  unsigned char genre = 0;
};

std::string OldTag(const Song& song) {
  std::string tag = "TAG";
  const auto add = [&](std::string text, std::size_t length) {
    text.resize(length, ' ');
    tag += text;
  };
  add(song.title, 30);
  add(song.artist, 30);
  add(song.album, 30);
  add(song.year, 4);
  add("", 30);
  tag += static_cast<char>(song.genre);
  return tag;
}

/// A length as ID3v2.4 stores it: four bytes of seven bits.
std::string Length(std::size_t length) {
  std::string bytes;
  for (const unsigned shift : {21U, 14U, 7U, 0U})
    bytes += static_cast<char>(length >> shift & 0x7FU);
  return bytes;
}

std::string Frame(const std::string& name, const std::string& content) {
  return name + Length(content.size()) + std::string(2, '\0') + content;
}

std::string TextFrame(const std::string& name, const std::string& text) {
  constexpr char kUtf8 = 3;
  return Frame(name, kUtf8 + text);
}

std::string NewerTag(const Song& song, const std::string& cover) {
  const std::string picture("\0image/jpeg\0\3\0", 14);
  const std::string frames =
      TextFrame("TIT2", song.title) + TextFrame("TPE1", song.artist) +
      TextFrame("TALB", song.album) + TextFrame("TRCK", std::to_string(song.track)) +
      TextFrame("TDRC", song.year) + TextFrame("TCON", "(" + std::to_string(song.genre) + ")") +
      TextFrame("TPE2", song.artist) + Frame("APIC", picture + cover);
  return std::string("ID3\4\0\0", 6) + Length(frames.size()) + frames;
}

/// Bytes like those of a compressed picture.
std::string Cover(int bytes) {
  std::mt19937 random(2);
  std::string cover;
  for (int k = 0; k < bytes; ++k) cover += static_cast<char>(random());
  return cover;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 4 && argc != 5) return 2;
  const auto audio = tallow::ReadWholeFile(argv[1]);
  const std::string folder = std::string(argv[2]) + "/";
  const int count = std::atoi(argv[3]);
  if (!audio) return 1;
  const std::string cover = argc == 5 ? Cover(std::atoi(argv[4])) : std::string();
  constexpr int kSongsAnAlbum = 10;
  constexpr int kAlbumsAnArtist = 5;
  std::mt19937 random(1);
  std::string where;
  for (int k = 0; k < count; ++k) {
    const int album = k / kSongsAnAlbum;
    Song song;
    song.artist = "Artist " + std::to_string(album / kAlbumsAnArtist * 7919 % 100003);
    song.album = "Album " + std::to_string(album);
    if (k % kSongsAnAlbum == 0) {
      where = folder + song.artist + "/" + song.album + "/";
      tallow::CreateFolders(where);
    }
    song.title = "Song " + std::to_string(random() % 1000000);
    song.year = std::to_string(1920 + random() % 90);
    song.genre = static_cast<unsigned char>(random() % 148);
    song.track = static_cast<unsigned>(k % kSongsAnAlbum) + 1;
    std::ofstream(where + song.title + " - " + std::to_string(k) + ".mp3", std::ios::binary)
        << (cover.empty() ? std::string() : NewerTag(song, cover)) << *audio << OldTag(song);
  }
}
