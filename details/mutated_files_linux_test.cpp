// SPDX-License-Identifier: GPL-3.0-or-later
// Reads damaged files of all formats. The environment variable TALLOW_MUTATED_FILES is their
// number; ./test.sh --faults and ./test.sh --sanitize read 10,000. A file at which the program ends
// stays in the temporary folder.
#include <chrono>
#include <cstdlib>
#include <fstream>
#include <gtest/gtest.h>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "details/embedded_picture.h"
#include "details/tag_fields.h"
#include "details/tag_reader.h"
#include "tests/encoded_songs_linux.h"
#include "tests/mutated_bytes.h"
#include "tests/resident_memory_linux.h"
#include "tests/tagged_file.h"
#include "tests/temp_folder.h"
#include "util/text.h"

namespace tallow {
namespace {

constexpr int kUsualFiles = 1400;

int NumberOfFiles() {
  const char* const text = std::getenv("TALLOW_MUTATED_FILES");
  return text != nullptr ? std::atoi(text) : kUsualFiles;
}

std::string Bytes(const std::string& path) {
  std::ostringstream bytes;
  bytes << std::ifstream(path, std::ios::binary).rdbuf();
  return bytes.str();
}

/// Damaged songs of each format, with several tags each.
class MutatedFiles : public testing::Test {
 protected:
  MutatedFiles() {
    for (const char* const extension :
         {"mp3", "flac", "ogg", "oga", "opus", "spx", "m4a", "wma", "wv", "wav", "aiff", "aac"})
      good_.emplace_back(extension, Tagged(extension));
    // No encoder writes these. The tag is that of a WavPack file.
    const std::string& wavpack = good_[8].second;
    const std::string ape = wavpack.substr(wavpack.find("APETAGEX"));
    good_[0].second += ape + Tag({.title = "Older", .artist = "Queen", .genra = 17});
    good_[1].second += Tag({.title = "Older", .artist = "Queen", .genra = 17});
    good_.emplace_back("ape", "MAC \x96\x0F" + std::string(200, '\1') + ape);
    good_.emplace_back("mpc", "MP+\x07" + std::string(200, '\1') + ape);
  }

  /// A song with tags that another program has written.
  std::string Tagged(const std::string& extension) {
    const std::string path = folder_ / ("tagged." + extension);
    Shell("ffmpeg -y -i " + songs_.Path(extension) +
          " -c copy -write_id3v2 1 -metadata title=Ночь -metadata artist=Кино"
          " -metadata album_artist=Цой -metadata album=Кровь -metadata date=1988-05-12"
          " -metadata genre=Rock -metadata track=4/12 -metadata disc=1/2"
          " -metadata comment=上を向いて " +
          path);
    if (extension == "wv") Shell("wavpack -q -y -w Title=Ночь -w Artist=Кино " + path);
    return Bytes(path);
  }

  TempFolder folder_;
  EncodedSongs songs_;
  std::vector<std::pair<std::string, std::string>> good_;  ///< extensions and contents
};

void ExpectSound(const SongDetails& details) {
  const SongTags& tags = details.tags;
  for (const std::string* const text : {&tags.title, &tags.artist, &tags.album_artist, &tags.album,
                                        &tags.date, &tags.genre, &details.comment}) {
    ASSERT_TRUE(IsValidUtf8(*text));
    ASSERT_LE(text->size(), kMaxTagText);
    ASSERT_EQ(text->find('\0'), std::string::npos);
  }
  ASSERT_GE(tags.disc, 0);
  ASSERT_GE(tags.track, 0);
  ASSERT_GE(details.length_ms, 0);
  ASSERT_GE(details.bit_rate, 0);
  ASSERT_GE(details.sample_rate, 0);
}

TEST_F(MutatedFiles, AreReadWithinTheirLimits) {
  // The clock stands still, so that the result does not depend on the speed of the machine.
  const auto now = [] { return std::chrono::steady_clock::time_point(); };
  const long before = PeakResidentKib();
  const int each = NumberOfFiles() / static_cast<int>(good_.size()) + 1;
  for (const auto& [extension, good] : good_) {
    const std::string path = folder_ / ("damaged." + extension);
    for (int seed = 0; seed < each; ++seed) {
      Mutator mutate(static_cast<unsigned>(seed));
      const std::string bytes = mutate(good);
      std::ofstream(path, std::ios::binary) << bytes;
      SCOPED_TRACE(extension + " " + std::to_string(seed));
      const SongDetails details = ReadSongDetails(path, {.now = now});
      ExpectSound(details);
      if (!details.failed) {
        ASSERT_EQ(ReadSongTags(path, {.now = now}), details.tags);
      }
      ASSERT_LE(ReadEmbeddedPicture(path, {.now = now}).size(), bytes.size());
      ExpectSound(ReadSongDetails(path, {.max_bytes = mutate.Below(bytes.size() + 1), .now = now}));
      if (HasFatalFailure()) return;
    }
  }
  // No length in a file may make the reader allocate much more than the file has. The sanitizers
  // keep an unknown amount of freed memory.
  if (kSanitizerKib == 0) {
    EXPECT_LT(PeakResidentKib() - before, 64 * 1024);
  }
}

}  // namespace
}  // namespace tallow
