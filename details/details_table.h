// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "library/text_pool.h"

namespace tallow {

struct SongDetails;

/// What lists show of a song's details. Texts are UTF-8, and empty when they are not known; numbers
/// are 0 then. The texts are valid until the table that returned them changes.
struct DetailsRow {
  bool known = false;  ///< false: the details were not read yet, and nothing else is set
  std::string_view title = {};
  std::string_view artist = {};
  std::string_view album_artist = {};
  std::string_view album = {};
  std::string_view genre = {};
  std::string_view format = {};  ///< "MP3", "FLAC", ...
  std::int32_t disc = 0;         ///< from 1
  std::int32_t track = 0;        ///< from 1
  std::int32_t year = 0;         ///< four digits
  std::int32_t length_ms = 0;    ///< milliseconds
  std::int32_t bit_rate = 0;     ///< kilobits per second
  std::int32_t modified = 0;     ///< day of the file's time of change, since 1970-01-01 (UTC)

  friend bool operator==(const DetailsRow&, const DetailsRow&) = default;
};

/// The row of details that were read; not known when the file could not be read.
/// \returns a row whose texts are valid as long as the details
DetailsRow RowOf(const SongDetails& details);

/// The details of songs in memory, by record number. A song takes 24 bytes and its title. Artists,
/// albums, genres and formats are stored once for all songs that have them, and what the songs of
/// an album have in common is stored once for these songs (SharedSet).
class DetailsTable {
 public:
  DetailsTable();
  DetailsTable(const DetailsTable&) = delete;
  DetailsTable& operator=(const DetailsTable&) = delete;

  /// Stores the details of a song, in place of earlier ones. Does nothing when the row is not
  /// known.
  ///
  /// \param record from 1
  /// \returns whether the row has changed
  bool Set(std::int32_t record, const DetailsRow& row);

  /// Makes room for record numbers up to this one.
  void Reserve(std::int32_t record) { rows_.reserve(static_cast<std::size_t>(record) + 1); }

  /// The details of a song; not known when none were stored. Any record number is allowed.
  DetailsRow Row(std::int32_t record) const noexcept;
  /// Row(record).title, which costs less.
  std::string_view Title(std::int32_t record) const noexcept;
  /// Row(record) without its texts, which costs less.
  DetailsRow Numbers(std::int32_t record) const noexcept;
  bool Knows(std::int32_t record) const noexcept { return Find(record) != nullptr; }

  // The texts that songs share, as handles: equal texts have equal handles, 0 is the empty text. 0
  // for a song that is not known.
  struct SharedTexts {
    TextHandle artist = 0;
    TextHandle album_artist = 0;
    TextHandle album = 0;
    TextHandle genre = 0;
    TextHandle format = 0;

    friend bool operator==(const SharedTexts&, const SharedTexts&) = default;
  };
  SharedTexts Shared(std::int32_t record) const noexcept { return Texts(SharedSet(record)); }
  /// The number of the set of texts that a song shares with others; equal sets may have different
  /// numbers if their songs differ in year. 0, the empty set, for a song that is not known.
  std::uint32_t SharedSet(std::int32_t record) const noexcept;
  /// The texts of a set.
  SharedTexts Texts(std::uint32_t set) const noexcept { return sets_[set].texts; }
  /// One more than the largest number of a set.
  std::uint32_t Sets() const noexcept { return static_cast<std::uint32_t>(sets_.size()); }
  /// The text of a handle.
  std::string_view Text(TextHandle handle) const noexcept { return pool_->Text(handle); }

  /// The value of Version() after the last change of a song's row; 0 for a song that is not known.
  std::uint32_t ChangedAt(std::int32_t record) const noexcept;
  /// The number of changes so far.
  std::uint32_t Version() const noexcept { return version_; }
  /// Grows when the handles of all texts and the numbers of all sets change.
  std::uint32_t Packings() const noexcept { return packings_; }

  /// One more than the largest record number that was stored.
  std::int32_t Size() const noexcept { return static_cast<std::int32_t>(rows_.size()); }
  /// Approximate memory in bytes.
  std::size_t Bytes() const noexcept;

  void Clear();

 private:
  /// What the songs of an album have in common.
  struct Common {
    SharedTexts texts;
    std::uint16_t year = 0;

    friend bool operator==(const Common&, const Common&) = default;
  };
  struct Stored {
    std::uint32_t set = 0;  ///< index in sets_
    TextHandle title = 0;
    std::int32_t length_ms = 0;
    std::uint32_t changed_at = 0;  ///< 0: the song is not known
    std::uint16_t bit_rate = 0;
    std::uint16_t modified = 0;  ///< day
    std::uint16_t disc = 0;
    std::uint16_t track = 0;

    friend bool operator==(const Stored&, const Stored&) = default;
  };
  // Functions of a hash table of indexes in sets_, which finds sets by their content.
  struct HashOfSet {
    using is_transparent = void;
    const std::vector<Common>* sets;
    std::size_t operator()(std::uint32_t set) const noexcept { return (*this)((*sets)[set]); }
    std::size_t operator()(const Common& set) const noexcept;
  };
  struct EqualSets {
    using is_transparent = void;
    const std::vector<Common>* sets;
    bool operator()(std::uint32_t a, std::uint32_t b) const noexcept { return a == b; }
    bool operator()(const Common& a, std::uint32_t b) const noexcept { return a == (*sets)[b]; }
    bool operator()(std::uint32_t a, const Common& b) const noexcept { return (*sets)[a] == b; }
  };

  /// The handle of a text that is often that of the last song.
  TextHandle Share(std::string_view text, TextHandle last);
  /// The index of a set, which is often that of the last song.
  std::uint32_t IndexOf(const Common& set);
  const Stored* Find(std::int32_t record) const noexcept;
  /// Drops titles and sets that were replaced, once the titles are more than half of the texts.
  void PackIfWasteful();
  /// Begins anew with the empty set.
  void ForgetSets();

  std::unique_ptr<TextPool> pool_;
  std::vector<Stored> rows_;
  std::vector<Common> sets_;  ///< the first is empty
  std::unordered_set<std::uint32_t, HashOfSet, EqualSets> indexes_;
  std::uint32_t last_ = 0;  ///< set of the last song that was stored
  std::size_t wasted_ = 0;  ///< bytes of titles that were replaced
  std::uint32_t version_ = 0;
  std::uint32_t packings_ = 0;
};

}  // namespace tallow
