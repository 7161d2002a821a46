// SPDX-License-Identifier: GPL-3.0-or-later
#include "benchmarks/find_library.h"

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "app/data_paths.h"
#include "app/tallow.h"
#include "details/details_store.h"
#include "util/file_system.h"

namespace tallow {
namespace {

constexpr int kSongsAnAlbum = 12;
constexpr int kAlbumsAnArtist = 5;

/// Words of three to ten letters, of which the first are much more frequent than the last.
class Words {
 public:
  Words() {
    constexpr int kWords = 20'000;
    words_ = {"The", "Love", "Of", "Beatles", "Queen", "Live", "Blue", "Día", "Для", "Night"};
    for (int k = static_cast<int>(words_.size()); k < kWords; ++k) {
      std::string word(1, static_cast<char>('A' + random_() % 26));
      for (std::size_t n = 2 + random_() % 8; n > 0; --n)
        word += "etaoinshrdlucmfwypvbg"[random_() % 21];
      words_.push_back(word);
    }
  }
  std::string Text(int most) {
    std::string text;
    for (std::size_t n = 1 + random_() % static_cast<std::size_t>(most); n > 0; --n) {
      const double part = std::uniform_real_distribution<double>(0, 1)(random_);
      text +=
          words_[static_cast<std::size_t>(part * part * part * static_cast<double>(words_.size()))];
      if (n > 1) text += ' ';
    }
    return text;
  }
  std::size_t Random() { return random_(); }

 private:
  std::mt19937 random_{6};
  std::vector<std::string> words_;
};

}  // namespace

FindLibrary::FindLibrary(const std::string& folder, std::int32_t count)
    : application_(folder + "find-" + std::to_string(count) + "/"),
      database_(SystemFolder(application_) + std::string(kDetailsFileName)),
      count_(count) {
  CreateFolders(SystemFolder(application_));
}

void FindLibrary::Fill(Tallow& tallow) const {
  constexpr const char* kGenres[] = {"Rock", "Pop", "Jazz", "Classical", "Hip-Hop", "Electronic"};
  const bool is_new = !FileExists(database_);
  DetailsStore store;
  if (is_new) store.Open(database_);
  Words words;
  SongDetails details;
  std::string folder;
  for (std::int32_t row = 1; row <= count_; ++row) {
    const int in_album = (row - 1) % kSongsAnAlbum;
    if ((row - 1) % (kSongsAnAlbum * kAlbumsAnArtist) == 0) details.tags.artist = words.Text(2);
    if (in_album == 0) {
      details.tags.album = words.Text(3);
      details.tags.genre = kGenres[words.Random() % std::size(kGenres)];
      details.tags.date = std::to_string(1950 + words.Random() % 75);
      folder = "/music/" + details.tags.artist + "/" + details.tags.album + "/";
    }
    details.tags.found = true;
    details.tags.album_artist = details.tags.artist;
    details.tags.track = in_album + 1;
    details.tags.title = words.Text(4);
    details.length_ms = static_cast<std::int32_t>(60'000 + words.Random() % 400'000);
    details.bit_rate = 256;
    details.sample_rate = 44'100;
    details.format = "MP3";
    details.stamp = {.size = 1, .modified = 1};
    // The number makes the names different, as the titles of most songs are.
    const std::string name = (in_album < 9 ? "0" : "") + std::to_string(in_album + 1) + " - " +
                             details.tags.title + " " + std::to_string(row) + ".mp3";
    const std::string number = std::to_string(row);
    const std::string rank = std::to_string(2 + words.Random() % 6);
    const std::string_view cells[] = {folder, name, "1", number, rank};
    for (std::int32_t column = 1; column <= kSongRank; ++column)
      tallow.library.Mp3Info(column, row, cells[column - 1]);
    if (is_new) store.Put(folder + name, details);
  }
}

}  // namespace tallow
