// SPDX-License-Identifier: GPL-3.0-or-later
// Passes arbitrary bytes as song files of all formats to the tag reader, with libFuzzer. Nothing
// may crash or throw; texts must be valid UTF-8 within their limit; reading the tags alone must
// give the same tags as reading everything, and so must reading it as a plain MP3 file. The same
// holds for the picture.
//
// The first byte chooses the extension; the rest is the file.
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <unistd.h>

#include "details/embedded_picture.h"
#include "details/tag_fields.h"
#include "details/tag_reader.h"
#include "util/text.h"

namespace tallow {
namespace {

constexpr std::array kExtensions{"mp3", "flac", "ogg", "oga",  "opus", "spx", "m4a",
                                 "aac", "wma",  "wav", "aiff", "ape",  "wv",  "mpc"};

/// The folder of the files, for the whole run.
class Folder {
 public:
  Folder() {
    // In memory if possible, because each run writes a file.
    const char* const base = access("/dev/shm", W_OK) == 0 ? "/dev/shm" : "/tmp";
    path_ = std::string(base) + "/tallow-fuzz-XXXXXX";
    if (mkdtemp(path_.data()) == nullptr) std::abort();
    path_ += "/";
  }
  Folder(const Folder&) = delete;
  Folder& operator=(const Folder&) = delete;
  ~Folder() { std::filesystem::remove_all(path_); }
  const std::string& path() const { return path_; }

 private:
  std::string path_;
};

void Require(bool condition) {
  if (!condition) std::abort();
}

void Run(const Folder& folder, const std::uint8_t* data, std::size_t size) {
  if (size == 0) return;
  const std::string path = folder.path() + "a." + kExtensions[data[0] % kExtensions.size()];
  std::ofstream(path, std::ios::binary)
      .write(reinterpret_cast<const char*>(data + 1), static_cast<std::streamsize>(size - 1));
  const SongDetails details = ReadSongDetails(path);
  const SongTags& tags = details.tags;
  for (const std::string* const text : {&tags.title, &tags.artist, &tags.album_artist, &tags.album,
                                        &tags.date, &tags.genre, &details.comment}) {
    Require(text->size() <= kMaxTagText && IsValidUtf8(*text));
    Require(text->find('\0') == std::string::npos);
  }
  Require(tags.disc >= 0 && tags.track >= 0 && details.length_ms >= 0 && details.bit_rate >= 0 &&
          details.sample_rate >= 0);
  Require(details.failed || ReadSongTags(path) == tags);
  const auto plain = ReadPlainTags(path);
  Require(!plain || *plain == tags);
  const auto plain_picture = ReadPlainPicture(path);
  Require(!plain_picture || *plain_picture == ReadEmbeddedPicture(path));
  std::filesystem::remove(path);
}

}  // namespace
}  // namespace tallow

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const tallow::Folder folder;
  tallow::Run(folder, data, size);
  return 0;
}
