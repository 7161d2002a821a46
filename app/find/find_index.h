// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "app/find/find_words.h"
#include "details/details_table.h"
#include "library/text_pool.h"

namespace tallow {

class LibraryDetails;
class clsMain;

/// The texts of all songs that can be found, in memory and folded, for SongFinder.
///
/// The songs are in the order of their file names, so that hits need not be sorted by name. What
/// many songs have in common (artist, album, genre) is stored and compared once for each distinct
/// text. A song's own text is its file name and, if that does not contain it, its title: "name" or
/// "name\ntitle". A song takes 32 bytes and its own text.
class FindIndex {
 public:
  /// A song that can be found.
  struct Entry {
    std::uint64_t pairs = 0;   ///< BytePairsOf its own text
    std::uint32_t begin = 0;   ///< of its own text
    std::uint16_t length = 0;  ///< of its own text; longer titles are cut
    std::uint8_t rank = 0;     ///< 7 to 3; 0 for a song without a rank
    std::int32_t record = 0;
    std::uint32_t artist = 0;  ///< index in Shared, as album and genre
    std::uint32_t album = 0;
    std::uint32_t genre = 0;
  };

  /// Builds the index at the first call, and follows changes of the library, of the details and of
  /// ranks at each other.
  void Update(const clsMain& library, LibraryDetails& details);

  const std::vector<Entry>& Entries() const noexcept { return entries_; }
  std::string_view OwnText(const Entry& entry) const noexcept {
    return {own_texts_.data() + entry.begin, entry.length};
  }
  /// How well a word matches each of the shared texts.
  std::vector<WordMatch> SharedMatches(std::string_view word) const;

  /// Approximate memory in bytes.
  std::size_t Bytes() const noexcept;

 private:
  void Build(const clsMain& library, LibraryDetails& details);
  void FillEntries(const clsMain& library, const DetailsTable& table);
  void FollowRanks(const clsMain& library);
  void FollowDetails(const clsMain& library, const DetailsTable& table);
  /// Sets what an entry has of the details.
  void SetShared(Entry& entry, const DetailsTable& table);
  std::uint32_t SharedIndex(TextHandle handle, const DetailsTable& table);
  /// Sets what the entries have of the details, in the order of their record numbers, because
  /// neighbours there often have the same texts.
  void FillShared(const DetailsTable& table);

  std::vector<Entry> entries_;
  std::string own_texts_;
  std::size_t wasted_ = 0;  ///< bytes of own texts that were replaced

  std::unordered_map<TextHandle, std::uint32_t> shared_indexes_;
  std::string shared_texts_;
  std::vector<std::uint32_t> shared_ends_;
  std::vector<std::uint64_t> shared_pairs_;

  // What the index was made of.
  bool is_built_ = false;
  std::uint64_t library_version_ = 0;
  std::uint64_t songs_ = 0;  ///< checksum of the file names of the songs that can be found
  std::uint32_t details_version_ = 0;
  std::uint32_t packings_ = 0;
};

}  // namespace tallow
