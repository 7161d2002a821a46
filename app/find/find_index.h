// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <span>
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
/// Each song of the library has an entry, in the order of the record numbers, so that songs of an
/// album, which are read one after another, lie beside each other. What many songs have in common
/// (artist, album, genre) is stored and compared once for each distinct text. A song's own text is
/// its file name and, if that does not contain it, its title: "name" or "name\ntitle". A song takes
/// 24 bytes and its own text.
class FindIndex {
 public:
  /// A song.
  struct Entry {
    std::uint32_t begin = 0;   ///< of its own text
    std::uint16_t length = 0;  ///< of its own text; longer titles are cut
    std::uint8_t rank = 0;     ///< 7 to 3; 0 for a song without a rank
    bool is_there = false;     ///< it can be found
    std::uint32_t set = 0;     ///< DetailsTable::SharedSet
  };

  /// Builds the index at the first call, and follows changes of the library, of the details and of
  /// ranks at each other.
  ///
  /// \param max_wait see LibraryDetails::LoadAll
  void Update(const clsMain& library, LibraryDetails& details, std::chrono::milliseconds max_wait);

  /// The first entry is that of record number 1.
  std::span<const Entry> Entries() const noexcept { return entries_; }
  std::string_view OwnText(const Entry& entry) const noexcept {
    return {own_texts_.data() + entry.begin, entry.length};
  }
  /// BytePairsOf the own text of each entry.
  std::span<const std::uint64_t> Pairs() const noexcept { return pairs_; }
  /// The record numbers of the songs that can be found, in the order of their file names.
  std::span<const std::int32_t> ByName() const noexcept { return by_name_; }
  /// How well a word matches the shared texts of each set of DetailsTable.
  std::vector<WordMatch> SetMatches(std::string_view word) const;

  /// Approximate memory in bytes.
  std::size_t Bytes() const noexcept;
  /// How often all names were sorted; for tests.
  int Sorts() const noexcept { return sorts_; }

 private:
  void Build(const clsMain& library, LibraryDetails& details, std::chrono::milliseconds max_wait);
  void FillTexts(const clsMain& library, const DetailsTable& table);
  void FollowNames(const clsMain& library, const DetailsTable& table);
  void FollowRanks(const clsMain& library);
  void FollowDetails(const clsMain& library, const DetailsTable& table);
  /// Adds the shared texts of sets that are new.
  void FollowSets(const DetailsTable& table);
  std::uint32_t SharedIndex(TextHandle handle, const DetailsTable& table);
  /// Sets what an entry has of the name and the details of its song.
  void SetTexts(std::int32_t record, const clsMain& library, const DetailsTable& table);
  /// Puts songs that are not in by_name_ in their places.
  void InsertByName(const clsMain& library, const std::vector<std::int32_t>& records);
  std::string KeyOfName(std::int32_t record) const;
  /// Drops own texts that were replaced, once they are more than half of the texts.
  void PackIfWasteful();

  Entry& At(std::int32_t record) { return entries_[static_cast<std::size_t>(record - 1)]; }
  const Entry& At(std::int32_t record) const {
    return entries_[static_cast<std::size_t>(record - 1)];
  }
  /// The folded file name, a part of the own text.
  std::string_view NameOf(const Entry& entry) const noexcept;

  std::vector<Entry> entries_;
  std::vector<std::uint64_t> pairs_;
  std::vector<std::int32_t> by_name_;
  std::string own_texts_;
  std::size_t wasted_ = 0;  ///< bytes of own texts that were replaced

  /// The shared texts of each set, as indexes of shared texts.
  std::vector<std::array<std::uint32_t, 3>> sets_;
  std::unordered_map<TextHandle, std::uint32_t> shared_indexes_;
  std::string shared_texts_;
  std::vector<std::uint32_t> shared_ends_;
  std::vector<std::uint64_t> shared_pairs_;

  // What the index was made of.
  bool is_built_ = false;
  int sorts_ = 0;
  std::uint64_t library_version_ = 0;
  std::uint64_t names_version_ = 0;
  std::uint32_t details_version_ = 0;
  std::uint32_t packings_ = 0;
};

}  // namespace tallow
